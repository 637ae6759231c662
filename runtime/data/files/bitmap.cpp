#include "runtime/data/files/bitmap.h"

#include <algorithm>

#include "runtime/data/files/file.h"

namespace kes {

namespace {

constexpr std::string_view kDouble = "@2x";

std::string_view formatOf(const EncodedImage::Bytes& bytes) {
  const std::string_view start(reinterpret_cast<const char*>(bytes.data()),
                               std::min<std::size_t>(bytes.size(), 12));
  if (start.starts_with("\x89PNG\r\n\x1a\n")) return "PNG";
  if (start.starts_with("\xFF\xD8\xFF")) return "JPEG";
  if (start.starts_with("GIF87a") || start.starts_with("GIF89a")) return "GIF";
  if (start.starts_with("RIFF") && start.ends_with("WEBP")) return "WEBP";
  if (start.starts_with("BM")) return "BMP";
  throw KesException("Error loading image.");
}

std::string_view stemOf(std::string_view file) { return file.substr(0, file.rfind('.')); }

}  // namespace

EncodedImage::EncodedImage(Bytes bytes, double scale)
    : bytes_(std::make_shared<const Bytes>(std::move(bytes))),
      scale_(scale),
      format_(formatOf(*bytes_)) {}

KesBitmap KesBitmap::over(EncodedImage::Bytes bytes) {
  KesBitmap bitmap;
  bitmap.wrap(Value(platform::makeShared<EncodedImage>(std::move(bytes))));
  return bitmap;
}

void KesBitmap::Initialize(std::string_view dir, std::string_view file) {
  std::string name(file);
  const bool dotted = file.find('.') != file.npos;
  if (dotted && !stemOf(file).ends_with(kDouble) && screenScale && screenScale() > 1.0) {
    std::string doubled = name;
    doubled.insert(stemOf(file).size(), kDouble);
    if (File().Exists(dir, doubled)) name = doubled;
  }
  const double scale = stemOf(name).ends_with(kDouble) ? 2 : 1;
  wrap(Value(platform::makeShared<EncodedImage>(File().readBytes(dir, name), scale)));
}

void KesBitmap::InitializeFromStream(KesInputStream stream) {
  wrap(Value(platform::makeShared<EncodedImage>(stream.readAll())));
}

void KesBitmap::WriteToStream(KesOutputStream stream, std::int32_t quality,
                              std::string_view format) const {
  const auto image = native();
  const Text wanted = Text(format).ToUpperCase();
  if (image->format() == wanted.view()) return stream.write(*image->bytes());
  const auto encoded = encoder ? encoder(*image, wanted, quality) : std::nullopt;
  if (!encoded) throw KesException(formatText("Cannot write image as %@", {format}));
  stream.write(*encoded);
}

KesBitmap KesBitmap::Resize(double width, double height, bool keepRatio) const {
  const auto image = native();
  const double scale = screenScale ? screenScale() : 1;
  auto drawn = resizer ? resizer(*image, width * scale, height * scale, keepRatio) : std::nullopt;
  if (!drawn) throw KesException("Cannot resize image");
  KesBitmap bitmap;
  bitmap.wrap(
      Value(platform::makeShared<EncodedImage>(std::move(drawn->bytes), scale * drawn->share)));
  return bitmap;
}

}  // namespace kes
