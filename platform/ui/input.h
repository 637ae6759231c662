// Turns pointer and key events into taps, long presses, touches, scrolling, swipes of
// pages and focus moves. Owned by the Application, reached through it. Main thread;
// window points. Views that go away in between are left out, never touched.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

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
  bool swiping() const { return active_ && drag_ == Drag::Page; }  // a page or a drawer
  View* pressed() const { return pressed_.get(); }                 // by the finger that is down

  // Taps inside a view do nothing for so long: a finger that comes down now was on its way
  // to what was there before. Drags are heard.
  void ignoreTaps(View& tree, std::int64_t milliseconds);
  bool ignoresTaps(const View& view) const;
  // When the last of these pauses is over, while there is one; on the monotonic clock.
  std::optional<std::int64_t> settledAt() const;

  // The focus goes to a view, which need not take keys itself (a page's title): told anew
  // even if it was there. The place is shown if keys were used last. Null: nowhere.
  void focusOn(View* view);
  // To the current element in a view, or the first that takes the focus, or nowhere.
  void moveFocusInto(View& tree);

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
  void dropPress();
  bool pressReaches(Point at) const;
  bool activateFocused();
  bool stepBack();
  bool openMenu();
  bool scrollPage(Key key);

  Application& app_;
  struct Pause {
    WeakRef<View> tree;
    std::int64_t until;
  };
  std::vector<Pause> pauses_;
  bool byKeys_ = false;  // the last that was used, rather than a finger
  bool active_ = false;
  int id_ = 0;
  std::uint64_t gesture_ = 0;
  Point start_, last_;
  std::int64_t lastTime_ = 0;
  Point velocity_;                      // points a second
  Ref<View> target_;                    // what was hit
  Ref<View> pressed_, held_, touched_;  // take tap, long press, touches
  Ref<ScrollView> scroller_;
  Ref<ViewController> page_;  // whom a swipe moves
  Point scrollStart_;
  enum class Drag : std::uint8_t { Undecided, Scroll, Page, None } drag_ = Drag::Undecided;
};

}  // namespace ui
