#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/pictures/formats.h"
#include "platform/pictures/shrinker.h"

namespace pictures {

namespace {

int readFrom(GifFileType* gif, GifByteType* to, int count) {
  auto& rest = *static_cast<Bytes*>(gif->UserData);
  const auto size = std::min(rest.size(), static_cast<std::size_t>(std::max(0, count)));
  if (size > 0) std::memcpy(to, rest.data(), size);
  rest = rest.subspan(size);
  return static_cast<int>(size);
}

// A file read up to its first frame.
class Gif {
 public:
  explicit Gif(Bytes file) : rest_(file) {
    int error = 0;
    gif_.reset(DGifOpen(&rest_, readFrom, &error));
    if (!gif_) throw Unreadable(reason(error));
    seekFrame();
  }

  GifFileType& file() const { return *gif_; }
  Extent canvas() const {
    return {std::max<int>(gif_->SWidth, gif_->Image.Left + gif_->Image.Width),
            std::max<int>(gif_->SHeight, gif_->Image.Top + gif_->Image.Height)};
  }
  // Indexes of the next line in the order of the file; false where the file ends.
  bool nextLine(std::vector<GifPixelType>& line) const {
    return DGifGetLine(gif_.get(), line.data(), static_cast<int>(line.size())) == GIF_OK;
  }
  void color(GifPixelType index, std::uint8_t* rgba) const {
    const ColorMapObject* map = gif_->Image.ColorMap ? gif_->Image.ColorMap : gif_->SColorMap;
    if (!map || index >= map->ColorCount || index == transparent_) {
      std::memset(rgba, 0, 4);
      return;
    }
    const GifColorType& c = map->Colors[index];
    rgba[0] = c.Red, rgba[1] = c.Green, rgba[2] = c.Blue, rgba[3] = 255;
  }

 private:
  static std::string reason(int error) {
    const char* text = GifErrorString(error);
    return text ? text : "not a GIF picture";
  }
  [[noreturn]] void fail() const { throw Unreadable(reason(gif_->Error)); }

  void seekFrame() {
    for (;;) {
      GifRecordType kind = UNDEFINED_RECORD_TYPE;
      if (DGifGetRecordType(gif_.get(), &kind) != GIF_OK) fail();
      if (kind == IMAGE_DESC_RECORD_TYPE) break;
      if (kind == TERMINATE_RECORD_TYPE) throw Unreadable("it has no frame");
      if (kind == EXTENSION_RECORD_TYPE) skipExtension();
    }
    if (DGifGetImageDesc(gif_.get()) != GIF_OK) fail();
  }

  void skipExtension() {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif_.get(), &code, &block) != GIF_OK) fail();
    GraphicsControlBlock control{};
    if (block && code == GRAPHICS_EXT_FUNC_CODE &&
        DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK &&
        control.TransparentColor != NO_TRANSPARENT_COLOR)
      transparent_ = control.TransparentColor;
    while (block)
      if (DGifGetExtensionNext(gif_.get(), &block) != GIF_OK) fail();
  }

  struct Close {
    void operator()(GifFileType* gif) const {
      int error = 0;
      DGifCloseFile(gif, &error);
    }
  };
  Bytes rest_;
  std::unique_ptr<GifFileType, Close> gif_;
  std::optional<int> transparent_;
};

bool isGif(Bytes file) { return startsWith(file, "GIF87a") || startsWith(file, "GIF89a"); }

Header gifHeader(Bytes file) { return {Gif(file).canvas(), 1}; }

// Interlaced lines come in four turns; they have to be together to be put in order.
std::vector<GifPixelType> interlacedLines(const Gif& gif, Extent frame) {
  limitWork(frame.area());
  static constexpr int kFirst[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
  const auto width = static_cast<std::size_t>(frame.width);
  std::vector<GifPixelType> all(static_cast<std::size_t>(frame.area())), line(width);
  for (int turn = 0; turn < 4; ++turn)
    for (int y = kFirst[turn]; y < frame.height; y += kStep[turn]) {
      if (!gif.nextLine(line)) return all;
      std::copy(line.begin(), line.end(), all.begin() + static_cast<std::ptrdiff_t>(width) * y);
    }
  return all;
}

Bitmap decodeGif(Bytes file, Extent wanted) {
  const Gif gif(file);
  const GifImageDesc& frame = gif.file().Image;
  const Extent canvas = gif.canvas(), inner{frame.Width, frame.Height};
  std::vector<GifPixelType> all, line(static_cast<std::size_t>(inner.width));
  if (frame.Interlace) all = interlacedLines(gif, inner);
  Shrinker shrinker(canvas, wanted);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(canvas.width) * 4);
  for (int y = 0; y < canvas.height; ++y) {
    const int within = y - frame.Top;
    if (within >= inner.height) break;  // nothing but what shows through
    if (within >= 0) {
      const GifPixelType* indexes = line.data();
      if (frame.Interlace)
        indexes = all.data() + static_cast<std::size_t>(inner.width) * within;
      else if (!gif.nextLine(line))
        break;
      for (int x = 0; x < inner.width; ++x)
        gif.color(indexes[x], &row[static_cast<std::size_t>(frame.Left + x) * 4]);
    }
    shrinker.add(row.data());
  }
  return shrinker.take();
}

}  // namespace

const Format kGif{isGif, gifHeader, decodeGif};

}  // namespace pictures
