#include "platform/qt/drawing/text_layout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/ui/values/branding.h"

namespace qt {

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr double kEndless = 1 << 24;
constexpr double kSlack = 1.0 / 32;  // the engine counts in 1/64 points
constexpr double kOverhang = 1;      // a last line that reaches out by less has room
constexpr double kRichLeading = 0.2;
constexpr double kIconCell = 1.25;  // the width of an icon beside a text, in sizes of its font

QFont zoomed(const QFont& font, double zoom) {
  if (zoom == 1) return font;
  QFont f = font;
  f.setPixelSize(std::max(1, static_cast<int>(std::floor(font.pixelSize() * zoom + 1.0 / 64))));
  return f;
}

bool isIcon(QStringView run) {
  return run.size() == 1 && run[0].category() == QChar::Other_PrivateUse;
}

// Icons beside a text take cells of one width, so that the texts of a list line up, and
// stand with their middle at the middle of the capitals, whatever their face makes of it.
void placeIcon(QTextCharFormat& format, QFont font, QStringView icon, const QFont& beside) {
  const QString character = icon.toString();
  const QFontMetricsF metrics(font);
  const double room = kIconCell * font.pixelSize() - metrics.horizontalAdvance(character);
  if (room > 0) font.setLetterSpacing(QFont::AbsoluteSpacing, room);
  format.setFont(font);
  const double middle = -metrics.tightBoundingRect(character).center().y();
  const double up = QFontMetricsF(beside).capHeight() / 2 - middle;
  format.setBaselineOffset(100 * up / std::max(1, font.pixelSize()));
}

QString lines(std::string_view utf8) {
  QString s = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  // Same length: positions in the text stay what they are.
  s.replace(u'\n', QChar::LineSeparator);
  return s;
}

}  // namespace

TextLayout::TextLayout(std::string_view text, const Style& style)
    : style_(style), text_(lines(text)) {
  findParagraphs(nullptr);
  layOut();
}

TextLayout::TextLayout(const ui::AttributedText& text, const Style& style)
    : style_(style), text_(lines(text.text())) {
  if (style_.leading == 0 && !text.runs().empty()) style_.leading = kRichLeading;
  addFormats(text);
  findParagraphs(&text);
  layOut();
}

void TextLayout::addFormats(const ui::AttributedText& text) {
  const double points = style_.zoom * textScale();  // a point of the text's, as drawn
  for (const auto& run : text.runs()) {
    const auto& a = run.attributes;
    QTextCharFormat format;
    QFont font = zoomed(toQFont(a.font.value_or(style_.font)), style_.zoom);
    if (a.kerning) font.setLetterSpacing(QFont::AbsoluteSpacing, *a.kerning * points);
    if (a.font || a.kerning) format.setFont(font);
    if (a.color || a.link) format.setForeground(toQColor(a.color.value_or(ui::looks().accent)));
    if (a.background && !a.background->transparent()) format.setBackground(toQColor(*a.background));
    if (a.underline.value_or(0) > 0 || a.link)
      format.setUnderlineStyle(QTextCharFormat::SingleUnderline);
    if (a.strikethrough.value_or(0) > 0) format.setFontStrikeOut(true);
    if (a.baseline && *a.baseline != 0) {
      const double up = *a.baseline * points;
      format.setBaselineOffset(100 * up / std::max(1, font.pixelSize()));
      const QFontMetricsF metrics(font);
      raised_.push_back({static_cast<int>(run.start), static_cast<int>(run.end),
                         metrics.ascent() + up, metrics.descent() - up});
    }
    const auto run16 = QStringView(text_).mid(run.start, run.end - run.start);
    if (a.font && !a.baseline && isIcon(run16) && run16.size() < text_.size())
      placeIcon(format, font, run16, zoomed(toQFont(style_.font), style_.zoom));
    if (a.link) format.setAnchorHref(QString::fromStdString(*a.link));
    formats_.push_back(
        {static_cast<int>(run.start), static_cast<int>(run.end - run.start), format});
  }
}

void TextLayout::findParagraphs(const ui::AttributedText* text) {
  qsizetype start = 0;
  while (start <= text_.size()) {
    qsizetype end = text_.indexOf(QChar::LineSeparator, start);
    if (end < 0) end = text_.size();
    Paragraph p{static_cast<int>(start), static_cast<int>(end), style_.alignment};
    if (text)
      for (const auto& run : text->runs())
        if (run.attributes.alignment && static_cast<int>(run.start) <= p.end &&
            static_cast<int>(run.end) > p.start)
          p.alignment = *run.attributes.alignment;
    paragraphs_.push_back(p);
    start = end + 1;
  }
}

ui::TextAlign TextLayout::alignmentAt(int position) const {
  for (const auto& p : paragraphs_)
    if (position <= p.end) return p.alignment;
  return style_.alignment;
}

// How a text is measured: by laying it out as it will be drawn, and nothing is kept. Three
// quarters of the time are the shaping of its glyphs, which any engine has to do. The lines
// break where words do, but for a word that is wider than its line (breakWell()); they end
// early where the lines or the height run out, and what is left out then gives way to an
// ellipsis (cut()), which means laying out once more. A size is rounded up to whole points,
// so that a box of that size has the room that the lines took: the label that is drawn in
// it later, at the same width, breaks them in the same places. Widths count in sixty-fourths
// of a point; kSlack keeps what was measured to fit from missing by one of them.
void TextLayout::layOut() {
  const bool wraps = style_.width > 0 && style_.maxLines != 1;
  layout_ = std::make_unique<QTextLayout>(text_, zoomed(toQFont(style_.font), style_.zoom));
  QTextOption option;
  option.setWrapMode(wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::ManualWrap);
  const bool justified = wraps && std::any_of(paragraphs_.begin(), paragraphs_.end(), [](auto& p) {
                           return p.alignment == ui::TextAlign::Justified;
                         });
  option.setAlignment(justified ? Qt::AlignJustify : Qt::AlignLeft);
  layout_->setTextOption(option);
  if (!formats_.isEmpty()) layout_->setFormats(formats_);

  width_ = height_ = 0;
  overfull_ = breaksWords_ = breaksAtSigns_ = false;
  double air = 0;  // above and below the text, within its height
  layout_->beginLayout();
  for (int i = 0;; ++i) {
    QTextLine line = layout_->createLine();
    if (!line.isValid()) break;
    line.setLineWidth(wraps ? style_.width + kSlack : kEndless);
    // The toolkit counts a run that is off the baseline as if it stood on it.
    double above = 0, below = 0;
    for (const auto& r : raised_) {
      if (r.end <= line.textStart() || r.start >= line.textStart() + line.textLength()) continue;
      above = std::max(above, r.above - line.ascent());
      below = std::max(below, r.below - line.descent());
    }
    if (style_.height > 0 && i > 0 &&
        above + below + height_ + line.height() * (1 + style_.leading / 2) >
            style_.height + kOverhang)
      style_.maxLines = i;
    if (style_.maxLines > 0 && i == style_.maxLines) {
      overfull_ = true;
      line.setNumColumns(0);
      break;
    }
    if (wraps) breakWell(line);
    line.setPosition({0, height_ + above + line.height() * style_.leading / 2});
    const double high = above + below + line.height() * (1 + style_.leading);
    // Half of an empty line parts what is before it from what follows.
    const bool empty = style_.leading > 0 && isEmpty(line);
    height_ += empty ? high / 2 : high;
    air += empty ? high / 2 : 0;
    width_ = std::max<double>(width_, line.naturalTextWidth());
  }
  layout_->endLayout();
  if (style_.height > 0) air = std::clamp(style_.height - height_, 0.0, air);
  if (air > 0 && !overfull_) spread(air);
  if (!wraps && style_.width > 0 && width_ > style_.width + kSlack) overfull_ = true;
  if (overfull_ && style_.elide && style_.width > 0 && cut()) return;
  if (style_.width > 0) alignLines();
}

// A word that is wider than the line, as an address of the web or of mail may be, goes on
// after one of its signs rather than after any letter.
void TextLayout::breakWell(QTextLine& line) {
  const int start = line.textStart(), end = start + line.textLength();
  if (end >= text_.size() || text_[end - 1].isSpace() || text_[end].isSpace()) return;
  // Finding them takes the whole text: once for all lines of a text without blanks.
  if (!breaks_) breaks_.emplace(QTextBoundaryFinder::Line, text_);
  breaks_->setPosition(end);
  if (breaks_->isAtBoundary()) return;
  for (int i = end; i > start + 1; --i) {
    if (!QStringLiteral("@./_-?&=").contains(text_[i - 1])) continue;
    line.setNumColumns(i - start, style_.width + kSlack);
    breaksAtSigns_ = true;
    return;
  }
  breaksWords_ = true;
}

bool TextLayout::isEmpty(const QTextLine& line) const {
  const int start = line.textStart();
  return start == text_.size() || text_[start] == QChar::LineSeparator;
}

// The rest of the empty lines stands above and below the text, so that one row of a list
// is told from the next by more than a line.
void TextLayout::spread(double air) {
  for (int i = 0; i < layout_->lineCount(); ++i) {
    QTextLine line = layout_->lineAt(i);
    line.setPosition({line.x(), line.y() + air / 2});
  }
  height_ += air;
}

// Replaces what there is no room for by an ellipsis and lays out again.
bool TextLayout::cut() {
  const int shown = layout_->lineCount() -
                    (style_.maxLines > 0 && layout_->lineCount() > style_.maxLines ? 1 : 0);
  int keep = -1;
  for (int i = 0; i < shown && keep < 0; ++i) {
    const QTextLine line = layout_->lineAt(i);
    const bool last = i == shown - 1;
    if (!last && line.naturalTextWidth() <= style_.width + kSlack) continue;
    const QFontMetricsF metrics(layout_->font());
    const double room = style_.width - metrics.horizontalAdvance(kEllipsis);
    keep = line.textStart() + line.textLength();
    const double reach = line.cursorToX(keep);
    if (reach > room) keep = line.xToCursor(room, QTextLine::CursorBetweenCharacters);
    if (keep > line.textStart() && line.cursorToX(keep) > room + kSlack)
      keep = layout_->previousCursorPosition(keep);
    keep = std::max(keep, line.textStart());
  }
  if (keep < 0) return false;
  while (keep > 0 && text_[keep - 1].isSpace()) --keep;
  text_ = text_.left(keep) + kEllipsis;
  breaks_.reset();
  QList<QTextLayout::FormatRange> kept;
  for (auto f : std::as_const(formats_)) {
    if (f.start >= keep) continue;
    if (f.start + f.length >= keep) f.length = keep + 1 - f.start;
    kept.push_back(f);
  }
  formats_ = kept;
  std::erase_if(paragraphs_, [&](const auto& p) { return p.start > keep; });
  if (!paragraphs_.empty()) paragraphs_.back().end = keep + 1;
  style_.elide = false;
  leavesOut_ = true;
  layOut();
  return true;
}

void TextLayout::alignLines() {
  const int count =
      style_.maxLines > 0 ? std::min(layout_->lineCount(), style_.maxLines) : layout_->lineCount();
  for (int i = 0; i < count; ++i) {
    QTextLine line = layout_->lineAt(i);
    const auto alignment = alignmentAt(line.textStart());
    const double room = style_.width - line.naturalTextWidth();
    double x = 0;
    if (alignment == ui::TextAlign::Center) x = room / 2;
    if (alignment == ui::TextAlign::Right) x = room;
    line.setPosition({std::max(0.0, x), line.y()});
  }
}

ui::Size TextLayout::size() const {
  if (text_.isEmpty()) return {};
  return {std::ceil(width_ - kSlack), std::ceil(height_ - kSlack)};
}

void TextLayout::paint(QPainter& painter, double x, double y) const {
  painter.setPen(toQColor(style_.color));
  const int count =
      style_.maxLines > 0 ? std::min(layout_->lineCount(), style_.maxLines) : layout_->lineCount();
  // draw() paints all lines; those beyond the limit are none of the text shown.
  if (count == layout_->lineCount()) {
    layout_->draw(&painter, {x, y});
    return;
  }
  for (int i = 0; i < count; ++i) layout_->lineAt(i).draw(&painter, {x, y});
}

std::string TextLayout::linkAt(ui::Point p) const {
  for (int i = 0; i < layout_->lineCount(); ++i) {
    const QTextLine line = layout_->lineAt(i);
    if (!line.naturalTextRect().contains(p.x, p.y)) continue;
    const int at = line.xToCursor(p.x, QTextLine::CursorOnCharacter);
    for (const auto& f : formats_)
      if (f.start <= at && at < f.start + f.length && f.format.hasProperty(QTextFormat::AnchorHref))
        return f.format.anchorHref().toStdString();
  }
  return {};
}

}  // namespace qt
