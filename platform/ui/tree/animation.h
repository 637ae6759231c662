// Moves what is seen of a view from where it is to a new value.
//
// The view itself takes the final value at once; the animator changes what
// View::presented() answers until the time is over. There is at most one animation for
// each property of a view: a newer one starts from what is seen and replaces the older,
// whose completion hears false. A view that dies, or is set to another value directly,
// ends its animation the same way. Driven by Application::tick(). Main thread;
// durations are milliseconds, below 1 the change is made at once.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/ui/tree/view.h"

namespace ui {

enum class Property : std::uint8_t { Center, Bounds, Background, Alpha, Value };

struct Timing {
  std::int64_t milliseconds = 0;
  enum Curve : std::uint8_t { EaseInOut, EaseOut, Linear } curve = EaseInOut;
  double damping = 0;  // above 0 and below 1: a spring that swings; else the curve
  // The part of the way at a part of the time, both 0 to 1 (a spring may overshoot).
  double progress(double t) const;
};

class Animator {
 public:
  using Done = std::function<void(bool finished)>;

  void frame(View& view, const Rect& to, Timing timing, Done done = {});
  void center(View& view, Point to, Timing timing, Done done = {});
  void background(View& view, Color to, Timing timing, Done done = {});
  void alpha(View& view, double to, Timing timing, Done done = {});
  // Any number, one for each view: apply() gets it on each tick, the last one exactly.
  void value(View& view, double from, double to, std::function<void(double)> apply, Timing timing,
             Done done = {});

  bool isAnimating() const { return !running_.empty(); }
  bool isAnimating(const View& view) const;
  // Ends at once; the completion hears false.
  void cancel(View& view);
  void cancel(View& view, Property property);
  // Lets all running animations arrive.
  void finishAll();
  void tick(std::int64_t now);

  // What is seen of a view that is animated.
  Presented presented(const View& view) const;
  // The animated children of a view, wherever they are seen.
  void childrenOf(const View& parent, std::vector<View*>& out) const;

 private:
  friend class View;
  struct Animation {
    View* view;
    Property property;
    std::int64_t start;
    Timing timing;
    double from[4], to[4], now[4];
    std::function<void(double)> apply;
    Done done;
  };
  void start(View& view, Property property, const double (&from)[4], const double (&to)[4],
             std::function<void(double)> apply, Timing timing, Done done);
  void forget(const View& view);  // it is being destroyed
  static void compute(Animation& animation, std::int64_t now);

  // In the order in which they began, and for each view by property: the thousand that run
  // cost the one that begins nothing.
  using Running = std::list<Animation>;
  struct OfView {
    static constexpr std::size_t kProperties = 5;
    std::array<std::optional<Running::iterator>, kProperties> by;
  };
  Animation* find(const View& view, Property property);
  Running::iterator take(Running::iterator animation);  // out of both; the one behind it

  Running running_;
  std::unordered_map<const View*, OfView> ofView_;
};

}  // namespace ui
