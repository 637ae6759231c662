#include "platform/qt/drawing/box_art.h"

#include <QCache>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/canvas.h"
#include "platform/qt/drawing/colors.h"

namespace qt {

namespace {

struct ArtKey {
  quint64 colors;
  double radius, width, scale, height;
  int kind;
  bool operator==(const ArtKey&) const = default;
};

size_t qHash(const ArtKey& k, size_t seed = 0) {
  return qHashMulti(seed, k.colors, k.radius, k.width, k.scale, k.height, k.kind);
}

enum Kind { Box, Shadow };

QCache<ArtKey, Patch>& kept() {
  static QCache<ArtKey, Patch> cache(4 << 20);  // bytes of pixels
  return cache;
}

template <class Make>
Patch cached(const ArtKey& key, Make make) {
  if (const Patch* found = kept().object(key)) return *found;
  auto* made = new Patch(make());
  const Patch result = *made;
  kept().insert(key, made, made->image.sizeInBytes());
  return result;
}

QImage paintBox(const BoxLook& look, double width, double height, double scale) {
  QImage image = canvas({width, height}, scale);
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(Qt::NoPen);
  const double radius = std::min({look.border.radius, width / 2, height / 2});
  const QRectF outer(0, 0, width, height);
  const double b = look.border.width;
  if (b > 0 && !look.border.color.transparent()) {
    // The border is a ring of its own, so that neither colour shines through the other.
    const QRectF inner = outer.adjusted(b, b, -b, -b);
    const double innerRadius = std::max(0.0, radius - b);
    QPainterPath ring;
    ring.addRoundedRect(outer, radius, radius);
    if (!look.fill.transparent()) {
      p.setBrush(toQColor(look.fill));
      p.drawRoundedRect(outer.adjusted(b / 2, b / 2, -b / 2, -b / 2), std::max(0.0, radius - b / 2),
                        std::max(0.0, radius - b / 2));
    }
    if (!inner.isEmpty()) ring.addRoundedRect(inner, innerRadius, innerRadius);
    ring.setFillRule(Qt::OddEvenFill);
    p.fillPath(ring, toQColor(look.border.color));
    return image;
  }
  p.setBrush(toQColor(look.fill));
  p.drawRoundedRect(outer, radius, radius);
  return image;
}

// Three passes of a box blur along the rows, then along the columns: close to a Gaussian.
void blur(std::vector<float>& a, int side, int radius) {
  if (radius < 1) return;
  std::vector<float> line(static_cast<std::size_t>(side));
  const auto pass = [&](int base, int step) {
    float sum = 0;
    const auto at = [&](int i) {
      return i < 0 || i >= side ? 0.0F : a[static_cast<std::size_t>(base + i * step)];
    };
    for (int i = -radius; i <= radius; ++i) sum += at(i);
    for (int i = 0; i < side; ++i) {
      line[static_cast<std::size_t>(i)] = sum / static_cast<float>(2 * radius + 1);
      sum += at(i + radius + 1) - at(i - radius);
    }
    for (int i = 0; i < side; ++i)
      a[static_cast<std::size_t>(base + i * step)] = line[static_cast<std::size_t>(i)];
  };
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < side; ++i) pass(i * side, 1);
    for (int i = 0; i < side; ++i) pass(i, side);
  }
}

double shadowCorner(const BoxLook& look) {
  return (look.shadow.rectangular ? 0 : look.border.radius) + shadowReach(look.shadow);
}

QImage paintShadow(const BoxLook& look, double side, double scale) {
  QImage shape = canvas({side, side}, scale);
  {
    QPainter p(&shape);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::black);
    const double reach = shadowReach(look.shadow);
    const double radius = look.shadow.rectangular ? 0 : look.border.radius;
    p.drawRoundedRect(QRectF(reach, reach, side - 2 * reach, side - 2 * reach), radius, radius);
  }
  const int pixels = shape.width();
  std::vector<float> alpha(static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels));
  for (int y = 0; y < pixels; ++y)
    for (int x = 0; x < pixels; ++x)
      alpha[static_cast<std::size_t>(y * pixels + x)] =
          static_cast<float>(qAlpha(shape.pixel(x, y)));
  blur(alpha, pixels, static_cast<int>(std::lround(look.shadow.blur * scale / 2)));
  const auto c = look.shadow.color;
  const double strength = look.shadow.opacity * c.alpha() / 255.0;
  for (int y = 0; y < pixels; ++y)
    for (int x = 0; x < pixels; ++x)
      shape.setPixel(
          x, y,
          qPremultiply(
              qRgba(c.red(), c.green(), c.blue(),
                    static_cast<int>(alpha[static_cast<std::size_t>(y * pixels + x)] * strength))));
  return shape;
}

quint64 colorsOf(ui::Color a, ui::Color b) { return static_cast<quint64>(a.argb) << 32 | b.argb; }

}  // namespace

Patch boxPatch(const BoxLook& look, ui::Size size, double scale) {
  const auto& b = look.border;
  const double margin = std::ceil(std::max(b.radius, b.width)) + 1;
  const double side = 2 * margin + 1;
  const bool small = size.width < side || size.height < side;
  const double width = small ? size.width : side, height = small ? size.height : side;
  const ArtKey key{
      colorsOf(look.fill, b.color), b.radius, width * 4096 + b.width, scale, height, Box};
  return cached(key, [&] {
    return Patch{paintBox(look, width, height, scale), small ? 0 : margin};
  });
}

QImage boxPicture(const BoxLook& look, ui::Size size, double scale) {
  return paintBox(look, size.width, size.height, scale);
}

double shadowReach(const ui::Shadow& shadow) { return std::ceil(shadow.blur * 1.5) + 1; }

Patch shadowPatch(const BoxLook& look, double scale) {
  const double margin = std::ceil(shadowCorner(look)) + shadowReach(look.shadow);
  const double side = 2 * margin + 1;
  const ui::Color c = look.shadow.color;
  const ArtKey key{colorsOf(c, ui::Color(static_cast<std::uint32_t>(look.shadow.opacity * 1000))),
                   look.shadow.rectangular ? 0 : look.border.radius,
                   look.shadow.blur,
                   scale,
                   side,
                   Shadow};
  return cached(key, [&] { return Patch{paintShadow(look, side, scale), margin}; });
}

}  // namespace qt
