#include "runtime/views/richtext/rich_string.h"

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

// The platform's names of what a range can have.
ui::TextAttributes attributeNamed(const Text& name, const Value& value) {
  const Value inner = detail::unwrapped(value);
  const auto number = [&] { return fromValue<double>(inner); };
  const auto color = [&] { return ColorToUIColor(fromValue<std::int32_t>(inner)); };
  if (name == "NSColor") return {.color = color()};
  if (name == "NSBackgroundColor") return {.background = color()};
  if (name == "NSFont") return {.font = KesFont::fromBoxed(inner).font()};
  if (name == "NSUnderline") return {.underline = static_cast<int>(number())};
  if (name == "NSStrikethrough") return {.strikethrough = static_cast<int>(number())};
  if (name == "NSLink") return {.link = textForm(inner)};
  if (name == "NSKern") return {.kerning = number()};
  if (name == "NSBaselineOffset") return {.baseline = number()};
  throw KesException(formatText("Invalid attribute: %@", {name}));
}

}  // namespace

void kes_richstring::describe(ClassBuilder<kes_richstring>& c) {
  c.name("kes_richstring");
  c.sub<&kes_richstring::_initialize>("initialize");
  c.sub<&kes_richstring::_settext>("settext");
  c.sub<&kes_richstring::_color>("color");
  c.sub<&kes_richstring::_backgroundcolor>("backgroundcolor");
  c.sub<&kes_richstring::_setfont>("setfont");
  c.sub<&kes_richstring::_underline>("underline");
  c.sub<&kes_richstring::_strikethrough>("strikethrough");
  c.sub<&kes_richstring::_alignment>("alignment");
  c.sub<&kes_richstring::_addattribute>("addattribute");
  c.sub<&kes_richstring::_settolabel>("settolabel");
  c.sub<&kes_richstring::_getattributedstring>("getattributedstring");
}

Ref<kes_richstring> kes_richstring::_initialize(const Ref<Kes>&, const Value& text) {
  initializeClassModule();
  return _settext(text);
}

Ref<kes_richstring> kes_richstring::_settext(const Value& text) {
  string_ = platform::makeShared<AttributedString>();
  string_->text = ui::AttributedText(textForm(text));
  return Ref<kes_richstring>(this);
}

Ref<kes_richstring> kes_richstring::apply(const ui::TextAttributes& attributes, std::int32_t start,
                                          std::int32_t end) {
  const auto length = string_ ? static_cast<std::int32_t>(string_->text.length()) : 0;
  if (start < 0 || end < start || end > length)
    throw KesException(
        "NSRangeException",
        formatText("Range %@ to %@ is outside a text of length %@",
                   {std::to_string(start), std::to_string(end), std::to_string(length)}));
  if (string_)
    string_->text.apply(static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end),
                        attributes);
  return Ref<kes_richstring>(this);
}

Ref<kes_richstring> kes_richstring::_color(std::int32_t argb, std::int32_t start,
                                           std::int32_t end) {
  return apply({.color = ColorToUIColor(argb)}, start, end);
}
Ref<kes_richstring> kes_richstring::_backgroundcolor(std::int32_t argb, std::int32_t start,
                                                     std::int32_t end) {
  return apply({.background = ColorToUIColor(argb)}, start, end);
}
Ref<kes_richstring> kes_richstring::_setfont(const KesFont& font, std::int32_t start,
                                             std::int32_t end) {
  return apply({.font = font.font()}, start, end);
}
Ref<kes_richstring> kes_richstring::_underline(std::int32_t start, std::int32_t end) {
  return apply({.underline = 1}, start, end);
}
Ref<kes_richstring> kes_richstring::_strikethrough(std::int32_t start, std::int32_t end) {
  return apply({.strikethrough = 1}, start, end);
}
Ref<kes_richstring> kes_richstring::_alignment(const Text& name, std::int32_t start,
                                               std::int32_t end) {
  return apply({.alignment = alignmentNamed(name)}, start, end);
}
Ref<kes_richstring> kes_richstring::_addattribute(const Text& name, const Value& value,
                                                  std::int32_t start, std::int32_t end) {
  return apply(attributeNamed(name, value), start, end);
}

void kes_richstring::_settolabel(const KesLabelWrapper& label) {
  KesLabelWrapper(label).setAttributedText(_getattributedstring());
}

Value kes_richstring::_getattributedstring() const { return string_; }

}  // namespace kes
