// kes_richstring: a fixed text, attributes of which are set range by range.
//
// A class module, held by Ref. Ranges are [start, end) in 16-bit units; one outside the
// text throws KesException. Each operation returns the string itself. Main thread.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/attributed_string.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace kes {

class kes_richstring final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_richstring>& c);

  Ref<kes_richstring> _initialize(const Ref<Kes>& bi, const Value& text);
  Ref<kes_richstring> _settext(const Value& text);
  Ref<kes_richstring> _color(std::int32_t argb, std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _backgroundcolor(std::int32_t argb, std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _setfont(const KesFont& font, std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _underline(std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _strikethrough(std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _alignment(const Text& name, std::int32_t start, std::int32_t end);
  Ref<kes_richstring> _addattribute(const Text& name, const Value& value, std::int32_t start,
                                    std::int32_t end);
  void _settolabel(const KesLabelWrapper& label);
  Value _getattributedstring() const;

 private:
  Ref<kes_richstring> apply(const ui::TextAttributes& attributes, std::int32_t start,
                            std::int32_t end);

  Ref<AttributedString> string_;
};

}  // namespace kes
