// AttributedString: a text with attributes as a shared object, as builders make it and
// views take it. Main thread.
#pragma once

#include "platform/ui/values/rich_text.h"
#include "runtime/core/object.h"

namespace kes {

class AttributedString final : public Object {
 public:
  std::string_view className() const override { return "NSMutableAttributedString"; }
  ui::AttributedText text;
  Text description() const override { return Text(text.text()); }

  // The rich text of a builder or string; any other value's text form, without attributes.
  static ui::AttributedText from(const Value& v);
};

// "ALIGN_LEFT", "ALIGN_CENTER", "ALIGN_RIGHT" or "ALIGN_JUSTIFIED"; any other name throws
// "Invalid alignment: %@".
ui::TextAlign alignmentNamed(std::string_view name);

}  // namespace kes
