// A finger and a keyboard for scripts and tests: what they do reaches the window as
// events of the toolkit, the way a person's do. Used at the top of the main thread, it
// runs the loop while a finger moves. Points.
#pragma once

#include <string>

#include "platform/qt/qt_loop.h"
#include "platform/ui/input.h"

namespace qt {

class QtHand {
 public:
  QtHand(QtScreen& screen, QtLoop& loop) : screen_(screen), loop_(loop) {}

  void down(ui::Point at);
  void move(ui::Point at);
  void up(ui::Point at);
  void tap(ui::Point at);
  // From one place to another, at a steady speed, for so many milliseconds.
  void drag(ui::Point from, ui::Point to, std::int64_t milliseconds = 150);
  void wheel(ui::Point at, double notches);  // above 0: towards the end
  void press(ui::Key key);
  // Into what has the focus.
  void type(const std::string& text);

 private:
  QtScreen& screen_;
  QtLoop& loop_;
};

}  // namespace qt
