#include <charconv>
#include <cmath>

#include "platform/base/utf8.h"
#include "tools/layout_compiler.h"

namespace layouts {

namespace {

template <class T>
bool parseNumber(std::string_view text, T& out, int base = 10) {
  const char* end = text.data() + text.size();
  std::from_chars_result r{};
  if constexpr (std::is_integral_v<T>)
    r = std::from_chars(text.data(), end, out, base);
  else
    r = std::from_chars(text.data(), end, out);
  return r.ec == std::errc() && r.ptr == end && !text.empty();
}

// Takes a text in quotes off the front.
std::string takeText(std::string_view& rest) {
  if (!rest.starts_with('"')) throw Error("expected a text in quotes");
  std::string out;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == '"') {
      rest.remove_prefix(i + 1);
      return out;
    }
    if (rest[i] != '\\') {
      out += rest[i];
      continue;
    }
    const char c = ++i < rest.size() ? rest[i] : '\0';
    if (c == 'n') {
      out += '\n';
    } else if (c == '"' || c == '\\') {
      out += c;
    } else if (c == 'u' && rest.substr(i + 1).starts_with('{')) {
      const auto close = rest.find('}', i);
      std::uint32_t code = 0;
      const bool good =
          close != rest.npos && parseNumber(rest.substr(i + 2, close - i - 2), code, 16);
      if (!good || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        throw Error("\\u{...} needs a character's number");
      out += platform::toUtf8(code);
      i = close;
    } else {
      throw Error("only \\n, \\\", \\\\ and \\u{...} can follow a backslash");
    }
  }
  throw Error("the text has no closing quote");
}

std::string wholeText(std::string_view text) {
  std::string value = takeText(text);
  if (!text.empty()) throw Error("nothing can follow the text");
  return value;
}

std::string_view takeWord(std::string_view& rest) {
  const auto end = std::min(rest.find(' '), rest.size());
  const auto word = rest.substr(0, end);
  rest.remove_prefix(end);
  while (rest.starts_with(' ')) rest.remove_prefix(1);
  return word;
}

Color parseColor(std::string_view text) {
  if (text == "keep") return {kKeepColor};
  std::uint32_t argb = 0;
  const bool digits = text.starts_with('#') && (text.size() == 7 || text.size() == 9);
  if (!digits || !parseNumber(text.substr(1), argb, 16))
    throw Error("expected a colour: #RRGGBB, #AARRGGBB or keep");
  return {text.size() == 7 ? argb | 0xFF000000 : argb};
}

bool parseBoolean(std::string_view text) {
  if (text == "yes") return true;
  if (text == "no") return false;
  throw Error("expected yes or no");
}

std::int32_t parseInteger(std::string_view text) {
  std::int32_t v = 0;
  if (!parseNumber(text, v)) throw Error("expected a whole number");
  return v;
}

float parseFloat(std::string_view text) {
  float v = 0;
  if (!parseNumber(text, v) || !std::isfinite(v)) throw Error("expected a number");
  return v;
}

// system 16, bold 16, italic 16, "Material Icons" 24, "Material Icons" 24 "\u{E0CD}"
Value parseFont(std::string_view text) {
  auto font = std::make_unique<Map>();
  std::string name;
  if (text.starts_with('"')) {
    name = takeText(text);
    while (text.starts_with(' ')) text.remove_prefix(1);
  } else {
    const auto face = takeWord(text);
    if (face == "system")
      name = "DEFAULT";
    else if (face == "bold")
      name = "DEFAULT Bold";
    else if (face == "italic")
      name = "DEFAULT Italic";
    else
      throw Error("expected a font: system, bold, italic or a name in quotes, then its size");
  }
  font->entries.push_back({"fontName", name});
  font->entries.push_back({"fontSize", parseFloat(takeWord(text))});
  if (!text.empty()) {
    const char* key = name == "FontAwesome"      ? "fontAwesome"
                      : name == "Material Icons" ? "materialIcons"
                                                 : nullptr;
    if (!key) throw Error("only an icon font has a character");
    font->entries.push_back({key, wholeText(text)});
  }
  return font;
}

Value parseWord(const Property& property, std::string_view text) {
  std::string known;
  for (std::size_t i = 0; i < property.words.size(); ++i) {
    if (property.words[i] == text) return static_cast<std::int32_t>(i);
    known += (known.empty() ? "" : ", ") + std::string(property.words[i]);
  }
  throw Error("expected one of " + known);
}

Value parseFree(std::string_view text) {
  if (text.starts_with('"')) return wholeText(text);
  if (text.starts_with('#') || text == "keep") return parseColor(text);
  if (text == "yes" || text == "no") return parseBoolean(text);
  if (text.ends_with('d')) {
    double v = 0;
    if (parseNumber(text.substr(0, text.size() - 1), v)) return v;
  }
  if (text.find('.') != text.npos) return parseFloat(text);
  std::int32_t v = 0;
  if (parseNumber(text, v)) return v;
  throw Error("expected a text in quotes, a number, a colour, yes or no");
}

}  // namespace

Value parseValue(const Property& property, std::string_view text) {
  switch (property.kind) {
    case Kind::Integer:
      return parseInteger(text);
    case Kind::Float:
      return parseFloat(text);
    case Kind::Boolean:
      return parseBoolean(text);
    case Kind::Color:
      return parseColor(text);
    case Kind::Text:
      return wholeText(text);
    case Kind::Font:
      return parseFont(text);
    case Kind::Word:
      return parseWord(property, text);
    case Kind::Free:
      return parseFree(text);
  }
  throw Error("unknown kind of value");
}

}  // namespace layouts
