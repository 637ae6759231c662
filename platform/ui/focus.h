// Which view has the keyboard's focus, and the on-screen keyboard that comes with it. At
// most one view has it, held weakly. Owned by the Application. Main thread, points.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/base/shared.h"

namespace ui {

class Screen;
class View;

class Focus {
 public:
  explicit Focus(Screen& screen) : screen_(screen) {}

  View* view() const { return view_.lock().get(); }
  bool within(const View& tree) const;
  // Whether keys put it there: only then the screen shows where it is.
  bool byKeyboard() const { return byKeyboard_; }
  // Null: nowhere. Tells the former view, the screen and the new one, in this order.
  void set(View* view, bool byKeyboard = false);
  // What has it goes or is covered. Unless something else takes it, the next frame gives it
  // to the page's landmark: nobody who works with keys or a reader is left nowhere.
  void lose();
  bool takeLost() { return std::exchange(lost_, false) && !view(); }
  // Without telling anybody: the view's whole tree is on its way out.
  void drop() { view_ = {}; }

  // Height of the keyboard on show; observers hear (shown, height).
  double keyboardHeight() const { return keyboard_; }
  void setKeyboard(double height);
  std::uint64_t addKeyboardObserver(std::function<void(bool shown, double height)> observer);
  void removeKeyboardObserver(std::uint64_t observer);

 private:
  struct Observer {
    std::uint64_t id;
    std::function<void(bool, double)> call;
  };
  Screen& screen_;
  platform::WeakRef<View> view_;
  bool byKeyboard_ = false;
  bool lost_ = false;
  double keyboard_ = 0;
  std::vector<Observer> observers_;
  std::uint64_t lastId_ = 0;
};

}  // namespace ui
