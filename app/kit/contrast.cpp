#include "app/kit/contrast.h"

#include "platform/ui/values/branding.h"
#include "platform/ui/values/color.h"

namespace varlo {

namespace {

ui::Color color(std::int32_t argb) { return ui::Color(static_cast<std::uint32_t>(argb)); }

}  // namespace

double contrast(std::int32_t a, std::int32_t b) { return ui::contrast(color(a), color(b)); }

std::int32_t townColor() { return static_cast<std::int32_t>(ui::looks().accent.argb); }

std::int32_t readableOn(std::int32_t background) {
  return static_cast<std::int32_t>(ui::readableOn(color(background)).argb);
}

}  // namespace varlo
