#include "runtime/core/text_marks.h"

#include <algorithm>

#include "runtime/core/text.h"

namespace kes::detail {

namespace {

using Slot = std::atomic<const std::uint32_t*>;

bool has(const TextRep& text) {
  // Half the range of offsets is enough for any text that the app could hold.
  return TextMarks::areWorthwhile(text.bytes, text.units) && text.bytes < (1u << 31);
}

}  // namespace

const std::uint32_t* TextMarks::make(std::string_view text, std::uint32_t units) {
  const std::size_t count = units / kStride + 1;
  auto* marks = new std::uint32_t[count];
  std::size_t made = 0, at = 0;
  std::uint32_t unit = 0, next = 0;
  while (at < text.size() && made < count) {
    if (unit >= next) {
      marks[made++] = static_cast<std::uint32_t>(at) | (unit > next ? kBehind : 0);
      next += kStride;
    }
    const auto lead = static_cast<unsigned char>(text[at]);
    at += lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unit += lead < 0xF0 ? 1 : 2;
  }
  // The end of the text may be a multiple of the stride itself.
  std::fill(marks + made, marks + count,
            static_cast<std::uint32_t>(text.size()) | (unit > next ? kBehind : 0));
  return marks;
}

const std::uint32_t* TextMarks::of(const TextRep& text) {
  auto& slot = *static_cast<Slot*>(text.slot());
  if (const auto* marks = slot.load(std::memory_order_acquire)) return marks;
  const auto* mine = make({text.data(), text.bytes}, text.units);
  const std::uint32_t* others = nullptr;
  if (slot.compare_exchange_strong(others, mine, std::memory_order_acq_rel)) return mine;
  delete[] mine;
  return others;
}

TextMarks::Place TextMarks::place(const std::uint32_t* marks, std::uint32_t number) noexcept {
  const std::uint32_t mark = marks[number];
  return {mark & ~kBehind, number * kStride + (mark & kBehind ? 1 : 0)};
}

TextMarks::Place TextMarks::before(const TextRep& text, std::uint32_t unit) {
  return has(text) ? place(of(text), unit / kStride) : Place{};
}

TextMarks::Place TextMarks::beforeByte(const TextRep& text, std::size_t byte) {
  if (!has(text)) return {};
  const auto* const marks = of(text);
  const auto* const end = marks + text.units / kStride + 1;
  const auto* const found = std::upper_bound(
      marks, end, byte, [](std::size_t b, std::uint32_t mark) { return b < (mark & ~kBehind); });
  return place(marks, static_cast<std::uint32_t>(found - marks - 1));
}

void TextMarks::free(TextRep& text) noexcept {
  if (areWorthwhile(text.bytes, text.units)) delete[] static_cast<Slot*>(text.slot())->load();
}

}  // namespace kes::detail
