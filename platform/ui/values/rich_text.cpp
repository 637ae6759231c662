#include "platform/ui/values/rich_text.h"

namespace ui {

namespace {

// Bytes of the character that starts with this byte; stray bytes count as one.
std::size_t sequenceLength(unsigned char lead) {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

char32_t decode(std::string_view text, std::size_t at, std::size_t length) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  switch (length) {
    case 2:
      return (byte(0) & 0x1Fu) << 6 | (byte(1) & 0x3Fu);
    case 3:
      return (byte(0) & 0x0Fu) << 12 | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3Fu);
    case 4:
      return (byte(0) & 0x07u) << 18 | (byte(1) & 0x3Fu) << 12 | (byte(2) & 0x3Fu) << 6 |
             (byte(3) & 0x3Fu);
    default:
      return byte(0);
  }
}

bool privateUse(char32_t c) { return (c >= 0xE000 && c <= 0xF8FF) || c >= 0xF0000; }

bool blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

void TextAttributes::overlay(const TextAttributes& over) {
  const auto take = [](auto& mine, const auto& theirs) {
    if (theirs) mine = theirs;
  };
  take(color, over.color);
  take(background, over.background);
  take(font, over.font);
  take(underline, over.underline);
  take(strikethrough, over.strikethrough);
  take(alignment, over.alignment);
  take(link, over.link);
  take(kerning, over.kerning);
  take(baseline, over.baseline);
}

std::uint32_t AttributedText::length() const { return utf16Length(text_); }

void AttributedText::append(const AttributedText& other) {
  const auto shift = length();
  text_ += other.text_;
  for (auto run : other.runs_) {
    run.start += shift;
    run.end += shift;
    runs_.push_back(std::move(run));
  }
}

void AttributedText::apply(std::uint32_t start, std::uint32_t end,
                           const TextAttributes& attributes) {
  end = std::min(end, length());
  if (start >= end) return;
  std::vector<Run> result;
  const auto add = [&result](std::uint32_t from, std::uint32_t to, const TextAttributes& a) {
    if (from >= to) return;
    if (!result.empty() && result.back().end == from && result.back().attributes == a)
      result.back().end = to;
    else
      result.push_back({from, to, a});
  };
  std::uint32_t covered = start;  // how much of [start, end) is done
  for (const auto& run : runs_) {
    if (run.end <= start || run.start >= end) {
      if (run.start >= end && covered < end) {
        add(covered, end, attributes);
        covered = end;
      }
      add(run.start, run.end, run.attributes);
      continue;
    }
    add(run.start, std::max(run.start, start), run.attributes);
    if (run.start > covered) add(covered, run.start, attributes);
    auto merged = run.attributes;
    merged.overlay(attributes);
    const auto stop = std::min(run.end, end);
    add(std::max(run.start, start), stop, merged);
    covered = stop;
    add(stop, run.end, run.attributes);
  }
  if (covered < end) add(covered, end, attributes);
  runs_ = std::move(result);
}

TextAttributes AttributedText::at(std::uint32_t position) const {
  for (const auto& run : runs_)
    if (position >= run.start && position < run.end) return run.attributes;
  return {};
}

std::uint32_t utf16Length(std::string_view utf8) {
  std::uint32_t units = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

std::size_t utf8Offset(std::string_view utf8, std::uint32_t units) {
  std::size_t at = 0;
  while (at < utf8.size() && units > 0) {
    const auto length = sequenceLength(static_cast<unsigned char>(utf8[at]));
    const std::uint32_t taken = length == 4 ? 2 : 1;
    if (taken > units) break;
    units -= taken;
    at += length;
  }
  return std::min(at, utf8.size());
}

std::string spokenText(std::string_view utf8) {
  std::string spoken;
  spoken.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    auto length = sequenceLength(static_cast<unsigned char>(utf8[at]));
    if (at + length > utf8.size()) length = 1;
    if (!privateUse(decode(utf8, at, length))) spoken.append(utf8, at, length);
    at += length;
  }
  std::size_t from = 0, to = spoken.size();
  while (from < to && blank(spoken[from])) ++from;
  while (to > from && blank(spoken[to - 1])) --to;
  return spoken.substr(from, to - from);
}

}  // namespace ui
