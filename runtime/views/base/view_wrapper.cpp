#include "runtime/views/base/view_wrapper.h"

#include "platform/ui/application.h"
#include "runtime/core/map.h"
#include "runtime/views/base/device.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/pages/view_controller.h"

namespace kes {

void SetLayoutAnimated(ui::View& view, std::int64_t milliseconds, double damping, double left,
                       double top, double width, double height) {
  const ui::Rect to{left, top, width, height};
  auto* app = ui::Application::current();
  if (milliseconds < 1 || !app)
    view.setFrame(to);
  else
    app->animator().frame(view, to, {milliseconds, ui::Timing::EaseInOut, damping});
}

void KesViewWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  if (!keep) setObject(makeView());
  setBIAndEventName(view(), bi, eventName);
  wireTaps(view());
}

void KesViewWrapper::wireTaps(ui::View& view) {
  const bool click = hasMethod(view, "_click"), longClick = hasMethod(view, "_longclick");
  if (click) view.setOnTap([](ui::View& v) { raiseUIEvent(v, "_click", {}); });
  if (longClick) view.setOnLongPress([](ui::View& v) { raiseUIEvent(v, "_longclick", {}); });
  if (click || longClick) view.setUserInteraction(true);
}

Ref<ui::View> KesViewWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                    bool bridge) const {
  if (!view) view = makeView();
  KesViewWrapper scratch;
  scratch.setObject(view);
  const Text name = props::text(properties, "name");
  if (!props::isRoot(properties))
    scratch.SetBorder(props::number(properties, "borderWidth"),
                      props::color(properties, "borderColor"),
                      props::number(properties, "cornerRadius"));
  getMap(*view).set("name", name);
  view->setName(name.ToLowerCase().str());
  scratch.setColor(props::color(properties, "backgroundColor"));
  scratch.setAlpha(props::number(properties, "alpha"));
  if (!bridge) {
    scratch.setVisible(props::flag(properties, "visible"));
    scratch.setTag(props::value(properties, "tag"));
  }
  return view;
}

// Through middle and size, from which the platform derives a frame: each of the four leaves
// the other three as they are.
double KesViewWrapper::Left() const { return view().center().x - view().bounds().width / 2; }
double KesViewWrapper::Top() const { return view().center().y - view().bounds().height / 2; }
void KesViewWrapper::setLeft(double left) {
  ui::View& v = view();
  v.setCenter({left + v.bounds().width / 2, v.center().y});
}
void KesViewWrapper::setTop(double top) {
  ui::View& v = view();
  v.setCenter({v.center().x, top + v.bounds().height / 2});
}
void KesViewWrapper::setWidth(double width) {
  const double left = Left();
  view().setBounds({0, 0, width, Height()});
  setLeft(left);
}
void KesViewWrapper::setHeight(double height) {
  const double top = Top();
  view().setBounds({0, 0, Width(), height});
  setTop(top);
}

void KesViewWrapper::SetLayoutAnimated(std::int64_t milliseconds, double damping, double left,
                                       double top, double width, double height) {
  kes::SetLayoutAnimated(view(), milliseconds, damping, left, top, width, height);
}

std::int32_t KesViewWrapper::Color() const { return UIColorToColor(view().background()); }

void KesViewWrapper::setColor(std::int32_t argb) {
  const auto color = KesColorToUIColor(argb);
  ui::View& v = view();
  if (!color) return;
  v.setBackground(*color);
  if (auto* page = dynamic_cast<KesMainView*>(v.parent())) page->setBackground(*color);
}

void KesViewWrapper::SetColorAnimated(std::int64_t milliseconds, std::int32_t to) {
  if (auto* app = ui::Application::current())
    app->animator().background(view(), ColorToUIColor(to), {milliseconds});
  else
    view().setBackground(ColorToUIColor(to));
}

std::int32_t KesViewWrapper::TintColor() const { return UIColorToColor(view().tint()); }
void KesViewWrapper::setTintColor(std::int32_t argb) { view().setTint(KesColorToUIColor(argb)); }

void KesViewWrapper::SetAlphaAnimated(std::int64_t milliseconds, double to) {
  if (auto* app = ui::Application::current())
    app->animator().alpha(view(), to, {milliseconds});
  else
    view().setAlpha(to);
}

void KesViewWrapper::SetBorder(double width, std::int32_t color, double cornerRadius) {
  if (cornerRadius > 0) view().setClipsToBounds(true);
  // A border without width has no colour: most views are spared the room for one.
  view().setBorder({width, width > 0 ? ColorToUIColor(color) : ui::Color(), cornerRadius});
}

void KesViewWrapper::SetShadow(std::int32_t color, double offsetX, double offsetY, double opacity,
                               bool usePath) {
  ui::View& v = view();
  v.setClipsToBounds(false);
  ui::Shadow shadow = v.shadow();
  shadow.color = ColorToUIColor(color);
  shadow.offset = {offsetX, offsetY};
  shadow.opacity = opacity;
  shadow.rectangular = usePath;
  v.setShadow(shadow);
}

void KesViewWrapper::SetParallaxEffect(std::int32_t vertical, std::int32_t horizontal) {
  KesMap effects;
  effects.Initialize();
  if (vertical) effects.Put("center.y", vertical);
  if (horizontal) effects.Put("center.x", horizontal);
  getMap(view()).set("motionEffects", effects.Size() ? Value(effects) : Value());
}

bool KesViewWrapper::RequestFocus() {
  view().requestFocus();
  return view().isFocused();
}

KesViewWrapper KesViewWrapper::Parent() const {
  KesViewWrapper parent;
  if (auto* p = view().parent()) parent.setObject(Ref<ui::View>(p));
  return parent;
}

double KesViewWrapper::CalcRelativeKeyboardHeight(double height) const {
  if (!view().window()) return height;
  return view().fromWindow({0, device::screenBounds().height - height}).y;
}

}  // namespace kes
