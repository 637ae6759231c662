#include "tools/layout_printer.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "runtime/views/layout/layout_format.h"
#include "tools/layout_compiler.h"

namespace layouts {

namespace format = kes::layout_format;

namespace {

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += text[i];
    } else if (c == '\n') {
      out += "\\n";
    } else if (c < 0x20) {
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\u{%X}", c);
      out += escape;
    } else if ((c == 0xEE || c == 0xEF) && i + 2 < text.size()) {
      // The private use area, where icons live, shows nothing in an editor.
      const unsigned code = (c & 0xFu) << 12 | (text[i + 1] & 0x3Fu) << 6 | (text[i + 2] & 0x3Fu);
      if (code < 0xE000 || code > 0xF8FF) {
        out += text[i];
        continue;
      }
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\u{%X}", code);
      out += escape;
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out + '"';
}

template <class T>
std::string decimal(T v) {
  char buffer[64];
  const auto r = std::to_chars(buffer, buffer + sizeof buffer, v);
  return std::string(buffer, r.ptr);
}

std::string withPoint(float v) {
  std::string text = decimal(v);
  if (text.find_first_not_of("-0123456789") == text.npos) text += ".0";
  return text;
}

std::string colorText(Color c) {
  if (c.argb == kKeepColor) return "keep";
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "#%08X", c.argb);
  return buffer;
}

std::string length(const Value* v) {
  if (!v) return "0";
  if (const auto* i = std::get_if<std::int32_t>(v)) return std::to_string(*i);
  if (const auto* f = std::get_if<float>(v)) return withPoint(*f);
  return "0";
}

std::int32_t anchor(const Map& frame, const char* key) {
  const auto* v = frame.find(key);
  const auto* i = v ? std::get_if<std::int32_t>(v) : nullptr;
  return i ? *i : 0;
}

std::string axis(const Map& frame, const char* anchorKey, const char* startKey,
                 const char* extentKey, const char* far) {
  const auto a = anchor(frame, anchorKey);
  return std::string(a == 1 ? far : startKey) + " " + length(frame.find(startKey)) + " " +
         (a == 2 ? far : extentKey) + " " + length(frame.find(extentKey));
}

std::string frameText(const Map& frame) {
  return axis(frame, "hanchor", "left", "width", "right") + ", " +
         axis(frame, "vanchor", "top", "height", "bottom");
}

class Printer {
 public:
  std::string print(const Layout& layout) {
    variants_ = layout.variants;
    for (const auto& v : variants_)
      line(0, "variant " + std::to_string(v.width) + "x" + std::to_string(v.height));
    properties(layout.root, rootProperties(), 0);
    kids(layout.root, 0);
    return std::move(out_);
  }

 private:
  void line(int level, const std::string& text) {
    out_.append(static_cast<std::size_t>(level) * 2, ' ');
    out_ += text + "\n";
  }

  static std::string textOf(const Map& map, const char* key) {
    const auto* v = map.find(key);
    const auto* text = v ? std::get_if<std::string>(v) : nullptr;
    return text ? *text : "";
  }

  void kids(const Map& parent, int level) {
    const auto* all = parent.map(format::kKids);
    if (!all) return;
    for (std::size_t i = 0; i < all->entries.size(); ++i)
      if (const auto* view = all->map(std::to_string(i))) this->view(*view, level);
  }

  void view(const Map& map, int level) {
    const std::string className = textOf(map, "type"), name = textOf(map, "name");
    const auto* type = typeByClass(className);
    static const std::vector<Property> none;
    line(level, (type ? std::string(type->word) : className) + " " + name);
    if (const auto event = textOf(map, "eventName"); event != name)
      line(level + 1, "eventName: " + quoted(event));
    frames(map, level + 1);
    properties(map, type ? type->properties : none, level + 1);
    kids(map, level + 1);
  }

  void frames(const Map& map, int level) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < variants_.size(); ++i) {
      const auto* frame = map.map(std::string(format::kVariant) + std::to_string(i));
      texts.push_back(frame ? frameText(*frame) : "");
    }
    const bool same = !texts.empty() && std::all_of(texts.begin(), texts.end(),
                                                    [&](auto& t) { return t == texts[0]; });
    if (same) {
      line(level, "frame: " + texts[0]);
      return;
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
      line(level, "frame " + std::to_string(variants_[i].width) + "x" +
                      std::to_string(variants_[i].height) + ": " + texts[i]);
  }

  void properties(const Map& map, const std::vector<Property>& table, int level) {
    for (const auto& e : map.entries) {
      const bool structure = e.key == "type" || e.key == "name" || e.key == "eventName" ||
                             e.key == format::kKids || e.key.starts_with(format::kVariant);
      if (structure) continue;
      const auto* known = findProperty(table, e.key);
      const auto* inner = std::get_if<std::unique_ptr<Map>>(&e.value);
      if (inner && known && known->kind == Kind::Font) {
        line(level, e.key + ": " + font(**inner));
      } else if (inner) {
        line(level, e.key + ":");
        properties(**inner, isBarButton(e.key) ? barButtonProperties() : std::vector<Property>(),
                   level + 1);
      } else {
        line(level, e.key + ": " + scalar(e.value, known));
      }
    }
  }

  static std::string font(const Map& map) {
    const std::string name = textOf(map, "fontName");
    const auto* size = map.find("fontSize");
    const auto* points = size ? std::get_if<float>(size) : nullptr;
    std::string text = name == "DEFAULT"          ? "system"
                       : name == "DEFAULT Bold"   ? "bold"
                       : name == "DEFAULT Italic" ? "italic"
                                                  : quoted(name);
    text += " " + (points ? decimal(*points) : "0");
    for (const char* key : {"fontAwesome", "materialIcons"})
      if (map.find(key)) text += " " + quoted(textOf(map, key));
    return text;
  }

  static std::string scalar(const Value& value, const Property* known) {
    if (const auto* i = std::get_if<std::int32_t>(&value)) {
      const bool word = known && known->kind == Kind::Word && *i >= 0 &&
                        static_cast<std::size_t>(*i) < known->words.size();
      return word ? std::string(known->words[static_cast<std::size_t>(*i)]) : std::to_string(*i);
    }
    if (const auto* t = std::get_if<std::string>(&value)) return quoted(*t);
    if (const auto* b = std::get_if<bool>(&value)) return *b ? "yes" : "no";
    if (const auto* c = std::get_if<Color>(&value)) return colorText(*c);
    if (const auto* f = std::get_if<float>(&value)) return withPoint(*f);
    return decimal(std::get<double>(value)) + "d";
  }

  std::string out_;
  std::vector<Variant> variants_;
};

}  // namespace

std::string print(const Layout& layout) { return Printer().print(layout); }

}  // namespace layouts
