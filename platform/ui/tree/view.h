// A node of the view tree: a rectangle with a look, children and hooks, no pixels.
//
// Owned by its parent and by whoever holds a Ref; the parent is known weakly. Main
// thread only. Lengths are points. Geometry is kept as a centre (in the parent's
// coordinates) and a size; a view's own coordinates start at 0,0. Values read back
// are always the final ones; while an Animator works, presented() tells what is seen.
// Setters note the change for the screen and ask for a frame. What few views have
// (border, shadow, hooks, names) lives in a side structure made on first use.
// Hooks may remove or release any view, their own included. Nothing here throws but
// what a hook throws.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/shared.h"
#include "platform/ui/values/view_types.h"

namespace ui {

using platform::makeShared;
using platform::Ref;
using platform::WeakRef;

class Animator;
class TextHolder;
class Window;

class View : public platform::Shared {
 public:
  View();
  ~View() override;
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  std::string_view className() const override { return "UIView"; }

  // --- Geometry.
  Rect bounds() const { return {0, 0, size_.width, size_.height}; }
  void setBounds(const Rect& bounds);  // the origin is ignored
  Point center() const { return center_; }
  void setCenter(Point center);
  Rect frame() const { return Rect::centered(center_, size_); }
  void setFrame(const Rect& frame);
  virtual Size sizeThatFits(Size limit) const;  // the present size, unless overridden
  void sizeToFit();                             // keeps left and top
  Presented presented() const;
  // Added to the position of each child: what a scroll view scrolls by.
  virtual Point childOffset() const { return {}; }
  Point toWindow(Point p) const;
  Point fromWindow(Point p) const;
  Rect frameInWindow() const { return {toWindow({}).x, toWindow({}).y, size_.width, size_.height}; }
  // Moves what is inside so that a descendant can be seen, if this is a view that can.
  virtual void reveal(View& /*inside*/) {}
  // What the bars of the screen cover of this view.
  virtual Insets safeAreaInsets() const;

  // --- Tree. children() is back to front; copy it before running code that may change it.
  View* parent() const { return parent_; }
  const std::vector<Ref<View>>& children() const { return children_; }
  void addSubview(Ref<View> child);  // in front; taken from its former parent
  void insertSubview(Ref<View> child, std::size_t index);
  void removeFromParent();
  void removeAllSubviews();
  void bringToFront();
  void sendToBack();
  bool isDescendantOf(const View& other) const;  // a view is its own descendant
  Window* window() const;
  // The children that a rectangle (own coordinates) may show, back to front. Quick for
  // thousands of children laid out along one axis.
  void childrenIn(const Rect& area, std::vector<View*>& out) const;
  // The children as they are read, where that isn't by their places; by default nothing.
  virtual std::vector<View*> childrenInReadingOrder() const { return {}; }
  // Makes what was put off until it could be seen; for whoever reads or searches the
  // whole tree.
  virtual void completeChildren() {}
  // The topmost view at a point (own coordinates) that takes touches, or null.
  virtual View* hitTest(Point p);

  // --- Layout. The pass calls layoutSubviews() once the size or the children changed.
  void setNeedsLayout();
  void layoutIfNeeded();  // this view and what is below it, now

  // --- Look.
  Color background() const { return background_; }
  void setBackground(Color color);
  double alpha() const { return alpha_; }
  void setAlpha(double alpha);
  bool hidden() const { return flag(Hidden); }
  void setHidden(bool hidden);
  bool clipsToBounds() const { return flag(Clips); }
  void setClipsToBounds(bool clips);
  Border border() const;
  void setBorder(const Border& border);
  Shadow shadow() const;
  void setShadow(const Shadow& shadow);
  Color tint() const;  // own, else the parent's, else the house's
  void setTint(std::optional<Color> tint);

  // --- Interaction.
  bool userInteraction() const { return flag(Interactive); }
  void setUserInteraction(bool enabled) { setFlag(Interactive, enabled, Change::State); }
  bool enabled() const { return !flag(Disabled); }
  void setEnabled(bool enabled) { setFlag(Disabled, !enabled, Change::State); }
  bool pressed() const { return flag(Pressed); }
  void setPressed(bool pressed) { setFlag(Pressed, pressed, Change::State); }
  using Hook = std::function<void(View&)>;
  using TouchHook = std::function<void(TouchAction, double x, double y)>;
  void setOnTap(Hook hook);
  void setOnLongPress(Hook hook);
  void setOnTouch(TouchHook hook);  // a cancelled touch is reported as Up
  bool hasOnTap() const;
  bool hasOnLongPress() const;
  bool hasOnTouch() const;
  // True when a tap here does something; the point of tap() is in own coordinates.
  virtual bool takesTap() const { return hasOnTap(); }
  virtual void tap(Point at);
  void longPress();
  void touch(TouchAction action, Point at);
  // What the keyboard does while the view has the focus: a key, a text typed (true: taken).
  virtual KeyUse keyPressed(Key /*key*/) { return KeyUse::None; }
  virtual bool typed(std::string_view /*utf8*/) { return false; }
  // The on-screen keyboard comes up for it.
  virtual bool wantsKeyboard() const { return false; }
  // Page Up, Page Down, Home and End: whether they move what is inside, and the move.
  virtual bool scrollsByKeys() const { return false; }
  virtual void scrollByKey(Key /*key*/) {}
  // A press stays while the finger is near, as on a button; else it goes once it moves.
  virtual bool holdsPress() const { return false; }
  // Arrow keys and the like while focused; true when used.
  virtual bool adjust(int /*steps*/) { return false; }

  // --- Focus: at most one view has it. By default what can be tapped can be focused.
  virtual bool canFocus() const { return takesTap(); }
  void requestFocus();
  // The page's title has it from the next frame on, unless another view takes it.
  void resignFocus();
  bool isFocused() const { return flag(Focused); }

  // --- Names and assistive technology.
  const std::string& name() const;  // the designer's
  void setName(std::string name);
  virtual std::string displayText() const { return {}; }  // what can be read on it
  virtual TextHolder* textHolder() { return nullptr; }    // this view, where it is one
  Role role() const;  // as set, else by kind; a plain view that takes taps is a button
  void setRole(std::optional<Role> role);
  // As set, else the spoken text of the view; a plain view that takes taps goes by the
  // texts inside it.
  std::string accessibleName() const;
  void setAccessibleName(std::string name);
  bool accessibilityHidden() const { return flag(AccessibilityHidden); }
  void setAccessibilityHidden(bool hidden) {  // with everything inside
    setFlag(AccessibilityHidden, hidden, Change::Accessibility);
  }
  // What lies behind a modal view, in its parent and further up, is out of reach for
  // focus and assistive technology.
  bool modal() const { return flag(Modal); }
  void setModal(bool modal);
  // The one among its neighbours that is shown elsewhere, as the menu's row of a page.
  bool current() const { return flag(Current); }
  void setCurrent(bool current) { setFlag(Current, current, Change::Accessibility); }
  // What a control or text input holds, as it is read aloud.
  virtual std::string accessibleValue() const { return {}; }

  // --- For the screen.
  Change takeChanges();
  void markChanged(Change what);

 protected:
  virtual void layoutSubviews() {}
  // It has another size, and the layout pass is still to come: for children whose place
  // somebody may ask for before that.
  virtual void sizeChanged() {}
  // It has another parent now, or none; also when the former one is being destroyed.
  virtual void parentChanged() {}
  virtual void focusChanged(bool /*focused*/) {}
  virtual Role defaultRole() const { return Role::None; }
  virtual std::string derivedName() const;  // where no accessible name was set
  virtual Window* asWindow() { return nullptr; }

 private:
  friend class Animator;
  friend class Application;
  friend class Focus;
  struct Rare;
  struct ChildIndex;
  enum Flag : std::uint16_t {
    NeedsLayout = 1,
    BelowNeedsLayout = 2,
    Hidden = 4,
    Clips = 8,
    Interactive = 16,
    Disabled = 32,
    Pressed = 64,
    Focused = 128,
    Animated = 256,
    Modal = 512,
    AccessibilityHidden = 1024,
    Current = 2048,
  };
  bool flag(Flag f) const { return (flags_ & f) != 0; }
  void setFlag(Flag f, bool on, Change what);
  Rare& rare();
  void geometryChanged(bool resized);
  void adopt(Ref<View> child, std::size_t index);
  void leaveParent();
  static void orphan(const std::vector<Ref<View>>& children);
  void runLayout();

  Size size_;
  Point center_;
  View* parent_ = nullptr;
  std::vector<Ref<View>> children_;
  mutable std::unique_ptr<ChildIndex> index_;
  std::unique_ptr<Rare> rare_;
  Color background_;
  float alpha_ = 1;
  std::uint16_t flags_ = NeedsLayout | Interactive;
  Change pending_ = Change::All;
};

}  // namespace ui
