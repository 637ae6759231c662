#include "platform/headless/fixed_text_engine.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/controls/label.h"

namespace headless {

namespace {

bool wide(char32_t c) {
  return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) ||
         (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xE000 && c <= 0xFAFF) ||
         (c >= 0xFF00 && c <= 0xFF60) || c >= 0x1F000;
}

bool joins(char32_t c) {  // takes no room of its own
  return (c >= 0x0300 && c <= 0x036F) || c == 0x200D || (c >= 0xFE00 && c <= 0xFE0F);
}

constexpr double kAscent = 0.8;  // of a line's height

struct Character {
  char32_t code;
  double advance, height;
  double up = 0;  // off the baseline
};

class Layout {
 public:
  Layout(double maxWidth, int maxLines) : maxWidth_(maxWidth), maxLines_(maxLines) {}

  void add(const Character& c) {
    if (c.code == '\n') {
      endWord();
      endLine(c.height);
      return;
    }
    if (c.code == ' ') {
      endWord();
      blank_ += c.advance;
      lineHeight_ = std::max(lineHeight_, c.height);
      return;
    }
    if (maxWidth_ > 0 && word_ > 0 && word_ + c.advance > maxWidth_) endWord();
    word_ += c.advance;
    wordHeight_ = std::max(wordHeight_, c.height);
    if (c.up != 0) {
      wordAbove_ = std::max(wordAbove_, kAscent * c.height + c.up);
      wordBelow_ = std::max(wordBelow_, (1 - kAscent) * c.height - c.up);
    }
  }

  ui::Size finish(double emptyHeight) {
    endWord();
    if (open_ || lines_ > 0) endLine(emptyHeight);
    return {std::ceil(width_), std::ceil(height_)};
  }

 private:
  void endWord() {
    if (word_ <= 0) return;
    if (maxWidth_ > 0 && line_ > 0 && line_ + blank_ + word_ > maxWidth_) endLine(wordHeight_);
    line_ += blank_ + word_;
    lineHeight_ = std::max(lineHeight_, wordHeight_);
    lineAbove_ = std::max(lineAbove_, wordAbove_);
    lineBelow_ = std::max(lineBelow_, wordBelow_);
    open_ = true;
    word_ = wordHeight_ = wordAbove_ = wordBelow_ = blank_ = 0;
  }

  void endLine(double emptyHeight) {
    ++lines_;
    if (maxLines_ <= 0 || lines_ <= maxLines_) {
      width_ = std::max(width_, line_);
      height_ += lineHeight_ > 0 ? lineHeight_ : emptyHeight;
      height_ += std::max(0.0, lineAbove_ - kAscent * lineHeight_) +
                 std::max(0.0, lineBelow_ - (1 - kAscent) * lineHeight_);
    }
    line_ = blank_ = lineHeight_ = lineAbove_ = lineBelow_ = 0;
    open_ = false;
  }

  double maxWidth_;
  int maxLines_;
  double width_ = 0, height_ = 0, line_ = 0, lineHeight_ = 0, blank_ = 0, word_ = 0,
         wordHeight_ = 0;
  double lineAbove_ = 0, lineBelow_ = 0, wordAbove_ = 0, wordBelow_ = 0;  // of raised characters
  int lines_ = 0;
  bool open_ = false;
};

char32_t next(std::string_view text, std::size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at++]);
  int more = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  char32_t c = more == 0 ? lead : lead & (0x3Fu >> more);
  for (; more > 0 && at < text.size(); --more) c = c << 6 | (text[at++] & 0x3Fu);
  return c;
}

}  // namespace

double FixedTextEngine::lineHeight(const ui::Font& font) { return font.size() * scale() * 1.2; }

ui::Size FixedTextEngine::measure(std::string_view text, const ui::Font& font, double maxWidth,
                                  int maxLines) {
  return measure(ui::AttributedText(std::string(text)), font, maxWidth, maxLines);
}

ui::Size FixedTextEngine::measure(const ui::AttributedText& text, const ui::Font& base,
                                  double maxWidth, int maxLines) {
  Layout layout(maxWidth, maxLines);
  const std::string& utf8 = text.text();
  auto run = text.runs().begin();
  std::uint32_t unit = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t c = next(utf8, at);
    while (run != text.runs().end() && run->end <= unit) ++run;
    const bool covered = run != text.runs().end() && run->start <= unit;
    const ui::Font& font = covered && run->attributes.font ? *run->attributes.font : base;
    const double kerning = (covered ? run->attributes.kerning.value_or(0) : 0) * scale();
    const double em = joins(c) ? 0 : wide(c) ? 1 : 0.5;
    layout.add({c, std::max(0.0, em * font.size() * scale() + (em > 0 ? kerning : 0)),
                lineHeight(font), (covered ? run->attributes.baseline.value_or(0) : 0) * scale()});
    unit += c >= 0x10000 ? 2 : 1;
  }
  return layout.finish(utf8.empty() ? 0 : lineHeight(base));
}

std::string FixedTextEngine::linkAt(const ui::Label& label, ui::Point at) {
  const auto* text = label.attributedText();
  if (!text) return {};
  const ui::Size box = label.bounds().size();
  const double width = label.maxLines() == 1 ? 0 : box.width;
  const auto heightUpTo = [&](std::uint32_t end) {
    return measure(text->text().substr(0, ui::utf8Offset(text->text(), end)), label.font(), width,
                   label.maxLines())
        .height;
  };
  const double top = std::max(0.0, (box.height - heightUpTo(text->length())) / 2);
  for (const auto& run : text->runs())
    if (run.attributes.link && at.y >= top + heightUpTo(run.start + 1) - lineHeight(label.font()) &&
        at.y < top + heightUpTo(run.end))
      return *run.attributes.link;
  return {};
}

}  // namespace headless
