#include "platform/ui/values/image.h"

#include <cstring>
#include <fstream>

namespace ui {

struct Image::Data {
  std::string path;
  std::shared_ptr<const Bytes> bytes;
  double scale = 1;
};

namespace {

using Head = Image::Bytes;

unsigned big16(const Head& h, std::size_t at) { return h[at] << 8u | h[at + 1]; }
unsigned big32(const Head& h, std::size_t at) { return big16(h, at) << 16u | big16(h, at + 2); }
unsigned little16(const Head& h, std::size_t at) { return h[at + 1] << 8u | h[at]; }

std::optional<Size> jpegSize(const Head& h) {
  std::size_t at = 2;
  while (at + 9 < h.size() && h[at] == 0xFF) {
    const auto marker = h[at + 1];
    const bool frame =
        marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (frame)
      return Size{static_cast<double>(big16(h, at + 7)), static_cast<double>(big16(h, at + 5))};
    at += 2 + std::max(2u, big16(h, at + 2));
  }
  return std::nullopt;
}

// Pixels, from the header of an encoded image.
std::optional<Size> pixels(const Head& h) {
  static constexpr unsigned char kPng[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (h.size() >= 24 && std::memcmp(h.data(), kPng, 8) == 0)
    return Size{static_cast<double>(big32(h, 16)), static_cast<double>(big32(h, 20))};
  if (h.size() >= 10 && std::memcmp(h.data(), "GIF8", 4) == 0)
    return Size{static_cast<double>(little16(h, 6)), static_cast<double>(little16(h, 8))};
  if (h.size() >= 4 && h[0] == 0xFF && h[1] == 0xD8) return jpegSize(h);
  return std::nullopt;
}

const std::string kNoPath;

}  // namespace

Image Image::fromFile(std::string path, double scale) {
  Image image;
  if (!path.empty()) image.data_ = std::make_shared<Data>(Data{std::move(path), nullptr, scale});
  return image;
}

Image Image::fromBytes(Bytes bytes, double scale) {
  Image image;
  if (!bytes.empty())
    image.data_ =
        std::make_shared<Data>(Data{{}, std::make_shared<const Bytes>(std::move(bytes)), scale});
  return image;
}

const std::string& Image::path() const { return data_ ? data_->path : kNoPath; }
std::shared_ptr<const Image::Bytes> Image::bytes() const { return data_ ? data_->bytes : nullptr; }
double Image::scale() const { return data_ ? data_->scale : 1; }

std::optional<Size> Image::naturalSize() const {
  if (!data_) return std::nullopt;
  std::optional<Size> size;
  if (data_->bytes) {
    size = pixels(*data_->bytes);
  } else {
    // A camera's JPEG may have a preview of up to 64 KiB before its own size.
    Bytes head(128 * 1024);
    std::ifstream file(data_->path, std::ios::binary);
    file.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    size = pixels(head);
  }
  if (!size || data_->scale <= 0) return size;
  return Size{size->width / data_->scale, size->height / data_->scale};
}

bool Image::operator==(const Image& other) const {
  if (data_ == other.data_) return true;
  if (!data_ || !other.data_) return false;
  return data_->path == other.data_->path && data_->bytes == other.data_->bytes &&
         data_->scale == other.data_->scale;
}

}  // namespace ui
