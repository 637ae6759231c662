#include "runtime/views/wrappers/panel_wrapper.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/layout/layout_builder.h"

namespace kes {

namespace {

void fillList(const ui::View& panel, std::vector<Value>& out) {
  for (const auto& child : panel.children()) {
    out.emplace_back(child);
    if (dynamic_cast<const KesPanelView*>(child.get())) fillList(*child, out);
  }
}

}  // namespace

void KesPanelWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::View& v = view();
  if (!hasMethod(v, "_touch:::")) return;
  v.setUserInteraction(true);
  v.setOnTouch([&v](ui::TouchAction action, double x, double y) {
    const Value params[] = {static_cast<std::int32_t>(action), x, y};
    raiseEvent(v, "_touch:::", params);
  });
}

Ref<ui::View> KesPanelWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                     bool bridge) const {
  auto panel = ensure(view);
  const auto vertical = props::integer(properties, "verticalParallax");
  const auto horizontal = props::integer(properties, "horizontalParallax");
  if (vertical || horizontal) fromBoxed(panel).SetParallaxEffect(vertical, horizontal);
  return KesViewWrapper::build(panel, properties, bridge);
}

void KesPanelWrapper::AddView(const KesViewWrapper& child, double left, double top, double width,
                              double height) {
  const Ref<ui::View> added(&child.view());
  view().addSubview(added);
  added->setFrame({left, top, width, height});
}

KesLayoutValues KesPanelWrapper::LoadLayout(std::string_view fileName, const Ref<Kes>& bi) {
  return KesLayoutBuilder().loadLayout(fileName, bi, *this);
}

void KesPanelWrapper::RemoveViewAt(std::int32_t index) { GetView(index).RemoveViewFromParent(); }

KesViewWrapper KesPanelWrapper::GetView(std::int32_t index) const {
  const auto& views = view().children();
  if (index < 0 || static_cast<std::size_t>(index) >= views.size())
    throw KesException("NSRangeException",
                       formatText("View %@ is not in a panel of %@ views",
                                  {std::to_string(index), std::to_string(views.size())}));
  return KesViewWrapper::fromBoxed(views[static_cast<std::size_t>(index)]);
}

KesList KesPanelWrapper::GetAllViewsRecursive() const {
  std::vector<Value> all;
  fillList(view(), all);
  return KesList::of(std::move(all));
}

}  // namespace kes
