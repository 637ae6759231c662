#include "platform/pictures/shrinker.h"

#include <algorithm>
#include <cmath>

namespace pictures {

namespace {

void multiply(const std::uint8_t* rgba, std::uint8_t* to, int width) {
  for (int x = 0; x < width; ++x, rgba += 4, to += 4) {
    const unsigned alpha = rgba[3];
    for (int i = 0; i < 3; ++i) to[i] = static_cast<std::uint8_t>((rgba[i] * alpha + 127) / 255);
    to[3] = rgba[3];
  }
}

bool isOpaque(const std::uint8_t* rgba, int width) {
  unsigned all = 255;
  for (int x = 0; x < width; ++x) all &= rgba[4 * x + 3];
  return all == 255;
}

}  // namespace

Shrinker::Shrinker(Extent from, Extent to, Colors colors)
    : from_(from), to_(to), colors_(colors), result_(to) {
  if (from == to) return;
  const double zoom = static_cast<double>(to.width) / from.width;
  columns_.reserve(static_cast<std::size_t>(from.width));
  for (int x = 0; x < from.width; ++x) {
    const double left = x * zoom, right = left + zoom;
    const int target = std::min(static_cast<int>(left), to.width - 1);
    const double beyond = target + 1 < to.width ? std::max(0.0, right - (target + 1)) : 0;
    columns_.push_back({target, static_cast<float>(zoom - beyond), static_cast<float>(beyond)});
  }
  line_.resize(static_cast<std::size_t>(to.width + 1) * 4);
  sum_.resize(static_cast<std::size_t>(from.width) * 4);
  row_.resize(sum_.size());
}

void Shrinker::add(const std::uint8_t* rgba) {
  if (taken_ >= from_.height) return;
  const int y = taken_++;
  const std::uint8_t* row = rgba;
  if (colors_ == Colors::Plain && !isOpaque(rgba, from_.width)) {
    std::uint8_t* multiplied = columns_.empty() ? result_.row(y) : row_.data();
    multiply(rgba, multiplied, from_.width);
    row = multiplied;
  }
  if (columns_.empty()) {
    if (row != result_.row(y)) std::copy_n(row, result_.rowBytes(), result_.row(y));
    return;
  }
  // Down first, which is done with whole rows: across is left for the fewer target rows. A
  // row may belong to two of those: each gets its share.
  const double zoom = static_cast<double>(to_.height) / from_.height;
  double top = y * zoom;
  const double bottom = top + zoom;
  while (emitted_ < to_.height) {
    const double end = emitted_ + 1;
    const auto share = static_cast<float>(std::max(0.0, std::min(bottom, end) - top));
    float* sum = sum_.data();
    for (std::size_t i = 0, count = sum_.size(); i < count; ++i)
      sum[i] += static_cast<float>(row[i]) * share;
    if (bottom < end - 1e-9) return;
    emit();
    top = end;
  }
}

// The sum of rows, shrunk across, as the next row of the result.
void Shrinker::emit() {
  std::fill(line_.begin(), line_.end(), 0.0f);
  const float* from = sum_.data();
  for (const Column& column : columns_) {
    float* to = &line_[static_cast<std::size_t>(column.target) * 4];
    for (int i = 0; i < 4; ++i) {
      to[i] += from[i] * column.share;
      to[4 + i] += from[i] * column.next;
    }
    from += 4;
  }
  std::uint8_t* to = result_.row(emitted_++);
  for (std::size_t i = 0; i < result_.rowBytes(); ++i)
    to[i] = static_cast<std::uint8_t>(std::clamp(line_[i] + 0.5f, 0.0f, 255.0f));
  std::fill(sum_.begin(), sum_.end(), 0.0f);
}

Bitmap Shrinker::take() {
  if (!columns_.empty() && taken_ == from_.height && emitted_ < to_.height) emit();
  return std::move(result_);
}

}  // namespace pictures
