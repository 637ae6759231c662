#include "townhost/hall/paper.h"

#include <cairo-pdf.h>
#include <cairo.h>

#include <sstream>

namespace town {

namespace {

// Points of an A4 sheet.
constexpr double kWide = 595, kHigh = 842, kMargin = 64;

cairo_status_t append(void* to, const unsigned char* bytes, unsigned length) {
  static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(bytes), length);
  return CAIRO_STATUS_SUCCESS;
}

// Writes the words in lines of the page's width; gives the baseline below.
double write(cairo_t* pen, const std::string& text, double y, double size, bool bold) {
  cairo_select_font_face(pen, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(pen, size);
  std::istringstream words(text);
  std::string line;
  const auto flush = [&] {
    cairo_move_to(pen, kMargin, y);
    cairo_show_text(pen, line.c_str());
    y += size * 1.5;
    line.clear();
  };
  for (std::string word; words >> word;) {
    const std::string longer = line.empty() ? word : line + " " + word;
    cairo_text_extents_t extents;
    cairo_text_extents(pen, longer.c_str(), &extents);
    if (!line.empty() && extents.x_advance > kWide - 2 * kMargin) flush();
    line = line.empty() ? word : line + " " + word;
  }
  if (!line.empty()) flush();
  return y + size * 0.6;
}

}  // namespace

std::string pdf(const std::vector<std::string>& paragraphs) {
  std::string bytes;
  cairo_surface_t* sheet = cairo_pdf_surface_create_for_stream(append, &bytes, kWide, kHigh);
  cairo_t* pen = cairo_create(sheet);
  cairo_set_source_rgb(pen, 0.12, 0.37, 0.48);
  double y = write(pen, "COMUNE DI VARLO", kMargin + 10, 18, true);
  cairo_rectangle(pen, kMargin, y - 14, kWide - 2 * kMargin, 1.5);
  cairo_fill(pen);
  cairo_set_source_rgb(pen, 0.1, 0.1, 0.1);
  y += 20;
  for (std::size_t i = 0; i < paragraphs.size(); ++i)
    y = write(pen, paragraphs[i], y, i == 0 ? 16 : 12, i == 0);
  cairo_destroy(pen);
  cairo_surface_finish(sheet);
  cairo_surface_destroy(sheet);
  return bytes;
}

}  // namespace town
