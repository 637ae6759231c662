#include "tools/layout_compiler.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <set>

#include "runtime/views/layout/layout_format.h"

namespace layouts {

namespace format = kes::layout_format;

namespace {

constexpr int kMaxIndent = 60;  // levels

// A line with the lines indented below it.
struct Line {
  int number = 0;
  std::size_t indent = 0;
  std::string_view text;
  std::vector<Line> inside;
};

bool isName(std::string_view text) {
  const auto letter = [](char c) {
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
  };
  return !text.empty() && letter(text[0]) && std::all_of(text.begin(), text.end(), [&](char c) {
    return letter(c) || std::isdigit(static_cast<unsigned char>(c));
  });
}

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

class Compiler {
 public:
  explicit Compiler(std::string_view file) : file_(file) {}

  Layout compile(std::string_view source) {
    const auto lines = readLines(source);
    readVariants(lines);
    Block root(*this, rootProperties(), {});
    for (const auto& line : lines)
      if (!line.text.starts_with("variant ")) root.take(line);
    if (layout_.variants.empty()) fail(1, "the layout needs a variant, such as: variant 320x480");
    root.writeProperties(layout_.root);
    for (const auto& line : root.barButtons) {
      Block button(*this, barButtonProperties(), "a bar button");
      for (const auto& inner : line->inside) button.take(inner);
      button.writeProperties(layout_.root.addMap(std::string(keyOf(*line))));
    }
    writeViews(root.views, layout_.root);
    return std::move(layout_);
  }

 private:
  [[noreturn]] void fail(int line, const std::string& what) const {
    throw Error(file_ + ":" + std::to_string(line) + ": " + what);
  }

  // --- Lines and their indentation.

  std::vector<Line> readLines(std::string_view source) {
    std::vector<Line> flat;
    int number = 0;
    while (!source.empty()) {
      const auto end = std::min(source.find('\n'), source.size());
      auto text = source.substr(0, end);
      source.remove_prefix(std::min(end + 1, source.size()));
      ++number;
      while (!text.empty() && (text.back() == ' ' || text.back() == '\r')) text.remove_suffix(1);
      const auto indent = std::min(text.find_first_not_of(' '), text.size());
      text.remove_prefix(indent);
      if (text.empty() || text[0] == '#') continue;
      if (text[0] == '\t') fail(number, "indent with blanks, not with tabs");
      flat.push_back({number, indent, text, {}});
    }
    std::size_t at = 0;
    return nest(flat, at, 0, 0);
  }

  std::vector<Line> nest(std::vector<Line>& flat, std::size_t& at, std::size_t indent, int level) {
    std::vector<Line> lines;
    while (at < flat.size() && flat[at].indent >= indent) {
      if (level > kMaxIndent) fail(flat[at].number, "indented too deeply");
      if (flat[at].indent > indent && lines.empty() && level == 0 && at == 0)
        fail(flat[at].number, "the first line must not be indented");
      if (flat[at].indent > indent) {
        lines.back().inside = nest(flat, at, flat[at].indent, level + 1);
        if (at < flat.size() && flat[at].indent > indent)
          fail(flat[at].number, "this indentation matches no line above");
        continue;
      }
      lines.push_back(flat[at++]);
    }
    return lines;
  }

  static bool isProperty(const Line& line) {
    return line.text.find(':') < std::min(line.text.find('"'), line.text.size());
  }
  static std::string_view keyOf(const Line& line) {
    return line.text.substr(0, line.text.find_first_of(" :"));
  }
  static std::string_view valueOf(const Line& line) {
    auto value = line.text.substr(line.text.find(':') + 1);
    while (value.starts_with(' ')) value.remove_prefix(1);
    return value;
  }

  // --- Variants and frames.

  std::optional<Variant> parseVariant(std::string_view text) {
    const auto x = text.find('x');
    if (x == text.npos) return std::nullopt;
    static constexpr Property side{"variant", Kind::Integer};
    try {
      const Variant v{std::get<std::int32_t>(parseValue(side, text.substr(0, x))),
                      std::get<std::int32_t>(parseValue(side, text.substr(x + 1)))};
      if (v.width < 1 || v.height < 1) return std::nullopt;
      return v;
    } catch (const Error&) {
      return std::nullopt;
    }
  }

  void readVariants(const std::vector<Line>& lines) {
    for (const auto& line : lines) {
      if (!line.text.starts_with("variant ")) continue;
      const auto v = parseVariant(line.text.substr(8));
      if (!v) fail(line.number, "expected a size, such as: variant 320x480");
      auto& all = layout_.variants;
      if (std::find(all.begin(), all.end(), *v) != all.end())
        fail(line.number, "this variant stands here twice");
      all.push_back(*v);
    }
  }

  // One axis of a frame: "left 16 right 16". The file keeps the second number in `width`.
  struct Axis {
    Value start, extent;
    std::int32_t anchor = 0;
  };
  Axis parseAxis(int line, std::string_view text, const char* near, const char* far,
                 const char* size) {
    std::vector<std::string_view> words;
    for (std::size_t i = 0; i < text.size();) {
      const auto from = text.find_first_not_of(' ', i);
      if (from == text.npos) break;
      i = std::min(text.find(' ', from), text.size());
      words.push_back(text.substr(from, i - from));
    }
    const auto number = [&](std::string_view word) -> Value {
      static constexpr Property length{"length", Kind::Free};
      try {
        Value v = parseValue(length, word);
        if (std::holds_alternative<std::int32_t>(v) || std::holds_alternative<float>(v)) return v;
      } catch (const Error&) {
      }
      fail(line, "'" + std::string(word) + "' is no length");
    };
    const auto is = [&](const char* a, const char* b) { return words[0] == a && words[2] == b; };
    if (words.size() == 4) {
      if (is(near, size)) return {number(words[1]), number(words[3]), 0};
      if (is(far, size)) return {number(words[1]), number(words[3]), 1};
      if (is(near, far)) return {number(words[1]), number(words[3]), 2};
    }
    fail(line, std::string("expected \"") + near + " N " + size + " N\", \"" + far + " N " + size +
                   " N\" or \"" + near + " N " + far + " N\", found \"" + std::string(text) + "\"");
  }

  Map parseFrame(const Line& line) {
    const auto value = valueOf(line);
    const auto comma = value.find(',');
    if (comma == value.npos)
      fail(line.number, "a frame is two parts with a comma: left 0 right 0, top 0 bottom 0");
    auto h = parseAxis(line.number, value.substr(0, comma), "left", "right", "width");
    auto v = parseAxis(line.number, value.substr(comma + 1), "top", "bottom", "height");
    Map frame;
    frame.entries.push_back({"left", std::move(h.start)});
    frame.entries.push_back({"top", std::move(v.start)});
    frame.entries.push_back({"width", std::move(h.extent)});
    frame.entries.push_back({"height", std::move(v.extent)});
    frame.entries.push_back({"hanchor", h.anchor});
    frame.entries.push_back({"vanchor", v.anchor});
    return frame;
  }

  void writeFrames(const Line& view, const std::vector<const Line*>& frames, Map& out) {
    for (const auto* frame : frames) {
      const auto named = frame->text.substr(5, frame->text.find(':') - 5);
      if (named.empty()) continue;
      const auto v = parseVariant(named.substr(1));
      if (!v ||
          std::find(layout_.variants.begin(), layout_.variants.end(), *v) == layout_.variants.end())
        fail(frame->number, "no variant" + std::string(named));
    }
    for (std::size_t i = 0; i < layout_.variants.size(); ++i) {
      const Line* chosen = nullptr;
      for (const auto* frame : frames) {
        const auto named = frame->text.substr(5, frame->text.find(':') - 5);
        const bool own = !named.empty() && parseVariant(named.substr(1)) == layout_.variants[i];
        if (own || (named.empty() && !chosen)) chosen = frame;
      }
      if (!chosen)
        fail(view.number, "'" + std::string(view.text) + "' has no frame for " +
                              std::to_string(layout_.variants[i].width) + "x" +
                              std::to_string(layout_.variants[i].height));
      out.addMap(std::string(format::kVariant) + std::to_string(i)) = parseFrame(*chosen);
    }
  }

  // --- Blocks of properties and views.

  struct Block {
    Block(Compiler& c, const std::vector<Property>& properties, std::string what)
        : compiler(c), table(properties), owner(std::move(what)) {}

    Compiler& compiler;
    const std::vector<Property>& table;
    std::string owner;  // empty for the layout itself
    std::vector<std::pair<const Property*, Value>> given;
    std::vector<const Line*> views, frames, barButtons;
    std::string eventName;
    bool hasEventName = false;

    void take(const Line& line) {
      const auto key = keyOf(line);
      if (!isProperty(line)) {
        views.push_back(&line);
        return;
      }
      if (key == "frame" && !owner.empty()) {
        compiler.checkFlat(line);
        frames.push_back(&line);
        return;
      }
      if (owner.empty() && isBarButton(key)) {
        barButtons.push_back(&line);
        return;
      }
      if (key == "eventName" && !owner.empty()) {
        eventName = std::get<std::string>(compiler.value(line, {"eventName", Kind::Text}));
        hasEventName = true;
        return;
      }
      const auto* property = findProperty(table, key);
      if (!property)
        compiler.fail(line.number, (owner.empty() ? std::string("the layout") : owner) +
                                       " has no property '" + std::string(key) + "'");
      for (const auto& [known, value] : given)
        if (known == property)
          compiler.fail(line.number, "'" + std::string(key) + "' stands here twice");
      given.emplace_back(property, compiler.value(line, *property));
    }

    // In the table's order, with what the source left out.
    void writeProperties(Map& out) {
      for (const auto& property : table) {
        const auto found = std::find_if(given.begin(), given.end(),
                                        [&](const auto& g) { return g.first == &property; });
        if (found != given.end())
          out.entries.push_back({std::string(property.key), std::move(found->second)});
        else if (!property.fallback.empty())
          out.entries.push_back(
              {std::string(property.key), parseValue(property, property.fallback)});
      }
    }
  };

  void checkFlat(const Line& line) const {
    if (!line.inside.empty())
      fail(line.inside.front().number, "nothing can be indented below a property");
  }

  Value value(const Line& line, const Property& property) {
    try {
      const auto text = valueOf(line);
      if (property.kind == Kind::Free && text.empty()) {
        auto map = std::make_unique<Map>();
        for (const auto& inner : line.inside) {
          if (!isProperty(inner)) fail(inner.number, "expected a property, such as: Name: 1");
          const Property free{keyOf(inner), Kind::Free};
          map->entries.push_back({std::string(keyOf(inner)), value(inner, free)});
        }
        return map;
      }
      checkFlat(line);
      return parseValue(property, text);
    } catch (const Error& e) {
      if (std::string_view(e.what()).starts_with(file_ + ":")) throw;
      fail(line.number, std::string(property.key) + ": " + e.what());
    }
  }

  void writeViews(const std::vector<const Line*>& views, Map& parent) {
    if (views.empty()) return;
    Map& kids = parent.addMap(std::string(format::kKids));
    int index = 0;
    for (const auto* line : views) writeView(*line, kids.addMap(std::to_string(index++)));
  }

  void writeView(const Line& line, Map& out) {
    const auto blank = line.text.find(' ');
    const auto word = line.text.substr(0, blank);
    const auto name = blank == line.text.npos ? std::string_view() : line.text.substr(blank + 1);
    const auto* type = typeByWord(word);
    if (!type)
      fail(line.number,
           "unknown kind of view '" + std::string(word) + "'; known are " + allTypeWords());
    if (!isName(name)) fail(line.number, "expected a name after '" + std::string(word) + "'");
    if (!names_.insert(lower(name)).second)
      fail(line.number, "there are two views called '" + std::string(name) + "'");

    Block block(*this, type->properties, "a " + std::string(word));
    for (const auto& inner : line.inside) block.take(inner);
    if (!block.views.empty() && !type->holdsViews)
      fail(block.views.front()->number, "a " + std::string(word) + " holds no views");
    out.entries.push_back({"type", std::string(type->className)});
    out.entries.push_back({"name", std::string(name)});
    out.entries.push_back({"eventName", block.hasEventName ? block.eventName : std::string(name)});
    writeFrames(line, block.frames, out);
    block.writeProperties(out);
    if (type->word == "custom" && !out.find("customType"))
      fail(line.number, "a custom view needs its customType");
    writeViews(block.views, out);
  }

  std::string file_;
  Layout layout_;
  std::set<std::string> names_;
};

}  // namespace

Layout compile(std::string_view source, std::string_view fileName) {
  return Compiler(fileName).compile(source);
}

}  // namespace layouts
