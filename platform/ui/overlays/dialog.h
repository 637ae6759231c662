// A modal dialog: a title, a message or a content panel of the caller's, up to three
// buttons (more for a message box), on a card in front of a scrim. Where the screen is too
// low for it all, what is over the buttons scrolls.
//
// Shared by the caller and, while it is shown, by the Application. Each dialog is shown
// once. Dismissed by a button (its result), by dismiss(), or, when cancelable, by a tap
// beside it, Escape or Back (cancelResult). onResult then runs once, after the views
// are gone. Main thread, points.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/tree/view.h"
#include "platform/ui/values/image.h"

namespace ui {

class Button;
class Label;
class ScrollView;

class Dialog : public platform::Shared {
 public:
  struct ButtonSpec {
    std::string text;
    int result = 0;
  };

  Dialog();
  ~Dialog() override;
  std::string_view className() const override { return "Dialog"; }

  // Set before present().
  std::string title, message;
  Ref<View> content;            // keeps its size, placed between title and buttons
  std::string icon;             // one character of the icon face, in the circle on top
  Image iconImage;              // instead of the character
  std::optional<Color> accent;  // of circle and buttons; none: the program's
  bool circle = false;          // on top of the card
  bool spinner = false;         // with an activity indicator instead of the icon
  bool horizontalButtons = true;
  bool cancelable = false;
  int cancelResult = 0;
  Role role = Role::Dialog;
  std::function<void(int result)> onResult;
  void addButton(std::string text, int result) { buttons_.push_back({std::move(text), result}); }
  const std::vector<ButtonSpec>& buttons() const { return buttons_; }

  // In front of the key window. Does nothing when it was presented before.
  void present();
  void dismiss(int result);
  bool cancel();  // as by a tap beside; false when not cancelable
  bool shown() const { return layer_.get() != nullptr; }

  // The card, once presented; it may be moved and stays where it was put until the
  // window's size changes.
  View* view() const { return card_.get(); }
  View* layer() const { return layer_.get(); }  // scrim and card
  View* buttonView(std::size_t index) const;

 private:
  struct Layer;
  void build();
  void layOut();
  void takeFocus();
  void giveFocusBack();
  struct Part {
    View* view;
    Size size;
  };
  using Put = std::function<void(View& view, View& parent, const Rect& frame)>;
  std::vector<Part> bodyParts(double width) const;
  View& area();
  bool stacked(double inner) const;
  double buttonsHeight(double inner) const;
  void placeButtons(View& holder, Point at, double inner, const Put& put) const;

  std::vector<ButtonSpec> buttons_;
  Ref<View> layer_, card_, scrim_, circleView_;
  Ref<Label> titleLabel_, messageLabel_;
  Ref<ScrollView> area_;  // around what is over the buttons, where it needs one
  std::vector<Ref<Button>> buttonViews_;
  Size placedFor_;
  std::uint64_t keyboardObserver_ = 0;
  WeakRef<View> former_;  // what had the focus before
  bool presented_ = false;
};

}  // namespace ui
