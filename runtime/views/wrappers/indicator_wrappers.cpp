#include "runtime/views/wrappers/indicator_wrappers.h"

#include "runtime/views/base/properties.h"

namespace kes {

Ref<ui::View> KesProgressWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                        bool bridge) const {
  auto progress = ensure(view);
  progress->progressColor = props::buildColor(properties, "progressColor");
  return KesViewWrapper::build(progress, properties, bridge);
}

Ref<ui::View> KesActivityIndicatorWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                                 bool bridge) const {
  auto indicator = ensure(view);
  indicator->setStyle(props::integer(properties, "style"));
  if (const auto color = props::buildColor(properties, "color")) indicator->setColor(*color);
  return KesViewWrapper::build(indicator, properties, bridge);
}

}  // namespace kes
