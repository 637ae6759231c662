#include "platform/qt/drawing/fonts.h"

#include <QFontDatabase>
#include <QHash>
#include <algorithm>
#include <array>
#include <cmath>

namespace qt {

namespace {

struct FontKey {
  const void* family;
  double size;
  ui::Font::Face face;
  bool operator==(const FontKey&) const = default;
};

size_t qHash(const FontKey& key, size_t seed = 0) {
  return qHashMulti(seed, reinterpret_cast<quintptr>(key.family), key.size,
                    static_cast<int>(key.face));
}

double g_textScale = 1;

QHash<FontKey, QFont>& known() {
  static QHash<FontKey, QFont> fonts;
  return fonts;
}

// The first that is installed; the last is the platform's own choice.
const QString& systemFamily() {
  static const QString family = [] {
    for (const char* name : {"Inter", "Open Sans", "Noto Sans", "DejaVu Sans"})
      if (QFontDatabase::hasFamily(QLatin1String(name))) return QString::fromLatin1(name);
    return QStringLiteral("sans-serif");
  }();
  return family;
}

QFont made(const ui::Font& font) {
  const auto family = font.family();
  QFont q(family.empty() ? systemFamily()
                         : QString::fromUtf8(family.data(), static_cast<qsizetype>(family.size())));
  q.setPixelSize(std::max(1, static_cast<int>(std::lround(font.size() * g_textScale))));
  q.setBold(font.face() == ui::Font::Face::SystemBold);
  q.setItalic(font.face() == ui::Font::Face::SystemItalic);
  q.setHintingPreference(QFont::PreferNoHinting);
  q.setStyleStrategy(QFont::PreferAntialias);
  return q;
}

}  // namespace

void setTextScale(double scale) {
  g_textScale = scale;
  known().clear();
}

double textScale() { return g_textScale; }
double unenlarged() { return 1 / std::max(1.0, g_textScale); }

const QFont& toQFont(const ui::Font& font) {
  const FontKey key{font.family().data(), font.size(), font.face()};
  auto it = known().find(key);
  if (it == known().end()) it = known().insert(key, made(font));
  return *it;
}

}  // namespace qt
