#include "runtime/views/wrappers/image_view_wrapper.h"

#include <algorithm>

#include "runtime/data/files/bitmap.h"
#include "runtime/views/base/image_source.h"
#include "runtime/views/base/properties.h"

namespace kes {

namespace {
constexpr std::int32_t kLastMode = static_cast<std::int32_t>(ui::ContentMode::BottomRight);
}

Ref<ui::View> KesImageViewWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                         bool bridge) const {
  auto image = ensure(view);
  image->setImage(buildBitmap(props::string(properties, "imageFile"), bridge));
  fromBoxed(image).setContentMode(props::integer(properties, "contentMode"));
  return KesViewWrapper::build(image, properties, bridge);
}

KesBitmap KesImageViewWrapper::Bitmap() const {
  const auto* attached = peekMap(self());
  return attached ? KesBitmap::fromBoxed(attached->get("bitmap")) : KesBitmap();
}

void KesImageViewWrapper::setBitmap(const KesBitmap& bitmap) {
  getMap(self()).set("bitmap", bitmap.objectOrNull());
  self().setImage(imageOf(bitmap));
}

void KesImageViewWrapper::setContentMode(std::int32_t mode) {
  self().setContentMode(static_cast<ui::ContentMode>(std::clamp(mode, 0, kLastMode)));
}

}  // namespace kes
