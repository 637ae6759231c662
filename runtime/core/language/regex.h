// KesRegex and KesMatcher: regular expressions with the platform's syntax.
//
// A pattern with its options is compiled once and kept in a process-wide cache, which is
// emptied when a new pattern finds more than 50 in it. A pattern that does not compile
// throws a KesException named "regex" with the engine's message. So does one that would
// search too long: some patterns take time that doubles with each character. Main thread.
#pragma once

#include <memory>
#include <vector>

#include "runtime/core/array.h"
#include "runtime/core/object.h"

namespace kes {

// The matches of one pattern in one text, walked by Find. Positions are 16-bit units.
class KesMatcher final : public Object {
 public:
  std::string_view className() const override { return "KesMatcher"; }
  bool Find();                             // moves to the next match
  Text Match() const { return Group(0); }  // of the match that Find moved to
  Text Group(std::int32_t i) const;        // empty for a group that took no part
  std::int32_t GroupCount() const;         // groups of the pattern, the whole not counted
  std::int32_t GetStart(std::int32_t i) const;
  std::int32_t GetEnd(std::int32_t i) const;

 private:
  friend class KesRegex;
  struct Span {
    std::int32_t start, end;  // -1 for a group that took no part
  };
  const Span& span(std::int32_t i) const;

  std::u16string text_;
  std::int32_t groups_ = 0;
  std::vector<Span> spans_;  // (groups_ + 1) for each match
  std::int32_t current_ = -1;
};

class KesRegex final : public Object {
 public:
  static constexpr std::int32_t MULTILINE = 8;
  static constexpr std::int32_t CASE_INSENSITIVE = 2;
  // Of one call, in the engine's ticks of ten thousand steps: about a second.
  static inline std::int32_t timeLimit = 5000;

  // The whole text matches.
  static bool IsMatch(const Text& pattern, const Text& text) { return IsMatch2(0, pattern, text); }
  static bool IsMatch2(std::int32_t options, const Text& pattern, const Text& text);
  static Text Replace(const Text& pattern, const Text& text, const Text& replacement) {
    return Replace2(0, pattern, text, replacement);
  }
  static Text Replace2(std::int32_t options, const Text& pattern, const Text& text,
                       const Text& replacement);
  static Ref<KesMatcher> Matcher(const Text& pattern, const Text& text) {
    return Matcher2(0, pattern, text);
  }
  static Ref<KesMatcher> Matcher2(std::int32_t options, const Text& pattern, const Text& text);
  static Ref<KesArray> Split(const Text& pattern, const Text& text) {
    return Split2(0, pattern, text);
  }
  static Ref<KesArray> Split2(std::int32_t options, const Text& pattern, const Text& text);

  static std::size_t cachedPatterns();
};

}  // namespace kes
