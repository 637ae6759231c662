// Turns pointer and key events into taps, long presses, touches, scrolling, swipes of
// pages and focus moves. Owned by the Application, reached through it. Main thread;
// window points. Views that go away in between are left out, never touched.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/pages/view_controller.h"

namespace ui {

class Application;

enum class PointerPhase { Began, Moved, Ended, Cancelled };

class Input {
 public:
  explicit Input(Application& application) : app_(application) {}

  // One finger at a time: others are ignored until it has ended. True when a view, a
  // scroller or a page has a use for the event.
  bool pointer(PointerPhase phase, int id, double x, double y);
  void cancelPointer();  // a native scroller has taken the finger over
  bool pointerDown() const { return active_; }
  bool swiping() const { return active_ && drag_ == Drag::Page; }  // a page or a drawer
  bool key(Key key);
  bool text(std::string_view utf8);  // typed into the focused text input
  void wheel(double x, double y, double dx, double dy);

 private:
  bool began(Point at);
  bool moved(Point at);
  bool ended(Point at);
  void release();
  void decideDrag(Point way);
  void longPressDue(std::uint64_t gesture);
  bool moveFocus(int direction);
  bool activateFocused();
  bool stepBack();
  bool scrollPage(Key key);

  Application& app_;
  bool active_ = false;
  int id_ = 0;
  std::uint64_t gesture_ = 0;
  Point start_, last_;
  std::int64_t lastTime_ = 0;
  double velocityX_ = 0;
  Ref<View> target_;                    // what was hit
  Ref<View> pressed_, held_, touched_;  // take tap, long press, touches
  Ref<ScrollView> scroller_;
  Ref<ViewController> page_;  // whom a swipe moves
  Point scrollStart_;
  enum class Drag : std::uint8_t { Undecided, Scroll, Page, None } drag_ = Drag::Undecided;
};

}  // namespace ui
