// Takes the rows of a picture one after the other and keeps only the smaller one that is
// wanted: each of its pixels is the average of what it covers. So the whole picture is
// never in memory. A value on the stack of a decoder.
#pragma once

#include <vector>

#include "platform/pictures/picture.h"

namespace pictures {

class Shrinker {
 public:
  enum class Colors { Plain, TimesAlpha };

  // `to` is at least 1x1 and no larger than `from`. Rows have their colours plain, as files
  // have them, or already multiplied by alpha.
  Shrinker(Extent from, Extent to, Colors colors = Colors::Plain);

  // The next row: as wide as `from`, four bytes a pixel.
  void add(const std::uint8_t* rgba);
  int rows() const { return taken_; }
  // What was not added stays transparent.
  Bitmap take();

 private:
  struct Column {
    int target;
    float share, next;  // of a source pixel, for its target and for the one after it
  };
  void emit();

  Extent from_, to_;
  Colors colors_;
  Bitmap result_;
  std::vector<Column> columns_;
  std::vector<std::uint8_t> row_;  // with its colours multiplied
  std::vector<float> sum_;         // of the rows that the next target row covers
  std::vector<float> line_;        // that row
  int taken_ = 0, emitted_ = 0;
};

}  // namespace pictures
