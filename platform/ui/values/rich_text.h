// Text with attributes: a UTF-8 string and runs over it.
//
// Positions count 16-bit units, as everywhere above the platform. The runs are kept
// in order, without overlap, clipped to the text; what no run covers has the look of
// the view that shows it. A value; main thread. Nothing here throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/values/color.h"
#include "platform/ui/values/font.h"

namespace ui {

enum class TextAlign : std::uint8_t { Left = 0, Center = 1, Right = 2, Justified = 3 };

// What is not set is inherited.
struct TextAttributes {
  std::optional<Color> color;
  std::optional<Color> background;
  std::optional<Font> font;
  std::optional<int> underline;        // 0 none, 1 single, 2 thick
  std::optional<int> strikethrough;    // 0 none, 1 single
  std::optional<TextAlign> alignment;  // of the paragraphs that the run touches
  std::optional<std::string> link;
  std::optional<double> kerning;   // points added between characters
  std::optional<double> baseline;  // points the run is raised by
  bool operator==(const TextAttributes&) const = default;
  void overlay(const TextAttributes& over);
};

class AttributedText {
 public:
  struct Run {
    std::uint32_t start, end;  // 16-bit units, end excluded
    TextAttributes attributes;
    bool operator==(const Run&) const = default;
  };

  AttributedText() = default;
  explicit AttributedText(std::string text) : text_(std::move(text)) {}

  const std::string& text() const { return text_; }
  const std::vector<Run>& runs() const { return runs_; }
  bool empty() const { return text_.empty(); }
  std::uint32_t length() const;  // in 16-bit units

  void append(std::string_view text) { text_.append(text); }
  void append(const AttributedText& other);
  // Sets the attributes that are given over [start, end); others stay as they were.
  void apply(std::uint32_t start, std::uint32_t end, const TextAttributes& attributes);
  // The attributes at a position (none where no run covers it).
  TextAttributes at(std::uint32_t position) const;

  bool operator==(const AttributedText&) const = default;

 private:
  std::string text_;
  std::vector<Run> runs_;
};

// Lengths and offsets between UTF-8 bytes and 16-bit units.
std::uint32_t utf16Length(std::string_view utf8);
std::size_t utf8Offset(std::string_view utf8, std::uint32_t units);

// The text without private-use characters (icons of icon fonts), white space at
// either end removed: what is read aloud.
std::string spokenText(std::string_view utf8);

}  // namespace ui
