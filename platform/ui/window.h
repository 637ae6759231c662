// The root of a view tree: the root controller's view at the back, an overlay layer
// for dialogs, progress and toasts in front. Hidden at first. The application keeps its
// windows weakly; whoever made one owns it. Main thread, points; a window's coordinates
// are the screen's.
#pragma once

#include "platform/ui/pages/view_controller.h"

namespace ui {

// What visitVisible() tells about a view on the screen.
struct Visible {
  View& view;
  Rect frame;        // as presented, in window coordinates
  Rect clip;         // what can show of it and its children's clip, window coordinates
  Color background;  // as presented
  double alpha;      // its own, as presented
  double opacity;    // with that of all its ancestors
  int depth;         // 0: the window itself
};

class Window : public View {
 public:
  explicit Window(const Rect& bounds);
  ~Window() override;
  std::string_view className() const override { return "UIWindow"; }

  ViewController* rootViewController() const { return root_.get(); }
  void setRootViewController(Ref<ViewController> root);
  bool key() const;
  void makeKey();
  // Shows or hides the window and tells the root controller that it comes or goes.
  void show(bool visible = true);
  // The layer in front of everything; takes touches only where it has views.
  View& overlay() { return *overlay_; }

  // Walks what can be seen, back to front, parents before children: not hidden, alpha
  // above 0.01, meeting the clip. The visitor answers whether to go on into the view;
  // it must not change the tree. Long lists cost what they show.
  void visitVisible(const std::function<bool(const Visible&)>& visitor) const;

 protected:
  void layoutSubviews() override;
  Window* asWindow() override { return this; }

 private:
  Ref<ViewController> root_;
  Ref<View> overlay_;
};

}  // namespace ui
