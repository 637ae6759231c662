// Three lines: pattern, text and replacement, after a byte of options.
#include "runtime/core/language/regex.h"
#include "target.h"

using kes::KesRegex;

void fuzz::regex(Bytes input) {
  if (input.empty() || !kes::isUtf8(textOf(input.subspan(1)))) return;
  KesRegex::timeLimit = 50;
  const std::int32_t options = input[0];
  auto rest = textOf(input.subspan(1));
  const auto pattern = takeLine(rest), text = takeLine(rest), with = takeLine(rest);
  accepts([&] {
    KesRegex::IsMatch2(options, pattern, text);
    KesRegex::Replace2(options, pattern, text, with);
    const auto matcher = KesRegex::Matcher2(options, pattern, text);
    int matches = 0, end = 0;
    while (matcher->Find()) {
      ++matches;
      require(matcher->GetStart(0) >= end, "matches follow each other");
      end = matcher->GetEnd(0);
      for (int g = 0; g <= matcher->GroupCount(); ++g)
        require(matcher->Group(g).Length() == matcher->GetEnd(g) - matcher->GetStart(g),
                "a group is as long as it says");
    }
    const auto pieces = KesRegex::Split2(options, pattern, text);
    require(pieces->Length() <= matches + 1, "a text is parted at its matches");
  });
}
