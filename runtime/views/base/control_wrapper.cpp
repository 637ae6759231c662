#include "runtime/views/base/control_wrapper.h"

#include "platform/ui/controls/button.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/controls/pickers.h"
#include "platform/ui/controls/text_input.h"
#include "runtime/views/base/properties.h"

namespace kes {

bool KesControlWrapper::accepts(const Value& v) const {
  return v.as<ui::Button>() || v.as<ui::TextField>() || v.as<ui::Switch>() ||
         v.as<ui::RangeControl>() || v.as<ui::SegmentedControl>() || v.as<ui::DatePicker>();
}

Ref<ui::View> KesControlWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                       bool bridge) const {
  if (!view) view = makeView();
  view->setEnabled(props::flag(properties, "enabled"));
  return KesViewWrapper::build(std::move(view), properties, bridge);
}

}  // namespace kes
