#include "townhost/pictures/gallery.h"

#include "townhost/pictures/sheet.h"

namespace town {

namespace {

constexpr Paint white = colored(0xFFFFFF), ink = colored(0x2B2A27);

}  // namespace

void Gallery::add(Documents& documents, const std::string& path,
                  std::function<std::string()> draw) {
  {
    std::lock_guard lock(mutex_);
    pictures_[path].draw = std::move(draw);
  }
  documents.add(path, typeOfPath(path), [this, path](const Occasion&) { return file(path); });
}

// Two pictures may be drawn at a time, none of them twice: the lock is the list's alone.
std::string Gallery::file(const std::string& path) {
  Drawn* drawn = nullptr;
  {
    std::lock_guard lock(mutex_);
    const auto found = pictures_.find(path);
    if (found == pictures_.end()) return {};
    drawn = &found->second;
  }
  std::call_once(drawn->once, [&] { drawn->png = drawn->draw(); });
  return drawn->png;
}

std::string drawBadge(const std::string& name, unsigned color) {
  Sheet sheet(200, 200);
  sheet.fill(white, white);
  sheet.disc(100, 100, 96, colored(color));
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
    sheet.fill(colored(0x2F3B36), colored(0x25302B));
  else
    sheet.fill(colored(0xFFFBF0), colored(0xF7EEDB));
  const Paint text = chalk ? colored(0xF4F1E6) : ink;
  const Paint accent = chalk ? colored(0xF6C56B) : colored(0xA32A2A);
  cairo_rectangle(sheet.pen(), 20, 20, width - 40, height - 40);
  use(sheet.pen(), accent);
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
