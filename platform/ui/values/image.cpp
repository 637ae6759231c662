#include "platform/ui/values/image.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>

#include "platform/base/log.h"
#include "platform/pictures/picture.h"

namespace ui {

namespace {

const std::string kNoPath;
// What is written anew is held in memory as pixels, and so is bounded.
constexpr double kMostWritten = 24 << 20;

std::shared_ptr<const Image::Bytes> readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::make_shared<const Image::Bytes>(std::istreambuf_iterator<char>(file),
                                              std::istreambuf_iterator<char>());
}

std::optional<Size> sizeOf(const Image::Bytes& file) {
  try {
    const pictures::Extent size = pictures::sizeOf(file);
    return Size{static_cast<double>(size.width), static_cast<double>(size.height)};
  } catch (const std::exception& e) {
    platform::log(std::string("Picture refused: ") + e.what());
    return std::nullopt;
  }
}

}  // namespace

struct Image::Data {
  std::string path;
  std::shared_ptr<const Bytes> bytes;
  double scale = 1;

  // Of bytes, which don't change: worked out when first asked for.
  std::once_flag measured, hashed;
  std::optional<Size> pixels;
  std::size_t fingerprint = 0;
};

Image Image::fromFile(std::string path, double scale) {
  Image image;
  if (path.empty()) return image;
  image.data_ = std::make_shared<Data>();
  image.data_->path = std::move(path);
  image.data_->scale = scale;
  return image;
}

Image Image::fromBytes(Bytes bytes, double scale) {
  return fromShared(std::make_shared<const Bytes>(std::move(bytes)), scale);
}

Image Image::fromShared(std::shared_ptr<const Bytes> bytes, double scale) {
  Image image;
  if (!bytes || bytes->empty()) return image;
  image.data_ = std::make_shared<Data>();
  image.data_->bytes = std::move(bytes);
  image.data_->scale = scale;
  return image;
}

const std::string& Image::path() const { return data_ ? data_->path : kNoPath; }
std::shared_ptr<const Image::Bytes> Image::bytes() const { return data_ ? data_->bytes : nullptr; }
double Image::scale() const { return data_ && data_->scale > 0 ? data_->scale : 1; }

std::shared_ptr<const Image::Bytes> Image::contents() const {
  if (!data_) return std::make_shared<const Bytes>();
  return data_->bytes ? data_->bytes : readFile(data_->path);
}

std::size_t Image::fingerprint() const {
  if (!data_ || !data_->bytes) return 0;
  std::call_once(data_->hashed, [this] {
    const auto& bytes = *data_->bytes;
    data_->fingerprint =
        std::hash<std::string_view>()({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  });
  return data_->fingerprint;
}

std::optional<Size> Image::pixels() const {
  if (!data_) return std::nullopt;
  if (!data_->bytes) return sizeOf(*contents());
  std::call_once(data_->measured, [this] { data_->pixels = sizeOf(*data_->bytes); });
  return data_->pixels;
}

std::optional<Size> Image::naturalSize() const {
  const auto size = pixels();
  if (!size) return std::nullopt;
  return Size{size->width / scale(), size->height / scale()};
}

bool Image::operator==(const Image& other) const {
  if (data_ == other.data_) return true;
  if (!data_ || !other.data_) return false;
  return data_->path == other.data_->path && data_->bytes == other.data_->bytes &&
         data_->scale == other.data_->scale;
}

std::optional<RenderedImage> render(const Image& image, const ImageRendition& wanted) {
  const auto own = image.pixels();
  if (!own) return std::nullopt;
  Size size = wanted.pixels.value_or(*own);
  size = {std::max(1.0, size.width), std::max(1.0, size.height)};
  if (wanted.pixels && wanted.keepRatio) {
    const double zoom = std::min(size.width / own->width, size.height / own->height);
    size = {own->width * zoom, own->height * zoom};
  }
  const double share = std::min(1.0, std::sqrt(kMostWritten / (size.width * size.height)));
  const auto side = [share](double length) {
    return std::max(1, static_cast<int>(std::lround(std::min(length * share, kMostWritten))));
  };
  const pictures::Extent extent{side(size.width), side(size.height)};
  try {
    const auto bitmap = pictures::scaled(pictures::decode(*image.contents(), extent), extent);
    return RenderedImage{pictures::encode(bitmap, wanted.format, wanted.quality), share};
  } catch (const std::exception& e) {
    platform::log(std::string("Picture not written anew: ") + e.what());
    return std::nullopt;
  }
}

}  // namespace ui
