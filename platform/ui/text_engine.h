// Measures text. A side implements it with the engine that also draws, so what was
// measured to fit does fit. Owned by the side, installed on the Application; main
// thread. Lengths are points.
//
// The text size is the reader's own: a factor on every font wherever it is measured or
// drawn. What holds text grows with it (textHeight()); a Font keeps the size it was made
// with.
#pragma once

#include <string>
#include <string_view>

#include "platform/ui/values/geometry.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class Label;

class TextEngine {
 public:
  static constexpr double kSmallestScale = 0.8, kLargestScale = 2;

  virtual ~TextEngine() = default;
  double scale() const { return scale_; }
  // The size that a text takes, rounded up to whole points, wrapped at words within
  // maxWidth (0: no limit) and cut after maxLines (0: no limit).
  virtual Size measure(std::string_view text, const Font& font, double maxWidth, int maxLines) = 0;
  virtual Size measure(const AttributedText& text, const Font& base, double maxWidth,
                       int maxLines) = 0;
  virtual double lineHeight(const Font& font) = 0;
  // The link of a label's text at a place of the label, empty where there is none.
  virtual std::string linkAt(const Label& label, Point at) = 0;

 protected:
  TextEngine() = default;
  // Within the limits above; set once, before anything is measured.
  explicit TextEngine(double scale) : scale_(scale) {}

 private:
  double scale_ = 1;
};

// The reader's text size: that of the current application's engine, 1 without one.
double textScale();
// What a height that was designed to hold text is at that size; never less.
double textHeight(double designed);

}  // namespace ui
