#include "runtime/core/sorting.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kes {

namespace {

// Key is what a comparison needs, position where the value is to be taken from.
template <class Key>
struct Row {
  Key key;
  std::uint32_t position;
};

template <class Key, class Less>
void sortRows(std::vector<Value>& items, std::vector<Row<Key>>& rows, bool ascending, Less less) {
  if (ascending)
    std::sort(rows.begin(), rows.end(),
              [&](const auto& a, const auto& b) { return less(a.key, b.key); });
  else
    std::sort(rows.begin(), rows.end(),
              [&](const auto& a, const auto& b) { return less(b.key, a.key); });
  std::vector<Value> sorted;
  sorted.reserve(items.size());
  for (const auto& r : rows) sorted.push_back(std::move(items[r.position]));
  items = std::move(sorted);
}

template <class Key, class Make>
std::vector<Row<Key>> rowsOf(const std::vector<Value>& keys, Make make) {
  std::vector<Row<Key>> rows;
  rows.reserve(keys.size());
  for (const auto& v : keys) rows.push_back({make(v), static_cast<std::uint32_t>(rows.size())});
  return rows;
}

void sortNumbers(std::vector<Value>& items, const std::vector<Value>& keys, bool ascending) {
  // Whole numbers are compared as such, beyond the precision of a double.
  const bool whole = std::none_of(keys.begin(), keys.end(), [](const Value& v) {
    return v.isFloating() ||
           (v.isNumber() && v.numberType() == NumberType::UnsignedLongLong && v.asInt64() < 0);
  });
  if (whole) {
    auto rows = rowsOf<std::int64_t>(keys, [](const Value& v) { return v.asInt64(); });
    sortRows(items, rows, ascending, std::less<>());
  } else {
    auto rows = rowsOf<double>(keys, [](const Value& v) { return v.asDouble(); });
    // What is not a number comes before all numbers.
    sortRows(items, rows, ascending,
             [](double a, double b) { return std::isnan(b) ? false : std::isnan(a) || a < b; });
  }
}

// A text with its first eight bytes as one number that orders as they do.
struct TextKey {
  std::uint64_t head;
  const char* data;
  std::uint32_t size;
};

TextKey keyOf(std::string_view t) {
  unsigned char first[8] = {};
  std::memcpy(first, t.data(), std::min<std::size_t>(t.size(), 8));
  std::uint64_t head = 0;
  for (const auto b : first) head = head << 8 | b;
  return {head, t.data(), static_cast<std::uint32_t>(t.size())};
}

bool bytesLess(const TextKey& a, const TextKey& b) {
  if (a.head != b.head) return a.head < b.head;
  const int c = std::memcmp(a.data, b.data, std::min(a.size, b.size));
  return c != 0 ? c < 0 : a.size < b.size;
}

bool unitsLess(const TextKey& a, const TextKey& b) {
  return Text(std::string_view(a.data, a.size)).CompareTo({b.data, b.size}) < 0;
}

// Below this lead byte UTF-8 orders as 16-bit units do.
constexpr unsigned char kFirstUnordered = 0xED;

void sortTexts(std::vector<Value>& items, const std::vector<Value>& texts, bool ascending) {
  bool bytewise = true;
  auto rows = rowsOf<TextKey>(texts, [&](const Value& v) {
    unsigned char highest = 0;
    for (const char c : v.textView()) highest = std::max(highest, static_cast<unsigned char>(c));
    bytewise = bytewise && highest < kFirstUnordered;
    return keyOf(v.textView());
  });
  if (bytewise)
    sortRows(items, rows, ascending, bytesLess);
  else
    sortRows(items, rows, ascending, unitsLess);
}

Value folded(const Value& v) {
  const Text t = v.isText() ? v.asText() : v.description();
  if (t.isAscii()) return t.ToLowerCase();
  const std::u16string units = t.utf16();
  icu::UnicodeString u(units.data(), static_cast<std::int32_t>(units.size()));
  u.foldCase();
  return Text::fromUtf16({u.getBuffer(), static_cast<std::size_t>(u.length())});
}

}  // namespace

void sortValues(std::vector<Value>& items, const std::vector<Value>& keys, SortKind kind,
                bool ascending) {
  if (kind == SortKind::Numbers) return sortNumbers(items, keys, ascending);
  const bool allTexts =
      std::all_of(keys.begin(), keys.end(), [](const Value& v) { return v.isText(); });
  if (kind == SortKind::Texts && allTexts) {
    // The values stay as they are until the order is known, so their bytes can be
    // pointed at.
    return sortTexts(items, keys, ascending);
  }
  std::vector<Value> texts;
  texts.reserve(keys.size());
  for (const auto& v : keys)
    texts.push_back(kind == SortKind::FoldedTexts ? folded(v) : Value(v.description()));
  sortTexts(items, texts, ascending);
}

}  // namespace kes
