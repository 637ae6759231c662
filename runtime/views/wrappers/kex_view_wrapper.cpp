#include "runtime/views/wrappers/kex_view_wrapper.h"

#include "platform/ui/application.h"
#include "runtime/core/language/common.h"
#include "runtime/views/base/properties.h"

namespace kes {

void KexViewWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  if (!keep) setObject(makeView());
  if (object().as<KesPanelView>())
    panel().innerInitialize(bi, eventName, true);
  else if (object().as<ui::ScrollView>())
    scroll().innerInitialize(bi, eventName, true);
  else
    KesViewWrapper::innerInitialize(bi, eventName, true);
}

void KexViewWrapper::SetLayoutAnimated(std::int64_t milliseconds, double left, double top,
                                       double width, double height) {
  kes::SetLayoutAnimated(view(), milliseconds, 1, left, top, width, height);
}

void KexViewWrapper::SetColorAnimated(std::int64_t milliseconds, std::int32_t from,
                                      std::int32_t to) {
  view().setBackground(ColorToUIColor(from));
  KesViewWrapper::SetColorAnimated(milliseconds, to);
}

void KexViewWrapper::AddView(const KesViewWrapper& child, double left, double top, double width,
                             double height) {
  panel().AddView(child, left, top, width, height);
}

KesLayoutValues KexViewWrapper::LoadLayout(std::string_view fileName, const Ref<Kes>& bi) {
  return panel().LoadLayout(fileName, bi);
}

KexViewWrapper KexViewWrapper::GetView(std::int32_t index) const { return panel().GetView(index); }

KexViewWrapper KesXUI::CreatePanel(const Ref<Kes>& bi, const Text& eventName) {
  KesPanelWrapper panel;
  panel.Initialize(bi, eventName);
  return panel;
}

std::int32_t KesXUI::PaintOrColorToColor(const Value& color) {
  return color.isNilOrNull() ? 0 : fromValue<std::int32_t>(color);
}

bool KesXUI::SubExists(const Value& component, std::string_view sub, std::int32_t parameters) {
  return KesCommon::SubExists(nullptr, component, sub, parameters);
}

}  // namespace kes
