// KesCSBuilder: builds text with attributes from nested spans, in one chain of calls:
//
//   cs.Initialize().Font(bold).Append("Titolo").Pop().Append("\n")
//
// Attributes are applied when the outermost span closes, the outermost first, so an inner
// one wins. End each text with PopAll: the attributes of a text with an open span are
// left out. A plain value; copies share the text. Main thread. Positions count 16-bit
// units. Throws "Object was not initialized (%@)" before Initialize, and Alignment
// "Invalid alignment: %@".
#pragma once

#include "runtime/core/wrapper.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/attributed_string.h"

namespace kes {

struct KesSpanMark {
  ui::TextAttributes attribute;  // exactly one is set
  std::int32_t markStart = 0;
  std::int32_t markEnd = -1;  // while the span is open
};

class KesCSBuilder final : public TypedWrapper<KesCSBuilder, AttributedString> {
 public:
  static constexpr std::string_view kPlatformClass = "NSMutableAttributedString";
  std::string_view className() const override { return "KesCSBuilder"; }

  KesCSBuilder& Initialize();
  KesCSBuilder& Append(const Value& text);
  KesCSBuilder& Color(std::int32_t argb);
  KesCSBuilder& BackgroundColor(std::int32_t argb);
  KesCSBuilder& Font(const KesFont& font);
  KesCSBuilder& Underline();
  KesCSBuilder& Strikethrough();
  // "ALIGN_LEFT", "ALIGN_CENTER", "ALIGN_RIGHT" or "ALIGN_JUSTIFIED"
  KesCSBuilder& Alignment(std::string_view name);
  KesCSBuilder& Link(const Value& url);
  KesCSBuilder& KerningScale(double value);
  KesCSBuilder& VerticalAlign(double shift);  // points downwards
  KesCSBuilder& Pop();
  KesCSBuilder& PopAll();
  Text ToString() const;
  std::int32_t Length() const;
  Text description() const override { return ToString(); }

 private:
  class Spans;
  Spans& spans() const;
  KesCSBuilder& open(ui::TextAttributes attribute);
};

}  // namespace kes
