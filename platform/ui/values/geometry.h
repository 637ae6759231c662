// Points, sizes and rectangles. All lengths are points (1/160 inch on paper; a
// screen's scale says how many pixels one is); x grows to the right, y downwards.
// Plain values, usable on any thread; nothing here throws.
#pragma once

#include <algorithm>

namespace ui {

struct Point {
  double x = 0, y = 0;
  bool operator==(const Point&) const = default;
  Point operator+(Point o) const { return {x + o.x, y + o.y}; }
  Point operator-(Point o) const { return {x - o.x, y - o.y}; }
};

struct Size {
  double width = 0, height = 0;
  bool operator==(const Size&) const = default;
  bool empty() const { return width <= 0 || height <= 0; }
};

struct Insets {
  double left = 0, top = 0, right = 0, bottom = 0;
  bool operator==(const Insets&) const = default;
};

struct Rect {
  double x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Rect&) const = default;

  static Rect centered(Point c, Size s) {
    return {c.x - s.width / 2, c.y - s.height / 2, s.width, s.height};
  }
  double right() const { return x + width; }
  double bottom() const { return y + height; }
  Point origin() const { return {x, y}; }
  Size size() const { return {width, height}; }
  Point center() const { return {x + width / 2, y + height / 2}; }
  bool empty() const { return width <= 0 || height <= 0; }
  bool contains(Point p) const { return p.x >= x && p.y >= y && p.x < right() && p.y < bottom(); }
  bool intersects(const Rect& o) const {
    return x < o.right() && o.x < right() && y < o.bottom() && o.y < bottom();
  }
  Rect intersection(const Rect& o) const {
    const double l = std::max(x, o.x), t = std::max(y, o.y);
    return {l, t, std::max(0.0, std::min(right(), o.right()) - l),
            std::max(0.0, std::min(bottom(), o.bottom()) - t)};
  }
  Rect movedBy(Point d) const { return {x + d.x, y + d.y, width, height}; }
  Rect inset(const Insets& i) const {
    return {x + i.left, y + i.top, width - i.left - i.right, height - i.top - i.bottom};
  }
};

}  // namespace ui
