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
  sum_.resize(line_.size());
}

void Shrinker::add(const std::uint8_t* rgba) {
  if (taken_ >= from_.height) return;
  const int y = taken_++;
  if (columns_.empty() && colors_ == Colors::TimesAlpha) {
    std::copy_n(rgba, result_.rowBytes(), result_.row(y));
    return;
  }
  if (columns_.empty()) return multiply(rgba, result_.row(y), from_.width);
  addAcross(rgba);
  // The row may belong to two target rows: each gets its share.
  const double zoom = static_cast<double>(to_.height) / from_.height;
  double top = y * zoom;
  const double bottom = top + zoom;
  while (emitted_ < to_.height) {
    const double end = emitted_ + 1;
    const auto share = static_cast<float>(std::max(0.0, std::min(bottom, end) - top));
    for (std::size_t i = 0; i < sum_.size(); ++i) sum_[i] += line_[i] * share;
    if (bottom < end - 1e-9) return;
    emit();
    top = end;
  }
}

void Shrinker::addAcross(const std::uint8_t* rgba) {
  std::fill(line_.begin(), line_.end(), 0.0f);
  for (const Column& column : columns_) {
    const float alpha = colors_ == Colors::Plain ? static_cast<float>(rgba[3]) / 255.0f : 1.0f;
    const float colors[4] = {rgba[0] * alpha, rgba[1] * alpha, rgba[2] * alpha,
                             static_cast<float>(rgba[3])};
    float* to = &line_[static_cast<std::size_t>(column.target) * 4];
    for (int i = 0; i < 4; ++i) {
      to[i] += colors[i] * column.share;
      to[4 + i] += colors[i] * column.next;
    }
    rgba += 4;
  }
}

void Shrinker::emit() {
  std::uint8_t* to = result_.row(emitted_++);
  for (std::size_t i = 0; i < result_.rowBytes(); ++i)
    to[i] = static_cast<std::uint8_t>(std::clamp(sum_[i] + 0.5f, 0.0f, 255.0f));
  std::fill(sum_.begin(), sum_.end(), 0.0f);
}

Bitmap Shrinker::take() {
  if (!columns_.empty() && taken_ == from_.height && emitted_ < to_.height) emit();
  return std::move(result_);
}

}  // namespace pictures
