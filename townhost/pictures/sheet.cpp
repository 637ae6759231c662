#include "townhost/pictures/sheet.h"

#include <numbers>

namespace town {

void use(cairo_t* pen, Paint c, double alpha) { cairo_set_source_rgba(pen, c.r, c.g, c.b, alpha); }

Sheet::Sheet(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      pen_(cairo_create(surface_.get())) {}

void Sheet::fill(Paint top, Paint bottom) {
  cairo_pattern_t* blend = cairo_pattern_create_linear(0, 0, 0, height_);
  cairo_pattern_add_color_stop_rgb(blend, 0, top.r, top.g, top.b);
  cairo_pattern_add_color_stop_rgb(blend, 1, bottom.r, bottom.g, bottom.b);
  cairo_set_source(pen(), blend);
  cairo_paint(pen());
  cairo_pattern_destroy(blend);
}

void Sheet::box(double x, double y, double width, double height, Paint color, double alpha) {
  use(pen(), color, alpha);
  cairo_rectangle(pen(), x, y, width, height);
  cairo_fill(pen());
}

void Sheet::disc(double x, double y, double radius, Paint color, double alpha) {
  use(pen(), color, alpha);
  cairo_new_path(pen());
  cairo_arc(pen(), x, y, radius, 0, 2 * std::numbers::pi);
  cairo_fill(pen());
}

void Sheet::ring(double x, double y, double radius, double line, Paint color) {
  use(pen(), color);
  cairo_new_path(pen());
  cairo_arc(pen(), x, y, radius, 0, 2 * std::numbers::pi);
  cairo_set_line_width(pen(), line);
  cairo_stroke(pen());
}

void Sheet::line(double x1, double y1, double x2, double y2, double line, Paint color) {
  use(pen(), color);
  cairo_move_to(pen(), x1, y1);
  cairo_line_to(pen(), x2, y2);
  cairo_set_line_width(pen(), line);
  cairo_stroke(pen());
}

void Sheet::write(const std::string& text, double x, double y, double size, Paint color, Side side,
                  bool bold) {
  cairo_select_font_face(pen(), kFace, CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(pen(), size);
  cairo_text_extents_t extents{};
  cairo_text_extents(pen(), text.c_str(), &extents);
  if (side == Side::middle) x -= extents.x_advance / 2;
  if (side == Side::right) x -= extents.x_advance;
  use(pen(), color);
  cairo_move_to(pen(), x, y);
  cairo_show_text(pen(), text.c_str());
}

std::string Sheet::png() const {
  std::string out;
  const auto append = [](void* to, const unsigned char* data, unsigned size) {
    static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(data), size);
    return CAIRO_STATUS_SUCCESS;
  };
  cairo_surface_write_to_png_stream(surface_.get(), append, &out);
  return out;
}

}  // namespace town
