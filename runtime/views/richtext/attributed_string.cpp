#include "runtime/views/richtext/attributed_string.h"

#include "runtime/core/wrapper.h"
#include "runtime/views/base/text_form.h"

namespace kes {

ui::AttributedText AttributedString::from(const Value& v) {
  const Value inner = detail::unwrapped(v);
  if (const auto rich = inner.as<AttributedString>()) return rich->text;
  return ui::AttributedText(textForm(inner));
}

ui::TextAlign alignmentNamed(std::string_view name) {
  if (name == "ALIGN_LEFT") return ui::TextAlign::Left;
  if (name == "ALIGN_CENTER") return ui::TextAlign::Center;
  if (name == "ALIGN_RIGHT") return ui::TextAlign::Right;
  if (name == "ALIGN_JUSTIFIED") return ui::TextAlign::Justified;
  throw KesException(formatText("Invalid alignment: %@", {name}));
}

}  // namespace kes
