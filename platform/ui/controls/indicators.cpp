#include "platform/ui/controls/indicators.h"

#include <algorithm>
#include <cmath>

namespace ui {

void ProgressView::setProgress(double progress) {
  progress = std::clamp(progress, 0.0, 1.0);
  if (progress == progress_) return;
  progress_ = progress;
  markChanged(Change::State);
}

std::string ProgressView::accessibleValue() const {
  return std::to_string(std::lround(progress_ * 100)) + "%";
}

void ActivityIndicator::setSpinning(bool spinning) {
  if (spinning == spinning_) return;
  spinning_ = spinning;
  markChanged(Change::State);
}

void ActivityIndicator::setStyle(int style) {
  if (style == style_) return;
  style_ = style;
  markChanged(Change::Appearance);
}

void ActivityIndicator::setColor(Color color) {
  if (color == color_) return;
  color_ = color;
  markChanged(Change::Appearance);
}

}  // namespace ui
