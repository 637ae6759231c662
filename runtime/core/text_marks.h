// Where the 16-bit units of a long text lie among its bytes.
//
// A text that is not ASCII has to be walked to find a position in it. Long ones keep a mark
// every kStride units, made when a position is first asked for and freed with the text: a
// walk is then at most one stride long. Short texts and ASCII have none, nor any room for
// them. Made for a text by any thread that needs them; two that make them at once agree.
#pragma once

#include <cstdint>
#include <string_view>

namespace kes::detail {

struct TextRep;

class TextMarks {
 public:
  // Texts of fewer bytes are walked as quickly as looked up.
  static constexpr std::size_t kFromBytes = 256;
  static constexpr std::uint32_t kStride = 32;

  // A place between two characters.
  struct Place {
    std::size_t byte = 0;
    std::uint32_t unit = 0;
  };

  static constexpr bool areWorthwhile(std::size_t bytes, std::size_t units) noexcept {
    return bytes != units && bytes >= kFromBytes;
  }
  // The last marked place at or before the unit; the text's beginning where there is none,
  // and the one just behind it when it is the second unit of a character.
  static Place before(const TextRep& text, std::uint32_t unit);
  // The last marked place at or before the byte.
  static Place beforeByte(const TextRep& text, std::size_t byte);
  static void free(TextRep& text) noexcept;

 private:
  // A mark: the byte at which the first character begins whose first unit is at or behind a
  // multiple of the stride; and whether it is behind.
  static constexpr std::uint32_t kBehind = std::uint32_t{1} << 31;
  static const std::uint32_t* of(const TextRep& text);
  static const std::uint32_t* make(std::string_view text, std::uint32_t units);
  static Place place(const std::uint32_t* marks, std::uint32_t number) noexcept;
};

}  // namespace kes::detail
