// The samples are one drawing in every format: 40x20, left half red, right half blue, the
// ten by ten pixels in the top left corner green.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/base/log.h"
#include "platform/pictures/picture.h"
#include "platform/ui/values/image.h"

namespace {

using pictures::Bitmap;
using pictures::Extent;
using File = std::vector<std::uint8_t>;

File sample(const std::string& name) {
  std::ifstream file(std::string(SAMPLES_FOLDER "/") + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

char colorAt(const Bitmap& bitmap, double x, double y) {
  const auto* p = bitmap.row(static_cast<int>(y * bitmap.size.height)) +
                  4 * static_cast<int>(x * bitmap.size.width);
  if (p[3] < 128) return '.';
  if (p[0] > 150 && p[1] < 90 && p[2] < 90) return 'r';
  if (p[2] > 150 && p[0] < 90) return 'b';
  return p[1] > 110 && p[0] < 90 ? 'g' : '?';
}

// The colours in the four corners, row by row.
std::string corners(const Bitmap& bitmap) {
  std::string result;
  for (const double y : {0.2, 0.8})
    for (const double x : {0.1, 0.9}) result += colorAt(bitmap, x, y);
  return result;
}

Bitmap plain(Extent size, std::array<std::uint8_t, 4> color) {
  Bitmap bitmap(size);
  for (std::size_t i = 0; i < bitmap.rgba.size(); ++i) bitmap.rgba[i] = color[i % 4];
  return bitmap;
}

long peakMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

TEST(Pictures, EveryFormatInItsOwnSizeAndSmaller) {
  const struct {
    const char* name;
    Extent size = {40, 20};
    const char* corners = "gbrb";
  } cases[] = {
      {"png"},
      {"png_interlaced"},
      {"jpeg"},
      {"jpeg_progressive"},
      {"jpeg_inks"},
      {"webp"},
      {"webp_lossless"},
      {"gif"},
      {"gif_interlaced"},
      {"bmp"},
      {"bmp_palette"},
      {"bmp_16"},
      {"bmp_32"},
      // Lies on its side in the file and stands when it is shown.
      {"jpeg_turned", {20, 40}, "rgbb"},
      {"webp_turned", {20, 40}, "rgbb"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const File file = sample(c.name);
    EXPECT_EQ(pictures::sizeOf(file), c.size);
    const Bitmap whole = pictures::decode(file, {1000, 1000});
    EXPECT_EQ(whole.size, c.size);
    const Extent half{c.size.width / 2, c.size.height / 2};
    const Bitmap small = pictures::decode(file, half);
    EXPECT_EQ(small.size, half);
    for (const Bitmap* bitmap : {&whole, &small}) {
      // Inks have no pure colours; which corner differs is what counts.
      if (std::string(c.name) == "jpeg_inks")
        EXPECT_NE(colorAt(*bitmap, 0.1, 0.2), colorAt(*bitmap, 0.1, 0.8));
      else
        EXPECT_EQ(corners(*bitmap), c.corners);
    }
  }
}

TEST(Pictures, ShrinkingAveragesAndTransparencyTakesNoColor) {
  // Columns black, white, black, … become grey; clear pixels don't darken their neighbours.
  Bitmap stripes = plain({90, 9}, {0, 0, 0, 255});
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 90; x += 2) std::fill_n(stripes.row(y) + 4 * x, 3, 255);
  const Bitmap grey = pictures::scaled(stripes, {9, 2});
  EXPECT_EQ(grey.size, (Extent{9, 2}));
  for (const auto byte : grey.rgba) EXPECT_TRUE(std::abs(byte - 127) <= 1 || byte == 255);

  Bitmap half = plain({2, 1}, {0, 0, 0, 0});
  std::fill_n(half.row(0), 4, 255);
  const File png = pictures::encode(pictures::scaled(half, {1, 1}), "PNG", 100);
  const Bitmap back = pictures::decode(png, {1, 1});
  EXPECT_NEAR(back.rgba[0], 128, 1);
  EXPECT_NEAR(back.rgba[3], 128, 1);

  const Bitmap large = pictures::scaled(pictures::decode(sample("png"), {40, 20}), {400, 100});
  EXPECT_EQ(large.size, (Extent{400, 100}));
  EXPECT_EQ(corners(large), "gbrb");
}

TEST(Pictures, RefusesWhatCostsTooMuchAndShowsWhatIsCutOff) {
  File bomb = sample("png");
  bomb[16] = bomb[20] = 0x00;
  bomb[17] = bomb[21] = 0x01;  // 65,576x65,556, with the checksum as it was
  EXPECT_THROW(pictures::sizeOf(bomb), pictures::Unreadable);
  File lying = sample("bmp");
  lying[20] = 0x10;  // 1,048,616 wide, says the header
  EXPECT_THROW(pictures::sizeOf(lying), pictures::Unreadable);
  File canvas = sample("gif");
  canvas[6] = canvas[7] = canvas[8] = canvas[9] = 0xFF;
  EXPECT_THROW(pictures::sizeOf(canvas), pictures::Unreadable);
  EXPECT_THROW(pictures::sizeOf(File{'n', 'o'}), pictures::Unreadable);

  File cut = sample("jpeg");
  cut.resize(cut.size() * 3 / 4);
  EXPECT_EQ(colorAt(pictures::decode(cut, {40, 20}), 0.1, 0.2), 'g');
}

// A BMP file whose rows are all alike, so that it can be made without being held twice.
File wideBmp(int width, int height) {
  File file = sample("bmp_palette");
  const std::size_t head = file.size() - 40 * 20;
  file.resize(head);
  for (int i = 0; i < 4; ++i) {
    file[18 + i] = static_cast<std::uint8_t>(width >> 8 * i);
    file[22 + i] = static_cast<std::uint8_t>(-height >> 8 * i);
  }
  file.resize(head + static_cast<std::size_t>(width) * height, 1);
  return file;
}

TEST(Pictures, AnEnormousOneIsSeenInLittleMemory) {
  const File file = wideBmp(8000, 10000);  // 320 MB as pixels
  const long before = peakMiB();
  const Bitmap seen = pictures::decode(file, {400, 500});
  EXPECT_EQ(seen.size, (Extent{400, 500}));
  EXPECT_EQ(colorAt(seen, 0.5, 0.5), 'b');
  EXPECT_LT(peakMiB() - before, 20);
}

TEST(Images, AreWrittenAnewInAnySizeTheScreenAsks) {
  const auto image = ui::Image::fromBytes(sample("jpeg_turned"), 2);
  EXPECT_EQ(image.naturalSize(), (ui::Size{10, 20}));
  const struct {
    ui::ImageRendition wanted;
    Extent size;
  } cases[] = {
      {{"JPEG", 90, {}, false}, {20, 40}},
      {{"PNG", 100, ui::Size{30, 30}, false}, {30, 30}},
      {{"PNG", 100, ui::Size{30, 30}, true}, {15, 30}},
      {{"PNG", 100, ui::Size{0, -5}, false}, {1, 1}},
  };
  for (const auto& [wanted, size] : cases) {
    SCOPED_TRACE(wanted.format);
    const auto written = ui::render(image, wanted);
    ASSERT_TRUE(written);
    EXPECT_EQ(written->share, 1);
    EXPECT_EQ(pictures::sizeOf(written->bytes), size);
  }
  const auto tall = ui::render(image, {.format = "JPEG", .pixels = ui::Size{10000, 20000}});
  ASSERT_TRUE(tall);
  const Extent drawn = pictures::sizeOf(tall->bytes);
  EXPECT_NEAR(drawn.width / tall->share, 10000, 4);
  EXPECT_LT(drawn.area(), 26 << 20);
}

TEST(Images, OneThatCannotBeReadHasNoSizeAndOneLogLine) {
  std::vector<std::string> lines;
  const auto former =
      platform::setLogSink([&](std::string_view line) { lines.emplace_back(line); });
  const auto broken = ui::Image::fromBytes({1, 2, 3});
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(broken.naturalSize());
  EXPECT_FALSE(ui::render(broken, {}));
  platform::setLogSink(former);
  EXPECT_THAT(lines, testing::ElementsAre("Picture refused: not a picture of a known kind"));
  EXPECT_FALSE(ui::render(ui::Image::fromBytes(sample("png")), {.format = "TEXT", .pixels = {}}));
}

TEST(Images, EqualBytesHaveOneFingerprint) {
  const auto one = ui::Image::fromBytes(sample("png")), same = ui::Image::fromBytes(sample("png"));
  EXPECT_NE(one, same);
  EXPECT_EQ(one.fingerprint(), same.fingerprint());
  EXPECT_NE(one.fingerprint(), ui::Image::fromBytes(sample("gif")).fingerprint());
}

}  // namespace
