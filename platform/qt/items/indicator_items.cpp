#include "platform/qt/items/indicator_items.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/canvas.h"
#include "platform/qt/drawing/colors.h"
#include "platform/ui/values/style.h"

namespace qt {

namespace {
constexpr int kSpokes = 12, kTurnMilliseconds = 1000;
constexpr double kBarHeight = 4;
}  // namespace

SpinnerItem::SpinnerItem(Stage& stage, ui::View& view) : ViewItem(stage, view), wheel_(this) {
  wheel_.setTransformOrigin(Center);
  turn_.setInterval(kTurnMilliseconds / kSpokes);
  connect(&turn_, &QTimer::timeout, this,
          [this] { wheel_.setRotation(std::fmod(wheel_.rotation() + 360.0 / kSpokes, 360)); });
}

QImage SpinnerItem::spokes(ui::Color color, double side) const {
  QImage image = canvas({side, side}, scaleFactor());
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  const double radius = side / 2, width = radius * 0.18;
  p.translate(radius, radius);
  for (int i = 0; i < kSpokes; ++i) {
    p.save();
    p.rotate(360.0 / kSpokes * i);
    QColor c = toQColor(color);
    c.setAlphaF(static_cast<float>(c.alphaF() * (0.15 + 0.85 * (i + 1) / kSpokes)));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(-width / 2, -radius, width, radius * 0.5), width / 2, width / 2);
    p.restore();
  }
  p.end();
  return image;
}

void SpinnerItem::sync(ui::View& view, ui::Change) {
  const auto& spinner = static_cast<ui::ActivityIndicator&>(view);
  const double side = std::min({width(), height(), spinner.style() == 0 ? 37.0 : 20.0});
  wheel_.setSize({side, side});
  wheel_.setPosition({snapped((width() - side) / 2), snapped((height() - side) / 2)});
  wheel_.setVisible(spinner.spinning());
  wheel_.setPictures({{spokes(spinner.color(), side), QRectF(0, 0, side, side)}});
  if (spinner.spinning() != turn_.isActive()) spinner.spinning() ? turn_.start() : turn_.stop();
}

ProgressItem::ProgressItem(Stage& stage, ui::View& view)
    : ViewItem(stage, view), track_(this), done_(this) {}

void ProgressItem::sync(ui::View& view, ui::Change) {
  const auto& bar = static_cast<ui::ProgressView&>(view);
  const double h = std::min(kBarHeight, height()), y = snapped((height() - h) / 2);
  const ui::Border round{0, ui::kClear, h / 2};
  track_.setLook({ui::style::kHairline, round, {}});
  track_.setPosition({0, y});
  track_.setSize({width(), h});
  done_.setLook({bar.progressColor.value_or(bar.tint()), round, {}});
  done_.setPosition({0, y});
  done_.setSize({width() * bar.progress(), h});
}

}  // namespace qt
