#include "townhost/drawn/gallery.h"

#include <cmath>
#include <numbers>

#include "townhost/drawn/sheet.h"

namespace town {

namespace {

constexpr Paint white = paint(0xFFFFFF), ink = paint(0x2B2A27);
constexpr int coverWidth = 820, coverHeight = 462;

Paint darker(Paint c, double share) { return {c.r * share, c.g * share, c.b * share}; }
Paint lighter(Paint c, double share) {
  return {c.r + (1 - c.r) * share, c.g + (1 - c.g) * share, c.b + (1 - c.b) * share};
}

void drawNotes(Sheet& sheet) {
  for (int i = 0; i < 5; ++i) sheet.line(120, 150 + 34 * i, 700, 150 + 34 * i, 3, white);
  const double heights[] = {252, 218, 235, 184, 201, 167};
  for (int i = 0; i < 6; ++i) {
    const double x = 180 + 90 * i, y = heights[i];
    sheet.disc(x, y, 19, white);
    sheet.line(x + 17, y, x + 17, y - 92, 5, white);
  }
}

void drawStalls(Sheet& sheet) {
  const Paint awnings[] = {paint(0xC8553D), paint(0xF2B134), paint(0x4F8A5B)};
  for (int i = 0; i < 3; ++i) {
    const double x = 90 + 225 * i;
    sheet.box(x, 290, 190, 90, paint(0x8A5A3B));
    sheet.line(x + 8, 180, x + 8, 300, 8, paint(0x6B4A33));
    sheet.line(x + 182, 180, x + 182, 300, 8, paint(0x6B4A33));
    for (int s = 0; s < 6; ++s)
      sheet.box(x - 8 + s * 34.4, 150, 34.4, 56, s % 2 ? white : awnings[i]);
    for (int f = 0; f < 5; ++f) sheet.disc(x + 28 + f * 34, 282, 16, awnings[(i + f) % 3]);
  }
}

void drawCurtain(Sheet& sheet) {
  for (int i = 0; i < 9; ++i)
    for (const double x : {i * 30.0, coverWidth - 30.0 - i * 30.0})
      sheet.box(x, 0, 30, coverHeight, paint(i % 2 ? 0x8E2434 : 0xA83245));
  sheet.box(0, 0, coverWidth, 70, paint(0x7A1D2C));
  sheet.box(0, 400, coverWidth, 62, paint(0x6E4B32));
  sheet.disc(coverWidth / 2.0, 330, 150, paint(0xFFF1C9), 0.35);
  sheet.disc(coverWidth / 2.0, 330, 90, paint(0xFFF1C9), 0.5);
}

void drawBook(Sheet& sheet) {
  for (const double x : {190.0, 420.0}) {
    sheet.box(x, 120, 210, 250, paint(0xFBF6E9));
    for (int i = 0; i < 7; ++i) sheet.box(x + 28, 158 + 28 * i, i == 6 ? 90 : 154, 8, ink, 0.35);
  }
  sheet.line(410, 112, 410, 378, 10, paint(0x7B5B3E));
}

void drawBall(Sheet& sheet) {
  sheet.box(0, 340, coverWidth, 122, paint(0x3E7F4B));
  sheet.line(0, 342, coverWidth, 342, 6, white);
  sheet.disc(410, 240, 128, white);
  sheet.disc(410, 240, 42, ink);
  for (int i = 0; i < 5; ++i) {
    const double turn = 2 * std::numbers::pi * i / 5 - std::numbers::pi / 2;
    const double x = 410 + 104 * std::cos(turn), y = 240 + 104 * std::sin(turn);
    sheet.line(410, 240, x, y, 5, ink);
    sheet.disc(x, y, 22, ink);
  }
}

void drawWheel(Sheet& sheet) {
  sheet.box(0, 380, coverWidth, 82, paint(0x55606B));
  for (const double x : {270.0, 560.0}) {
    sheet.ring(x, 280, 108, 12, ink);
    for (int i = 0; i < 12; ++i) {
      const double turn = std::numbers::pi * i / 6;
      sheet.line(x, 280, x + 104 * std::cos(turn), 280 + 104 * std::sin(turn), 2, ink);
    }
  }
  sheet.line(270, 280, 380, 150, 12, white);
  sheet.line(380, 150, 510, 150, 12, white);
  sheet.line(510, 150, 560, 280, 12, white);
  sheet.line(380, 150, 430, 280, 12, white);
  sheet.line(430, 280, 510, 150, 12, white);
}

void drawWaves(Sheet& sheet) {
  for (int row = 0; row < 4; ++row) {
    cairo_t* pen = sheet.pen();
    cairo_new_path(pen);
    for (int x = 0; x <= coverWidth; x += 10)
      cairo_line_to(pen, x, 200 + 60 * row + 18 * std::sin(x / 48.0 + row));
    cairo_set_source_rgba(pen, 1, 1, 1, 0.9 - 0.18 * row);
    cairo_set_line_width(pen, 12);
    cairo_stroke(pen);
  }
  sheet.disc(640, 110, 46, paint(0xFFE08A));
}

void drawGlasses(Sheet& sheet) {
  for (const double x : {310.0, 510.0}) {
    sheet.disc(x, 180, 84, lighter(paint(0x7B1E3A), 0.1));
    sheet.box(x - 84, 96, 168, 62, white, 0.35);
    sheet.line(x, 260, x, 372, 10, white);
    sheet.line(x - 62, 376, x + 62, 376, 12, white);
  }
}

void drawMotif(Sheet& sheet, Motif motif) {
  switch (motif) {
    case Motif::music:
      return drawNotes(sheet);
    case Motif::market:
      return drawStalls(sheet);
    case Motif::stage:
      return drawCurtain(sheet);
    case Motif::book:
      return drawBook(sheet);
    case Motif::ball:
      return drawBall(sheet);
    case Motif::wheel:
      return drawWheel(sheet);
    case Motif::water:
      return drawWaves(sheet);
    case Motif::wine:
      return drawGlasses(sheet);
  }
}

}  // namespace

void Gallery::add(Documents& documents, const std::string& path,
                  std::function<std::string()> draw) {
  {
    std::lock_guard lock(mutex_);
    pictures_[path].draw = std::move(draw);
  }
  documents.add(path, typeOfPath(path), [this, path](const Occasion&) { return file(path); });
}

std::string Gallery::file(const std::string& path) {
  std::lock_guard lock(mutex_);
  const auto found = pictures_.find(path);
  if (found == pictures_.end()) return {};
  if (found->second.png.empty()) found->second.png = found->second.draw();
  return found->second.png;
}

std::string drawCover(Motif motif, unsigned color) {
  Sheet sheet(coverWidth, coverHeight);
  sheet.fill(paint(color), darker(paint(color), 0.55));
  drawMotif(sheet, motif);
  return sheet.png();
}

std::string drawBadge(const std::string& name, unsigned color) {
  Sheet sheet(200, 200);
  sheet.fill(white, white);
  sheet.disc(100, 100, 96, paint(color));
  sheet.ring(100, 100, 84, 3, white);
  std::string letters;
  bool start = true;
  for (const char c : name) {
    if (start && c >= 'A' && c <= 'Z' && letters.size() < 2) letters += c;
    start = c == ' ' || c == '\'';
  }
  sheet.write(letters, 100, 128, 78, white, Sheet::Side::middle, true);
  return sheet.png();
}

std::string drawBoard(const std::string& title, const std::vector<BoardLine>& lines, bool chalk) {
  constexpr int width = 800, top = 190, step = 62;
  const int height = top + step * static_cast<int>(lines.size()) + 60;
  Sheet sheet(width, height);
  if (chalk)
    sheet.fill(paint(0x2F3B36), paint(0x25302B));
  else
    sheet.fill(paint(0xFFFBF0), paint(0xF7EEDB));
  const Paint text = chalk ? paint(0xF4F1E6) : ink;
  const Paint accent = chalk ? paint(0xF6C56B) : paint(0xA32A2A);
  cairo_rectangle(sheet.pen(), 20, 20, width - 40, height - 40);
  cairo_set_source_rgb(sheet.pen(), accent.r, accent.g, accent.b);
  cairo_set_line_width(sheet.pen(), 4);
  cairo_stroke(sheet.pen());
  sheet.write(title, width / 2.0, 112, 54, accent, Sheet::Side::middle, true);
  sheet.line(width / 2.0 - 120, 140, width / 2.0 + 120, 140, 3, accent);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double y = top + step * static_cast<double>(i) + 40;
    if (lines[i].price.empty()) {
      sheet.write(lines[i].text, width / 2.0, y, 34, accent, Sheet::Side::middle, true);
      continue;
    }
    sheet.write(lines[i].text, 64, y, 32, text);
    sheet.write(lines[i].price, width - 64, y, 32, text, Sheet::Side::right, true);
  }
  return sheet.png();
}

}  // namespace town
