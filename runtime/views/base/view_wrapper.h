// KesViewWrapper: what the application holds of a view, and base of all its relatives.
//
// A plain copyable member: copies stand for the same view, which its parent and the
// wrappers keep alive. All state lives in the view or its attached properties. Geometry
// goes by centre and size. Events are wired when the owner has a handler for them.
// Lengths are points, times milliseconds, colours ARGB numbers. Main thread. Every
// operation throws "Object was not initialized (%@)" while there is no view.
#pragma once

#include "platform/ui/tree/view.h"
#include "runtime/core/class_table.h"
#include "runtime/core/dictionary.h"
#include "runtime/core/kes.h"
#include "runtime/core/wrapper.h"

namespace kes {

// Centre and size of the view, at once below a duration of 1.
void SetLayoutAnimated(ui::View& view, std::int64_t milliseconds, double damping, double left,
                       double top, double width, double height);

class KesViewWrapper : public TypedWrapper<KesViewWrapper, ui::View> {
 public:
  static constexpr std::string_view kPlatformClass = "UIView";
  static constexpr std::string_view kName = "KesViewWrapper";
  std::string_view className() const override { return kName; }
  static void describe(ClassBuilder<KesViewWrapper>& c) { c.name(kName); }

  // A new view that raises its events on bi under the prefix.
  void Initialize(const Ref<Kes>& bi, const Text& eventName) {
    innerInitialize(bi, eventName, false);
  }
  // Wires the events, on the present view if `keep`, else on a new one.
  virtual void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep);
  // Fills a view, or a new one, from a layout's properties: all but its place, which is
  // applyGeometry's.
  virtual Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const;
  virtual Ref<ui::View> makeView() const { return platform::makeShared<ui::View>(); }

  double Left() const;
  double Top() const;
  double Width() const { return view().bounds().width; }
  double Height() const { return view().bounds().height; }
  void setLeft(double left);
  void setTop(double top);
  void setWidth(double width);
  void setHeight(double height);
  void SetLayoutAnimated(std::int64_t milliseconds, double damping, double left, double top,
                         double width, double height);

  std::int32_t Color() const;
  void setColor(std::int32_t argb);
  void SetColorAnimated(std::int64_t milliseconds, std::int32_t to);
  std::int32_t TintColor() const;
  void setTintColor(std::int32_t argb);
  double Alpha() const { return view().alpha(); }
  void setAlpha(double alpha) { view().setAlpha(alpha); }
  void SetAlphaAnimated(std::int64_t milliseconds, double to);
  bool Visible() const { return !view().hidden(); }
  void setVisible(bool visible) { view().setHidden(!visible); }
  void SetBorder(double width, std::int32_t color, double cornerRadius);
  void SetShadow(std::int32_t color, double offsetX, double offsetY, double opacity, bool usePath);
  // How far the view sways as the phone is tilted; kept with the view.
  void SetParallaxEffect(std::int32_t vertical, std::int32_t horizontal);

  bool UserInteractionEnabled() const { return view().userInteraction(); }
  void setUserInteractionEnabled(bool enabled) { view().setUserInteraction(enabled); }
  bool RequestFocus();
  void ResignFocus() { view().resignFocus(); }
  bool IsFocused() const { return view().isFocused(); }

  KesViewWrapper Parent() const;  // not initialised when there is none
  // What a screen reader says, where the view shows no words of its own.
  void setAccessibleName(std::string_view name) { view().setAccessibleName(std::string(name)); }
  void RemoveViewFromParent() { view().removeFromParent(); }
  void BringToFront() { view().bringToFront(); }
  void SendToBack() { view().sendToBack(); }
  void SizeToFit() { view().sizeToFit(); }
  // The top of a keyboard of that height, in this view's coordinates.
  double CalcRelativeKeyboardHeight(double height) const;

  ui::View& view() const { return static_cast<ui::View&>(*object().object()); }

 protected:
  // "_click" and "_longclick", where the owner has them.
  static void wireTaps(ui::View& view);
};

// Common ground of the members of the family: W wraps views of class P.
template <class W, class P, class Base = KesViewWrapper>
class ViewWrapper : public TypedWrapper<W, P, Base> {
 public:
  std::string_view className() const override { return W::kName; }
  static void describe(ClassBuilder<W>& c) { c.name(W::kName); }
  Ref<ui::View> makeView() const override { return platform::makeShared<P>(); }

 protected:
  P& self() const { return static_cast<P&>(this->view()); }
  // The view given if it is a P, else a new one.
  Ref<P> ensure(const Ref<ui::View>& view) const {
    auto* given = dynamic_cast<P*>(view.get());
    return given ? Ref<P>(given) : platform::makeShared<P>();
  }
};

}  // namespace kes
