// A sheet to draw on, which becomes a PNG file. A value on the stack; pixels.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

namespace town {

struct Paint {
  double r, g, b;
};
constexpr Paint colored(unsigned rgb) {
  return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
}

void use(cairo_t* pen, Paint color, double alpha = 1);

// What the town's lettering is set in.
inline constexpr const char* kFace = "Inter";

class Sheet {
 public:
  Sheet(int width, int height);

  double width() const { return width_; }
  double height() const { return height_; }
  cairo_t* pen() const { return pen_.get(); }

  void fill(Paint top, Paint bottom);  // the whole sheet, from one colour to the other
  void box(double x, double y, double width, double height, Paint color, double alpha = 1);
  void disc(double x, double y, double radius, Paint color, double alpha = 1);
  void ring(double x, double y, double radius, double line, Paint color);
  void line(double x1, double y1, double x2, double y2, double line, Paint color);

  enum class Side { left, middle, right };
  // `y` is the line that the letters stand on; `x` the side that they are held at.
  void write(const std::string& text, double x, double y, double size, Paint color,
             Side side = Side::left, bool bold = false);

  std::string png() const;

 private:
  struct Release {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
    void operator()(cairo_t* p) const { cairo_destroy(p); }
  };
  double width_, height_;
  std::unique_ptr<cairo_surface_t, Release> surface_;
  std::unique_ptr<cairo_t, Release> pen_;
};

}  // namespace town
