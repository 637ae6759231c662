#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

#include "platform/base/utf8.h"
#include "platform/ui/controls/web_view.h"

namespace ui {

namespace {

void appendUtf8(std::string& out, unsigned long c) {
  const bool isCharacter = c != 0 && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
  out += platform::toUtf8(isCharacter ? static_cast<char32_t>(c) : U'\uFFFD');
}

constexpr std::array<std::pair<std::string_view, unsigned>, 19> kEntities{{
    {"amp", '&'},     {"lt", '<'},      {"gt", '>'},      {"quot", '"'},    {"apos", '\''},
    {"nbsp", ' '},    {"agrave", 0xE0}, {"egrave", 0xE8}, {"eacute", 0xE9}, {"igrave", 0xEC},
    {"ograve", 0xF2}, {"ugrave", 0xF9}, {"Egrave", 0xC8}, {"Agrave", 0xC0}, {"copy", 0xA9},
    {"euro", 0x20AC}, {"laquo", 0xAB},  {"raquo", 0xBB},  {"deg", 0xB0},
}};

constexpr std::array<std::string_view, 24> kBlocks{
    "p",  "br",    "div",     "h1",      "h2",     "h3",     "h4",   "h5",
    "h6", "li",    "ul",      "ol",      "tr",     "td",     "th",   "hr",
    "dl", "table", "section", "article", "header", "footer", "main", "body"};

constexpr std::array<std::string_view, 4> kUnread{"script", "style", "head", "template"};

template <std::size_t N>
bool among(const std::array<std::string_view, N>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Collapses blanks as it is written to; a block starts a new line.
class Writer {
 public:
  void text(std::string_view bytes) {
    if (block_ && !out_.empty())
      out_ += '\n';
    else if (blank_ && !out_.empty() && !block_)
      out_ += ' ';
    block_ = blank_ = false;
    out_ += bytes;
  }
  void blank() { blank_ = true; }
  void block() { block_ = true; }
  std::string take() { return std::move(out_); }

 private:
  std::string out_;
  bool blank_ = false, block_ = false;
};

// The end of the tag that starts at `at`: past its '>', quotes heeded.
std::size_t tagEnd(std::string_view html, std::size_t at) {
  char quote = 0;
  for (; at < html.size(); ++at) {
    const char c = html[at];
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at + 1;
    }
  }
  return html.size();
}

std::string lowered(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// Past the element's closing tag, or the end of the document.
std::size_t skipElement(std::string_view html, std::size_t at, const std::string& name) {
  for (; at < html.size(); ++at) {
    at = html.find("</", at);
    if (at == std::string_view::npos) return html.size();
    if (lowered(html.substr(at + 2, name.size())) == name) return tagEnd(html, at);
  }
  return html.size();
}

// Decodes the entity at `at` (an '&'); answers what it took, 0 when it is none.
std::size_t entity(std::string_view html, std::size_t at, std::string& out) {
  const auto semicolon = html.find(';', at);
  if (semicolon == std::string_view::npos || semicolon - at > 10) return 0;
  const std::string name(html.substr(at + 1, semicolon - at - 1));
  if (name.size() > 1 && name[0] == '#') {
    const bool hex = name[1] == 'x' || name[1] == 'X';
    const char* digits = name.c_str() + (hex ? 2 : 1);
    char* end = nullptr;
    const unsigned long c = std::strtoul(digits, &end, hex ? 16 : 10);
    if (end == digits || *end) return 0;
    appendUtf8(out, c);
    return semicolon - at + 1;
  }
  for (const auto& [known, c] : kEntities)
    if (name == known) {
      appendUtf8(out, c);
      return semicolon - at + 1;
    }
  return 0;
}

}  // namespace

std::string htmlText(std::string_view html) {
  Writer writer;
  for (std::size_t at = 0; at < html.size();) {
    const char c = html[at];
    if (c == '<') {
      if (html.substr(at, 4) == "<!--") {
        const auto end = html.find("-->", at + 4);
        at = end == std::string_view::npos ? html.size() : end + 3;
        continue;
      }
      std::size_t nameStart = at + 1;
      const bool closing = nameStart < html.size() && html[nameStart] == '/';
      if (closing) ++nameStart;
      auto nameEnd = nameStart;
      while (nameEnd < html.size() && std::isalnum(static_cast<unsigned char>(html[nameEnd])))
        ++nameEnd;
      const bool tag = nameEnd > nameStart || (nameStart < html.size() && html[nameStart] == '!');
      if (tag) {
        const auto name = lowered(html.substr(nameStart, nameEnd - nameStart));
        const auto end = tagEnd(html, at);
        at = !closing && among(kUnread, name) ? skipElement(html, end, name) : end;
        if (among(kBlocks, name)) writer.block();
        continue;
      }
    }
    if (std::isspace(static_cast<unsigned char>(c))) {
      writer.blank();
      ++at;
      continue;
    }
    std::string decoded;
    if (c == '&')
      if (const auto taken = entity(html, at, decoded)) {
        at += taken;
        if (decoded == " ")
          writer.blank();
        else
          writer.text(decoded);
        continue;
      }
    writer.text(html.substr(at, 1));
    ++at;
  }
  return writer.take();
}

}  // namespace ui
