#include "runtime/views/base/image_source.h"

#include "runtime/data/files/bitmap.h"
#include "runtime/data/files/file.h"

namespace kes {

ui::Image imageOf(const KesBitmap& bitmap) {
  const auto image = bitmap.nativeOrNull();
  return image ? ui::Image::fromShared(image->bytes(), image->scale()) : ui::Image();
}

ui::Image buildBitmap(std::string_view fileName, bool fromTemporary) {
  if (fileName.empty()) return {};
  KesBitmap bitmap;
  bitmap.Initialize(fromTemporary ? File().DirTemp() : File().DirAssets(), fileName);
  return imageOf(bitmap);
}

}  // namespace kes
