#include "townhost/pictures/scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "townhost/pictures/sheet.h"

namespace town {

namespace {

// Everything is drawn on a canvas of this size, and scaled.
constexpr double kWide = 640, kHigh = 360, kGround = 250;

constexpr Paint mixed(Paint a, Paint b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

constexpr Paint white = colored(0xFFFFFF), dark = colored(0x263238), brick = colored(0xB4603F),
                roof = colored(0x9C4A32), wall = colored(0xEBD9B8), green = colored(0x5E8F4E),
                deepGreen = colored(0x3E6B3A), trunk = colored(0x6B4A33), stone = colored(0xC9BFAF),
                water = colored(0x5C93AE), sand = colored(0xD9C79E), yellow = colored(0xF2B632),
                red = colored(0xC8432F), blue = colored(0x1F5F7A), grey = colored(0x8A949A);

class Painter {
 public:
  Painter(Sheet& sheet, const Scene& scene)
      : sheet_(sheet), pen_(sheet.pen()), scene_(scene), random_(scene.seed + 17) {}

  void paint() {
    sky();
    hills();
    roofs();
    ground();
    subject();
  }

 private:
  double chance(double from, double to) {
    return from + (to - from) * static_cast<double>(random_() % 10000) / 10000;
  }
  // In the evening everything takes on some of the night.
  Paint lit(Paint c) const { return scene_.evening ? mixed(c, colored(0x1B2A41), 0.45) : c; }

  void use(Paint c) { town::use(pen_, c); }
  void box(double x, double y, double w, double h, Paint c) { sheet_.box(x, y, w, h, c); }
  void disc(double x, double y, double r, Paint c) { sheet_.disc(x, y, r, c); }
  void oval(double x, double y, double rx, double ry, Paint c) {
    cairo_save(pen_);
    cairo_translate(pen_, x, y);
    cairo_scale(pen_, rx, ry);
    disc(0, 0, 1, c);
    cairo_restore(pen_);
  }
  void triangle(double x1, double y1, double x2, double y2, double x3, double y3, Paint c) {
    use(c);
    cairo_move_to(pen_, x1, y1);
    cairo_line_to(pen_, x2, y2);
    cairo_line_to(pen_, x3, y3);
    cairo_close_path(pen_);
    cairo_fill(pen_);
  }
  void stroke(double x1, double y1, double x2, double y2, double width, Paint c) {
    use(c);
    cairo_set_line_width(pen_, width);
    cairo_set_line_cap(pen_, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(pen_, x1, y1);
    cairo_line_to(pen_, x2, y2);
    cairo_stroke(pen_);
  }

  bool winter() const { return scene_.subject == Scene::Subject::Snow; }

  void sky() {
    const Paint top = scene_.evening ? colored(0x24345A)
                      : winter()     ? colored(0xAFC3D1)
                                     : colored(0x7FB6D6);
    const Paint low = scene_.evening ? colored(0xE08A5B)
                      : winter()     ? colored(0xE6EDF1)
                                     : colored(0xE3F0F4);
    cairo_pattern_t* shade = cairo_pattern_create_linear(0, 0, 0, kGround);
    cairo_pattern_add_color_stop_rgb(shade, 0, top.r, top.g, top.b);
    cairo_pattern_add_color_stop_rgb(shade, 1, low.r, low.g, low.b);
    cairo_set_source(pen_, shade);
    cairo_paint(pen_);
    cairo_pattern_destroy(shade);
    const double sun = chance(80, 560);
    disc(sun, scene_.evening ? 190 : 70, 26,
         scene_.evening ? colored(0xF7C177) : colored(0xFFF3C9));
    if (!scene_.evening)
      for (int i = 0; i < 3; ++i) cloud(chance(20, 600), chance(30, 110), chance(0.6, 1.2));
  }

  void cloud(double x, double y, double s) {
    for (const auto& [dx, dy, r] :
         {std::array{0.0, 0.0, 16.0}, {18.0, -8.0, 20.0}, {40.0, 0.0, 15.0}})
      disc(x + dx * s, y + dy * s, r * s, mixed(white, colored(0xDCE8EE), 0.3));
    box(x, y, 40 * s, 15 * s, mixed(white, colored(0xDCE8EE), 0.3));
  }

  void hills() {
    for (int layer = 0; layer < 2; ++layer) {
      const Paint near = winter() ? colored(0xD3DDE2) : colored(0x86AE83);
      use(lit(mixed(colored(0xA9C4CC), near, 0.35 + 0.5 * layer)));
      const double base = 175.0 + 25 * layer, shift = chance(0, 6);
      cairo_move_to(pen_, 0, kHigh);
      for (int x = 0; x <= static_cast<int>(kWide); x += 8)
        cairo_line_to(pen_, x,
                      base + 18 * std::sin(x / 95.0 + shift) + 9 * std::sin(x / 41.0 - shift));
      cairo_line_to(pen_, kWide, kHigh);
      cairo_fill(pen_);
    }
  }

  void house(double x, double w, double h) {
    const Paint tint = mixed(wall, colored(0xD98E62), chance(0, 0.7));
    box(x, kGround - h, w, h, lit(tint));
    triangle(x - 4, kGround - h, x + w + 4, kGround - h, x + w / 2, kGround - h - w * 0.32,
             lit(winter() ? colored(0xF3F6F8) : mixed(roof, brick, chance(0, 1))));
    for (double wy = kGround - h + 10; wy < kGround - 18; wy += 22)
      for (double wx = x + 8; wx < x + w - 12; wx += 18)
        box(wx, wy, 8, 12,
            scene_.evening && random_() % 3 ? colored(0xFFD98A) : lit(mixed(dark, tint, 0.35)));
  }

  void roofs() {
    for (double x = -20; x < kWide;) {
      const double w = chance(44, 82);
      house(x, w, chance(48, 92));
      x += w + chance(-2, 6);
    }
    // The bell tower of the cathedral.
    const double x = chance(120, 480);
    box(x, kGround - 168, 30, 168, lit(mixed(brick, stone, 0.35)));
    box(x - 3, kGround - 172, 36, 7, lit(stone));
    box(x + 9, kGround - 158, 12, 24, lit(dark));
    triangle(x - 3, kGround - 172, x + 33, kGround - 172, x + 15, kGround - 212, lit(roof));
  }

  void ground() {
    using enum Scene::Subject;
    Paint c = stone;
    if (scene_.subject == Park || scene_.subject == Pitch || scene_.subject == Bicycle) c = green;
    if (scene_.subject == River) c = mixed(green, sand, 0.3);
    if (scene_.subject == RoadWorks || scene_.subject == Bins) c = grey;
    if (winter()) c = colored(0xEEF3F6);
    box(0, kGround, kWide, kHigh - kGround, lit(c));
    box(0, kGround, kWide, 5, lit(mixed(c, dark, 0.18)));
  }

  void tree(double x, double y, double s) {
    box(x - 4 * s, y - 34 * s, 8 * s, 34 * s, lit(trunk));
    const Paint leaf = winter() ? colored(0xDDE7EC) : mixed(green, deepGreen, chance(0, 1));
    for (const auto& [dx, dy, r] :
         {std::array{-14.0, -44.0, 18.0}, {14.0, -44.0, 18.0}, {0.0, -62.0, 22.0}})
      disc(x + dx * s, y + dy * s, r * s, lit(leaf));
  }

  void person(double x, double y, double s, Paint coat) {
    box(x - 5 * s, y - 30 * s, 10 * s, 22 * s, lit(coat));
    box(x - 5 * s, y - 9 * s, 4 * s, 9 * s, lit(dark));
    box(x + 1 * s, y - 9 * s, 4 * s, 9 * s, lit(dark));
    disc(x, y - 35 * s, 5 * s, lit(colored(0xE0B48F)));
  }

  void people(int count, double y) {
    static constexpr Paint coats[] = {red, blue, yellow, deepGreen, brick, dark};
    for (int i = 0; i < count; ++i)
      person(chance(30, 610), y + chance(-8, 20), 1, coats[random_() % 6]);
  }

  void subject() {
    using enum Scene::Subject;
    switch (scene_.subject) {
      case Square:
        return square();
      case Market:
        return market();
      case Park:
        return park();
      case River:
        return river();
      case RoadWorks:
        return roadWorks();
      case School:
        return school();
      case Books:
        return books();
      case Stage:
        return stage();
      case Bins:
        return bins();
      case Snow:
        return snow();
      case Bicycle:
        return bicycle();
      case Pitch:
        return pitch();
    }
  }

  void square() {
    oval(320, 316, 76, 26, lit(mixed(stone, dark, 0.25)));
    oval(320, 312, 68, 20, lit(water));
    box(315, 262, 10, 52, lit(mixed(stone, dark, 0.1)));
    oval(320, 264, 26, 8, lit(mixed(stone, dark, 0.2)));
    people(7, 300);
  }

  void market() {
    for (int i = 0; i < 5; ++i) stall(20 + i * 126.0, i % 2 ? red : i == 2 ? yellow : blue);
    people(8, 330);
  }

  void park() {
    for (int i = 0; i < 8; ++i) tree(chance(20, 620), chance(275, 340), chance(0.9, 1.4));
    stroke(250, 318, 330, 318, 6, lit(trunk));
    stroke(262, 318, 262, 336, 5, lit(trunk));
    stroke(318, 318, 318, 336, 5, lit(trunk));
    people(4, 325);
  }

  void river() {
    use(lit(water));
    cairo_move_to(pen_, 0, 300);
    cairo_curve_to(pen_, 200, 262, 420, 350, kWide, 285);
    cairo_line_to(pen_, kWide, kHigh);
    cairo_line_to(pen_, 0, kHigh);
    cairo_fill(pen_);
    for (int i = 0; i < 9; ++i) {
      const double x = chance(20, 560), y = chance(318, 352);
      stroke(x, y, x + 40, y, 2, lit(mixed(water, white, 0.4)));
    }
    for (int i = 0; i < 5; ++i) tree(chance(20, 620), chance(262, 285), chance(0.7, 1));
  }

  void roadWorks() {
    box(0, 300, kWide, 34, lit(dark));
    for (int i = 0; i < 8; ++i) box(10 + i * 84.0, 315, 44, 4, lit(white));
    for (int i = 0; i < 6; ++i) cone(70 + i * 98.0, 306);
    box(250, 236, 150, 40, yellow);
    for (int i = 0; i < 5; ++i) stroke(262 + i * 30.0, 272, 276 + i * 30.0, 240, 9, dark);
    stroke(262, 276, 262, 300, 5, dark);
    stroke(388, 276, 388, 300, 5, dark);
  }

  void school() {
    box(170, 160, 300, 130, lit(colored(0xE7C98B)));
    box(160, 150, 320, 14, lit(roof));
    for (int row = 0; row < 2; ++row)
      for (int i = 0; i < 6; ++i)
        box(188 + i * 46.0, 178 + row * 52.0, 26, 32,
            scene_.evening ? colored(0xFFD98A) : lit(mixed(water, white, 0.3)));
    box(302, 240, 36, 50, lit(brick));
    stroke(320, 150, 320, 92, 4, lit(dark));
    box(322, 94, 14, 24, colored(0x2E8B57));
    box(336, 94, 14, 24, white);
    box(350, 94, 14, 24, red);
    people(9, 320);
  }

  void books() {
    box(60, 150, 520, 180, lit(trunk));
    for (int shelf = 0; shelf < 3; ++shelf) {
      box(72, 160 + shelf * 56.0, 496, 46, lit(mixed(trunk, dark, 0.5)));
      for (double x = 76; x < 556;) {
        const double w = chance(8, 20), h = chance(28, 44);
        static constexpr Paint spines[] = {red, blue, yellow, deepGreen, wall, brick, water};
        box(x, 206 + shelf * 56.0 - h, w, h, lit(spines[random_() % 7]));
        x += w + 2;
      }
    }
  }

  void stage() {
    box(120, 268, 400, 40, lit(trunk));
    stroke(130, 268, 130, 130, 7, lit(dark));
    stroke(510, 268, 510, 130, 7, lit(dark));
    stroke(126, 130, 514, 130, 8, lit(dark));
    for (int i = 0; i < 5; ++i) {
      const double x = 170 + i * 75.0;
      cairo_set_source_rgba(pen_, 1, 0.92, 0.6, 0.28);
      cairo_move_to(pen_, x, 138);
      cairo_line_to(pen_, x - 38, 268);
      cairo_line_to(pen_, x + 38, 268);
      cairo_fill(pen_);
      disc(x, 138, 7, yellow);
    }
    for (int i = 0; i < 4; ++i) person(220 + i * 66.0, 268, 1.3, i % 2 ? red : dark);
    people(14, 345);
  }

  void bins() {
    static constexpr Paint lids[] = {colored(0xCE924F), colored(0xF9A51B), colored(0x253F8E),
                                     colored(0x3E8E4E)};
    for (int i = 0; i < 4; ++i) {
      const double x = 110 + i * 116.0;
      box(x, 232, 74, 92, mixed(lids[i], dark, 0.15));
      box(x - 6, 222, 86, 14, lids[i]);
      disc(x + 14, 328, 8, dark);
      disc(x + 60, 328, 8, dark);
      box(x + 22, 258, 30, 30, mixed(lids[i], white, 0.7));
    }
  }

  void snow() {
    for (int i = 0; i < 6; ++i) tree(chance(20, 620), chance(270, 330), chance(0.9, 1.3));
    for (int i = 0; i < 150; ++i) disc(chance(0, kWide), chance(0, kHigh), chance(1.2, 3), white);
    people(3, 325);
  }

  void bicycle() {
    use(lit(sand));
    cairo_move_to(pen_, 0, 345);
    cairo_curve_to(pen_, 200, 300, 400, 350, kWide, 300);
    cairo_set_line_width(pen_, 34);
    cairo_stroke(pen_);
    for (int i = 0; i < 6; ++i) tree(chance(20, 620), chance(262, 285), chance(0.7, 1.1));
    bicycle(250, 306);
    bicycle(430, 310);
  }

  void pitch() {
    box(60, 272, 520, 76, lit(mixed(green, colored(0x79B35A), 0.7)));
    use(white);
    cairo_set_line_width(pen_, 3);
    cairo_rectangle(pen_, 70, 278, 500, 64);
    cairo_move_to(pen_, 320, 278);
    cairo_line_to(pen_, 320, 342);
    cairo_stroke(pen_);
    cairo_save(pen_);
    cairo_translate(pen_, 320, 310);
    cairo_scale(pen_, 1, 0.45);
    cairo_arc(pen_, 0, 0, 44, 0, 2 * std::numbers::pi);
    cairo_restore(pen_);
    cairo_stroke(pen_);
    for (int i = 0; i < 8; ++i) person(chance(90, 550), chance(296, 336), 0.9, i % 2 ? red : blue);
    disc(chance(200, 440), 326, 5, white);
  }

  void stall(double x, Paint c) {
    box(x, 292, 96, 34, lit(mixed(trunk, wall, 0.4)));
    for (int i = 0; i < 8; ++i)
      disc(x + 8 + i * 11.5, 290, 6, lit(i % 3 == 0 ? red : i % 3 == 1 ? yellow : green));
    stroke(x + 4, 292, x + 4, 244, 4, lit(trunk));
    stroke(x + 92, 292, x + 92, 244, 4, lit(trunk));
    for (int i = 0; i < 6; ++i) box(x - 6 + i * 18.0, 232, 18, 22, lit(i % 2 ? white : c));
  }

  void cone(double x, double y) {
    triangle(x - 13, y, x + 13, y, x, y - 36, colored(0xE8702A));
    box(x - 8, y - 18, 16, 6, white);
    box(x - 17, y - 2, 34, 5, colored(0xE8702A));
  }

  void bicycle(double x, double y) {
    use(lit(dark));
    cairo_set_line_width(pen_, 4);
    for (const double dx : {0.0, 62.0}) {
      cairo_new_sub_path(pen_);
      cairo_arc(pen_, x + dx, y, 19, 0, 2 * std::numbers::pi);
      cairo_stroke(pen_);
    }
    const Paint frame = random_() % 2 ? red : blue;
    stroke(x, y, x + 26, y, 4, frame);
    stroke(x + 26, y, x + 52, y - 28, 4, frame);
    stroke(x, y, x + 18, y - 26, 4, frame);
    stroke(x + 18, y - 26, x + 52, y - 28, 4, frame);
    stroke(x + 62, y, x + 50, y - 36, 4, lit(dark));
    stroke(x + 50, y - 36, x + 40, y - 36, 4, lit(dark));
    stroke(x + 12, y - 32, x + 24, y - 32, 5, lit(dark));
    person(x + 28, y - 14, 1.1, random_() % 2 ? yellow : deepGreen);
  }

  Sheet& sheet_;
  cairo_t* pen_;
  const Scene& scene_;
  std::minstd_rand random_;
};

}  // namespace

std::string paint(const Scene& scene, int width, int height) {
  width = std::clamp(width, 16, 2000);
  height = std::clamp(height, 16, 2000);
  Sheet sheet(width, height);
  // Fills the picture, and loses at the sides or above what does not fit.
  const double scale = std::max(width / kWide, height / kHigh);
  cairo_translate(sheet.pen(), (width - kWide * scale) / 2, height - kHigh * scale);
  cairo_scale(sheet.pen(), scale, scale);
  Painter(sheet, scene).paint();
  return sheet.png();
}

}  // namespace town
