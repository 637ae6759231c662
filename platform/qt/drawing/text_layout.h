// One text laid out: broken into lines, cut with an ellipsis where there is no room,
// aligned, ready to be measured and painted. The one engine behind measuring and
// drawing. Main thread, points; nothing here throws.
#pragma once

#include <QString>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/ui/values/geometry.h"
#include "platform/ui/values/rich_text.h"

class QPainter;

namespace qt {

class TextLayout {
 public:
  struct Style {
    ui::Font font;
    ui::Color color = ui::kBlack;
    ui::TextAlign alignment = ui::TextAlign::Left;
    double width = 0;    // 0: no limit
    double height = 0;   // 0: no limit; else whole lines only, but one at least
    int maxLines = 0;    // 0: no limit; one line isn't wrapped
    bool elide = false;  // an ellipsis where text is left out, within the width
    double zoom = 1;     // of all fonts
    double leading = 0;  // room between lines, in line heights, half above and half below
  };

  TextLayout(std::string_view text, const Style& style);
  // Text of several sizes is set with a little leading where the style has none, and half of
  // its empty lines' height is air above and below it.
  TextLayout(const ui::AttributedText& text, const Style& style);

  // The rounded-up size of the lines. Its width is that of the longest.
  ui::Size size() const;
  double naturalWidth() const { return width_; }
  // Words were left out, and an ellipsis stands for them.
  bool leavesOut() const { return leavesOut_; }
  // A word was too long for a line and goes on in the next: after any letter, or after one of
  // its signs.
  bool breaksWords() const { return breaksWords_; }
  bool breaksAtSigns() const { return breaksAtSigns_; }
  // With the first line's top left at a place; lines are aligned within style.width.
  void paint(QPainter& painter, double x, double y) const;
  // The link at a place in the text, empty where there is none.
  std::string linkAt(ui::Point p) const;

 private:
  struct Raised {  // a run off the baseline, and what it needs around it
    int start, end;
    double above, below;
  };
  struct Paragraph {
    int start, end;  // 16-bit units, without the break
    ui::TextAlign alignment;
  };
  void layOut();
  void addFormats(const ui::AttributedText& text);
  void findParagraphs(const ui::AttributedText* text);
  void breakWell(QTextLine& line);
  bool cut();
  bool isEmpty(const QTextLine& line) const;
  void spread(double air);
  void alignLines();
  ui::TextAlign alignmentAt(int position) const;

  Style style_;
  QString text_;
  QList<QTextLayout::FormatRange> formats_;
  std::vector<Raised> raised_;
  std::vector<Paragraph> paragraphs_;
  std::unique_ptr<QTextLayout> layout_;
  std::optional<QTextBoundaryFinder> breaks_;  // of the text, once asked for
  double width_ = 0, height_ = 0;
  bool overfull_ = false, breaksWords_ = false, breaksAtSigns_ = false, leavesOut_ = false;
};

// What a text of one line has to be zoomed by to fit the style's width, not below `smallest`.
template <class Text>
double zoomToFit(const Text& text, TextLayout::Style style, double smallest) {
  const double room = style.width;
  style.width = 0;
  const double natural = smallest < 1 ? TextLayout(text, style).naturalWidth() : 0;
  return natural > room ? std::max(smallest, room / natural) : 1;
}

}  // namespace qt
