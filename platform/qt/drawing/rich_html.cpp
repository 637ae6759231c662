#include "platform/qt/drawing/rich_html.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/ui/values/branding.h"

namespace qt {

namespace {

QString styleOf(const ui::TextAttributes& a, const ui::Font& base, ui::Color color) {
  const QFont font = toQFont(a.font.value_or(base));
  QString css = QStringLiteral("font-family:'%1';font-size:%2px;color:%3;")
                    .arg(font.family())
                    .arg(font.pixelSize())
                    .arg(toQColor(a.color.value_or(a.link ? ui::looks().accent : color)).name());
  if (font.bold()) css += QLatin1String("font-weight:bold;");
  if (font.italic()) css += QLatin1String("font-style:italic;");
  if (a.background && !a.background->transparent())
    css += QStringLiteral("background-color:%1;").arg(toQColor(*a.background).name());
  QStringList lines;
  if (a.underline.value_or(0) > 0 || a.link) lines << QStringLiteral("underline");
  if (a.strikethrough.value_or(0) > 0) lines << QStringLiteral("line-through");
  if (!lines.isEmpty()) css += QStringLiteral("text-decoration:%1;").arg(lines.join(u' '));
  if (a.kerning) css += QStringLiteral("letter-spacing:%1px;").arg(*a.kerning * textScale());
  return css;
}

}  // namespace

QString toHtml(const ui::AttributedText& text, const ui::Font& base, ui::Color color) {
  const QString all = QString::fromStdString(text.text());
  QString html;
  const auto add = [&](qsizetype from, qsizetype to, const ui::TextAttributes& a) {
    if (from >= to) return;
    QString part = all.mid(from, to - from).toHtmlEscaped();
    part.replace(u'\n', QLatin1String("<br/>"));
    const QString span = QStringLiteral("<span style=\"white-space:pre-wrap;%1\">%2</span>")
                             .arg(styleOf(a, base, color), part);
    html += a.link ? QStringLiteral("<a href=\"%1\">%2</a>")
                         .arg(QString::fromStdString(*a.link).toHtmlEscaped(), span)
                   : span;
  };
  qsizetype at = 0;
  for (const auto& run : text.runs()) {
    add(at, std::min<qsizetype>(run.start, all.size()), {});
    add(run.start, std::min<qsizetype>(run.end, all.size()), run.attributes);
    at = run.end;
  }
  add(at, all.size(), {});
  return html;
}

}  // namespace qt
