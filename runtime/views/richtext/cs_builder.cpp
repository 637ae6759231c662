#include "runtime/views/richtext/cs_builder.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

// The spans of one text, attached to it as "marks": open ones in the order in which they
// were opened, before them those already closed, the latest first.
class KesCSBuilder::Spans final : public Object {
 public:
  std::string_view className() const override { return "NSMutableArray"; }
  std::vector<KesSpanMark> openings;
};

KesCSBuilder& KesCSBuilder::Initialize() {
  setObject(platform::makeShared<AttributedString>());
  getMap(*native()).set("marks", platform::makeShared<Spans>());
  return *this;
}

KesCSBuilder::Spans& KesCSBuilder::spans() const {
  const auto string = native();
  auto spans = getMap(*string).get("marks").as<Spans>();
  if (!spans) {
    spans = platform::makeShared<Spans>();
    getMap(*string).set("marks", spans);
  }
  return *spans;
}

KesCSBuilder& KesCSBuilder::Append(const Value& text) {
  native()->text.append(textForm(text));
  return *this;
}

KesCSBuilder& KesCSBuilder::open(ui::TextAttributes attribute) {
  spans().openings.push_back({std::move(attribute), Length(), -1});
  return *this;
}

KesCSBuilder& KesCSBuilder::Color(std::int32_t argb) {
  return open({.color = ColorToUIColor(argb)});
}
KesCSBuilder& KesCSBuilder::BackgroundColor(std::int32_t argb) {
  return open({.background = ColorToUIColor(argb)});
}
KesCSBuilder& KesCSBuilder::Font(const KesFont& font) { return open({.font = font.font()}); }
KesCSBuilder& KesCSBuilder::Underline() { return open({.underline = 2}); }
KesCSBuilder& KesCSBuilder::Strikethrough() { return open({.strikethrough = 1}); }
KesCSBuilder& KesCSBuilder::Alignment(std::string_view name) {
  return open({.alignment = alignmentNamed(name)});
}
KesCSBuilder& KesCSBuilder::Link(const Value& url) { return open({.link = textForm(url)}); }
KesCSBuilder& KesCSBuilder::KerningScale(double value) { return open({.kerning = value}); }
KesCSBuilder& KesCSBuilder::VerticalAlign(double shift) { return open({.baseline = -shift}); }

KesCSBuilder& KesCSBuilder::Pop() {
  auto& openings = spans().openings;
  if (openings.empty()) return *this;
  KesSpanMark innermost = std::move(openings.back());
  openings.pop_back();
  innermost.markEnd = Length();
  openings.insert(openings.begin(), std::move(innermost));
  if (openings.back().markEnd == -1) return *this;
  auto& text = native()->text;
  for (const auto& span : openings)
    text.apply(static_cast<std::uint32_t>(span.markStart), static_cast<std::uint32_t>(span.markEnd),
               span.attribute);
  openings.clear();
  return *this;
}

KesCSBuilder& KesCSBuilder::PopAll() {
  while (!spans().openings.empty()) Pop();
  return *this;
}

Text KesCSBuilder::ToString() const { return Text(native()->text.text()); }
std::int32_t KesCSBuilder::Length() const {
  return static_cast<std::int32_t>(native()->text.length());
}

}  // namespace kes
