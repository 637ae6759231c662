#include "platform/ui/window.h"

#include "platform/ui/application.h"
#include "platform/ui/tree/layer_view.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr double kSeeThrough = 0.01;

class Walk {
 public:
  explicit Walk(const std::function<bool(const Visible&)>& visitor) : visitor_(visitor) {}

  void visit(View& view, Point origin, const Rect& clip, double opacity, int depth) {
    if (view.hidden()) return;
    const Presented seen = view.presented();
    opacity *= seen.alpha;
    if (opacity < kSeeThrough) return;
    const Rect frame = seen.frame().movedBy(origin);
    const bool shows = frame.intersects(clip);
    if (!shows && view.clipsToBounds()) return;
    const Rect inner = view.clipsToBounds() ? clip.intersection(frame) : clip;
    if (shows && !visitor_({view, frame, inner, seen.background, seen.alpha, opacity, depth}))
      return;
    if (view.children().empty()) return;
    std::vector<View*> children;
    view.childrenIn(inner.movedBy(Point{} - frame.origin()), children);
    const Point inside = frame.origin() + view.childOffset();
    for (View* child : children) visit(*child, inside, inner, opacity, depth + 1);
  }

 private:
  const std::function<bool(const Visible&)>& visitor_;
};

}  // namespace

Window::Window(const Rect& bounds) : overlay_(makeShared<LayerView>()) {
  setFrame(bounds);
  setHidden(true);
  setBackground(style::kPage);
  setClipsToBounds(true);
  addSubview(overlay_);
  if (auto* app = Application::current()) app->windows_.push_back(this);
}

Window::~Window() {
  if (auto* app = Application::current()) {
    // Whoever listens may be gone already: a window goes at the very end.
    if (app->focus().within(*this)) app->focus().drop();
    std::erase(app->windows_, this);
    if (app->key_ == this) app->key_ = nullptr;
  }
}

void Window::setRootViewController(Ref<ViewController> root) {
  if (root == root_) return;
  Ref<View> pin(this);
  const Ref<ViewController> former = std::exchange(root_, std::move(root));
  if (former) {
    former->setAppeared(false, false);
    if (former->viewLoaded() && former->view().parent() == this) former->view().removeFromParent();
  }
  if (!root_) return;
  insertSubview(Ref<View>(&root_->view()), 0);
  root_->view().setFrame(bounds());
  if (!hidden()) root_->setAppeared(true, false);
}

bool Window::key() const {
  auto* app = Application::current();
  return app && app->keyWindow() == this;
}

void Window::makeKey() {
  if (auto* app = Application::current()) app->key_ = this;
}

void Window::show(bool visible) {
  if (hidden() == !visible) return;
  Ref<View> pin(this);
  setHidden(!visible);
  if (root_) root_->setAppeared(visible, false);
}

void Window::layoutSubviews() {
  if (root_ && root_->view().parent() == this) root_->view().setFrame(bounds());
  overlay_->setFrame(bounds());
  overlay_->bringToFront();
}

void Window::visitVisible(const std::function<bool(const Visible&)>& visitor) const {
  auto& self = const_cast<Window&>(*this);
  Walk(visitor).visit(self, {}, frame(), 1, 0);
}

}  // namespace ui
