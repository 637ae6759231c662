#include "platform/qt/drawing/label_text.h"

#include <algorithm>

#include "platform/qt/drawing/fonts.h"

namespace qt {

namespace {

// How far a label shrinks its font, and one of several lines.
constexpr double kSmallest = 0.5, kSmallestOfLines = 0.7;

std::unique_ptr<TextLayout> laidOut(const ui::Label& label, const TextLayout::Style& style) {
  if (const auto* rich = label.attributedText()) return std::make_unique<TextLayout>(*rich, style);
  return std::make_unique<TextLayout>(label.text(), style);
}

double zoomOf(const ui::Label& label, const TextLayout::Style& style, double smallest) {
  if (const auto* rich = label.attributedText()) return zoomToFit(*rich, style, smallest);
  return zoomToFit(std::string_view(label.text()), style, smallest);
}

}  // namespace

std::unique_ptr<TextLayout> fittedText(const ui::Label& label, ui::Size size) {
  TextLayout::Style style;
  style.font = label.font();
  style.color = label.textColor();
  style.alignment = label.alignment();
  style.maxLines = label.maxLines();
  const bool oneLine = label.maxLines() == 1;
  const double smallest = (!label.shrinksToFit() ? 1
                           : oneLine             ? kSmallest
                                                 : kSmallestOfLines) *
                          unenlarged();
  style.width = std::max(1.0, size.width);
  if (oneLine) style.zoom = zoomOf(label, style, smallest);
  style.elide = true;
  const bool shrinks = smallest < 1 && !oneLine;
  if (!shrinks) style.height = size.height;
  auto layout = laidOut(label, style);
  if (!shrinks) return layout;
  // Lines: smaller by a step until the words are whole and all of them have room.
  const double full = std::max(1.0, label.font().size() * textScale());
  const auto broken = [&] {  // an address may go on after a sign before it gets smaller
    return layout->breaksWords() || (label.shrinksToFit() && layout->breaksAtSigns());
  };
  const auto fits = [&] {
    return layout->size().height <= size.height && !broken() && !layout->leavesOut();
  };
  for (double px = full - 1; px >= full * smallest && !fits(); --px) {
    style.zoom = px / full;
    layout = laidOut(label, style);
  }
  if (fits()) return layout;
  style.height = size.height;
  return laidOut(label, style);
}

ui::Point textOrigin(const TextLayout& layout, ui::Size size) {
  return {0, std::max(0.0, (size.height - layout.size().height) / 2)};
}

}  // namespace qt
