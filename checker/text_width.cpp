#include "checker/text_width.h"

namespace check {

namespace {

// In parts of the letter size, for classes of letters.
double widthOf(unsigned char c) {
  constexpr std::string_view kThin = "ijl.,:;'|!I()[]/ ", kSlim = "frt-\"", kWide = "mwMW@%";
  if (kThin.find(static_cast<char>(c)) != kThin.npos) return 0.29;
  if (kSlim.find(static_cast<char>(c)) != kSlim.npos) return 0.38;
  if (kWide.find(static_cast<char>(c)) != kWide.npos) return 0.88;
  if (c >= 'A' && c <= 'Z') return 0.68;
  if (c >= '0' && c <= '9') return 0.62;
  return 0.56;
}

bool begins(unsigned char c) { return (c & 0xC0) != 0x80; }

}  // namespace

double widthOf(std::string_view utf8, double size) {
  double width = 0;
  for (const unsigned char c : utf8)
    if (begins(c)) width += widthOf(c);
  return width * size;
}

bool fits(std::string_view utf8, const Box& box) {
  int lines = 1;
  double used = 0;
  const double blank = widthOf(" ", box.size);
  while (!utf8.empty()) {
    const auto end = utf8.find_first_of(" \n");
    const double word = widthOf(utf8.substr(0, end), box.size);
    if (word > box.width) return false;
    if (used > 0 && used + blank + word > box.width) {
      ++lines;
      used = 0;
    }
    used += (used > 0 ? blank : 0) + word;
    if (end == utf8.npos) break;
    if (utf8[end] == '\n') {
      ++lines;
      used = 0;
    }
    utf8.remove_prefix(end + 1);
  }
  return lines <= box.lines;
}

}  // namespace check
