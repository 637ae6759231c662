#include "runtime/core/language/regex.h"

#include <unicode/uregex.h>

#include <unordered_map>

namespace kes {

namespace {

struct PatternAndOptions {
  Text pattern;
  std::int32_t options;
  bool operator==(const PatternAndOptions&) const = default;
};

struct KeyHash {
  std::size_t operator()(const PatternAndOptions& k) const {
    return std::hash<std::string_view>()(k.pattern.view()) ^
           static_cast<std::size_t>(k.options) * 0x9E3779B97F4A7C15ull;
  }
};

struct Close {
  void operator()(URegularExpression* e) const { uregex_close(e); }
};
using Compiled = std::unique_ptr<URegularExpression, Close>;

constexpr std::size_t kMostCached = 50;

struct Cache {
  std::unordered_map<PatternAndOptions, Compiled, KeyHash> patterns;
  // The pattern used last, which in a loop is the one wanted next.
  const PatternAndOptions* lastKey = nullptr;
  URegularExpression* last = nullptr;
};

Cache& cache() {
  static Cache only;
  return only;
}

void check(UErrorCode status) {
  if (U_FAILURE(status)) throw KesException("regex", u_errorName(status));
}

Compiled compile(const Text& pattern, std::int32_t options) {
  const std::u16string units = pattern.utf16();
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  Compiled fresh(uregex_open(units.data(), static_cast<std::int32_t>(units.size()),
                             static_cast<std::uint32_t>(options), &where, &status));
  if (U_FAILURE(status))
    throw KesException("regex",
                       formatText("%@ in pattern %@ at line %@, offset %@",
                                  {u_errorName(status), pattern, std::to_string(where.line),
                                   std::to_string(where.offset)}));
  return fresh;
}

URegularExpression* compiled(const Text& pattern, std::int32_t options) {
  auto& c = cache();
  if (c.lastKey && c.lastKey->options == options && c.lastKey->pattern == pattern) return c.last;
  PatternAndOptions key{pattern, options};
  auto known = c.patterns.find(key);
  if (known == c.patterns.end()) {
    Compiled fresh = compile(pattern, options);
    if (c.patterns.size() > kMostCached) {
      c.lastKey = nullptr;
      c.patterns.clear();
    }
    known = c.patterns.emplace(std::move(key), std::move(fresh)).first;
  }
  c.lastKey = &known->first;
  c.last = known->second.get();
  return c.last;
}

// A compiled pattern set to a text. The text has to outlive the search, but not the
// pattern: that never looks at it again before it is given another.
class Search {
 public:
  Search(std::int32_t options, const Text& pattern, std::u16string_view text)
      : expression_(compiled(pattern, options)) {
    uregex_setTimeLimit(expression_, KesRegex::timeLimit, &status_);
    uregex_setText(expression_, text.data(), static_cast<std::int32_t>(text.size()), &status_);
    check(status_);
  }
  bool matchesWhole() { return checked(uregex_matches(expression_, 0, &status_)); }
  bool next() { return checked(uregex_findNext(expression_, &status_)); }
  std::int32_t groups() { return checked(uregex_groupCount(expression_, &status_)); }
  std::int32_t start(std::int32_t group) {
    return checked(uregex_start(expression_, group, &status_));
  }
  std::int32_t end(std::int32_t group) { return checked(uregex_end(expression_, group, &status_)); }

 private:
  template <class T>
  T checked(T result) {
    check(status_);
    return result;
  }
  URegularExpression* expression_;
  UErrorCode status_ = U_ZERO_ERROR;
};

// The template's text for the match at hand: "$n" is a group, "\" takes the next
// character as it is. Digits belong to n as long as there is a group of that number.
void appendTemplate(std::u16string& out, std::u16string_view text, Search& match,
                    std::u16string_view replacement) {
  const std::int32_t groups = match.groups();
  const auto digit = [&](std::size_t i) {
    return i < replacement.size() && replacement[i] >= u'0' && replacement[i] <= u'9';
  };
  for (std::size_t i = 0; i < replacement.size(); ++i) {
    const char16_t c = replacement[i];
    if (c == u'\\' && i + 1 < replacement.size()) {
      out.push_back(replacement[++i]);
    } else if (c == u'$' && digit(i + 1)) {
      std::int32_t group = replacement[++i] - u'0';
      while (digit(i + 1) && group * 10 + (replacement[i + 1] - u'0') <= groups)
        group = group * 10 + (replacement[++i] - u'0');
      if (group > groups) continue;
      const std::int32_t start = match.start(group);
      if (start >= 0)
        out.append(text.substr(static_cast<std::size_t>(start),
                               static_cast<std::size_t>(match.end(group) - start)));
    } else {
      out.push_back(c);
    }
  }
}

}  // namespace

bool KesRegex::IsMatch2(std::int32_t options, const Text& pattern, const Text& text) {
  const std::u16string units = text.utf16();
  return Search(options, pattern, units).matchesWhole();
}

Text KesRegex::Replace2(std::int32_t options, const Text& pattern, const Text& text,
                        const Text& replacement) {
  const std::u16string units = text.utf16(), with = replacement.utf16();
  Search search(options, pattern, units);
  std::u16string out;
  std::size_t at = 0;
  while (search.next()) {
    const auto start = static_cast<std::size_t>(search.start(0));
    out.append(units, at, start - at);
    appendTemplate(out, units, search, with);
    at = static_cast<std::size_t>(search.end(0));
  }
  if (at == 0 && out.empty()) return text;
  out.append(units, at);
  return Text::fromUtf16(out);
}

Ref<KesMatcher> KesRegex::Matcher2(std::int32_t options, const Text& pattern, const Text& text) {
  auto m = platform::makeShared<KesMatcher>();
  m->text_ = text.utf16();
  Search search(options, pattern, m->text_);
  m->groups_ = search.groups();
  m->spans_.reserve(static_cast<std::size_t>(m->groups_) + 1);
  while (search.next())
    for (std::int32_t g = 0; g <= m->groups_; ++g)
      m->spans_.push_back({search.start(g), search.end(g)});
  return m;
}

Ref<KesArray> KesRegex::Split2(std::int32_t options, const Text& pattern, const Text& text) {
  const std::u16string units = text.utf16();
  Search search(options, pattern, units);
  std::vector<Value> pieces;
  std::size_t at = 0;
  const auto take = [&](std::size_t end) {
    pieces.push_back(Text::fromUtf16(std::u16string_view(units).substr(at, end - at)));
  };
  while (search.next()) {
    const auto start = static_cast<std::size_t>(search.start(0));
    const auto end = static_cast<std::size_t>(search.end(0));
    // A match of nothing at either end parts nothing.
    if (start == end && (start == 0 || start == units.size())) continue;
    take(start);
    at = end;
  }
  take(units.size());
  return KesArray::initObjectsWithData(std::move(pieces));
}

std::size_t KesRegex::cachedPatterns() { return cache().patterns.size(); }

bool KesMatcher::Find() {
  const auto matches = static_cast<std::int32_t>(spans_.size()) / (groups_ + 1);
  if (current_ < matches) ++current_;
  return current_ < matches;
}

std::int32_t KesMatcher::GroupCount() const { return groups_; }

const KesMatcher::Span& KesMatcher::span(std::int32_t i) const {
  const std::size_t first =
      static_cast<std::size_t>(current_) * static_cast<std::size_t>(groups_ + 1);
  if (current_ < 0 || first >= spans_.size())
    throw KesException("NSRangeException", "No match: Find was not called or found nothing");
  if (i < 0 || i > groups_)
    throw KesException("NSRangeException",
                       formatText("Group %@ is outside a pattern of %@ groups",
                                  {std::to_string(i), std::to_string(groups_)}));
  return spans_[first + static_cast<std::size_t>(i)];
}

Text KesMatcher::Group(std::int32_t i) const {
  const Span& s = span(i);
  if (s.start < 0) return {};
  return Text::fromUtf16(std::u16string_view(text_).substr(
      static_cast<std::size_t>(s.start), static_cast<std::size_t>(s.end - s.start)));
}

std::int32_t KesMatcher::GetStart(std::int32_t i) const { return span(i).start; }

std::int32_t KesMatcher::GetEnd(std::int32_t i) const { return span(i).end; }

}  // namespace kes
