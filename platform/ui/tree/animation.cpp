#include "platform/ui/tree/animation.h"

#include <algorithm>
#include <cmath>

#include "platform/base/platform.h"

namespace ui {

double Timing::progress(double t) const {
  if (t >= 1) return 1;
  if (t <= 0) return 0;
  if (damping > 0 && damping < 1) {
    // A spring that has all but come to rest (a thousandth of the way) at the end.
    const double decay = std::log(1000.0);
    const double swing = decay / damping * std::sqrt(1 - damping * damping);
    return 1 - std::exp(-decay * t) * (std::cos(swing * t) + decay / swing * std::sin(swing * t));
  }
  switch (curve) {
    case EaseOut:
      return 1 - (1 - t) * (1 - t);
    case Linear:
      return t;
    case EaseInOut:
      break;
  }
  return t * t * (3 - 2 * t);
}

namespace {

std::int64_t now() { return platform::current().clock().monotonic(); }

Change changeOf(Property p) {
  switch (p) {
    case Property::Center:
    case Property::Bounds:
      return Change::Geometry;
    case Property::Background:
    case Property::Alpha:
      return Change::Appearance;
    case Property::Value:
      break;
  }
  return Change::None;
}

std::size_t slot(Property p) { return static_cast<std::size_t>(p); }

void unpack(Color c, double (&out)[4]) {
  out[0] = c.alpha();
  out[1] = c.red();
  out[2] = c.green();
  out[3] = c.blue();
}

Color pack(const double (&in)[4]) {
  const auto part = [](double v) {
    return static_cast<std::uint32_t>(std::clamp(v + 0.5, 0.0, 255.0));
  };
  return Color(part(in[0]) << 24 | part(in[1]) << 16 | part(in[2]) << 8 | part(in[3]));
}

}  // namespace

void Animator::frame(View& view, const Rect& to, Timing timing, Done done) {
  Ref<View> pin(&view);
  if (timing.milliseconds < 1) {
    view.setFrame(to);
    if (done) done(true);
    return;
  }
  const Presented seen = view.presented();
  if (view.size_ != to.size()) {
    view.size_ = to.size();
    view.geometryChanged(true);
  }
  start(view, Property::Bounds, {seen.size.width, seen.size.height, 0, 0},
        {to.width, to.height, 0, 0}, {}, timing, {});
  center(view, to.center(), timing, std::move(done));
}

void Animator::center(View& view, Point to, Timing timing, Done done) {
  Ref<View> pin(&view);
  if (timing.milliseconds < 1) {
    view.setCenter(to);
    if (done) done(true);
    return;
  }
  const Point from = view.presented().center;
  if (view.center_ != to) {
    view.center_ = to;
    view.geometryChanged(false);
  }
  start(view, Property::Center, {from.x, from.y, 0, 0}, {to.x, to.y, 0, 0}, {}, timing,
        std::move(done));
}

void Animator::background(View& view, Color to, Timing timing, Done done) {
  Ref<View> pin(&view);
  if (timing.milliseconds < 1) {
    view.setBackground(to);
    if (done) done(true);
    return;
  }
  double from[4], end[4];
  unpack(view.presented().background, from);
  unpack(to, end);
  view.background_ = to;
  start(view, Property::Background, from, end, {}, timing, std::move(done));
}

void Animator::alpha(View& view, double to, Timing timing, Done done) {
  Ref<View> pin(&view);
  if (timing.milliseconds < 1) {
    view.setAlpha(to);
    if (done) done(true);
    return;
  }
  const double from = view.presented().alpha;
  view.alpha_ = static_cast<float>(std::clamp(to, 0.0, 1.0));
  start(view, Property::Alpha, {from, 0, 0, 0}, {to, 0, 0, 0}, {}, timing, std::move(done));
}

void Animator::value(View& view, double from, double to, std::function<void(double)> apply,
                     Timing timing, Done done) {
  Ref<View> pin(&view);
  if (timing.milliseconds < 1) {
    cancel(view, Property::Value);
    apply(to);
    if (done) done(true);
    return;
  }
  start(view, Property::Value, {from, 0, 0, 0}, {to, 0, 0, 0}, std::move(apply), timing,
        std::move(done));
}

void Animator::start(View& view, Property property, const double (&from)[4], const double (&to)[4],
                     std::function<void(double)> apply, Timing timing, Done done) {
  Animation fresh{&view, property, now(), timing, {}, {}, {}, std::move(apply), std::move(done)};
  std::copy(std::begin(from), std::end(from), fresh.from);
  std::copy(std::begin(from), std::end(from), fresh.now);
  std::copy(std::begin(to), std::end(to), fresh.to);
  Done replaced;
  if (Animation* former = find(view, property)) {
    replaced = std::move(former->done);
    *former = std::move(fresh);
  } else {
    ofView_[&view].by[slot(property)] = running_.insert(running_.end(), std::move(fresh));
  }
  view.flags_ = static_cast<std::uint16_t>(view.flags_ | View::Animated);
  view.markChanged(changeOf(property));
  if (replaced) replaced(false);
}

bool Animator::isAnimating(const View& view) const { return view.flag(View::Animated); }

Animator::Animation* Animator::find(const View& view, Property property) {
  if (!view.flag(View::Animated)) return nullptr;
  const auto own = ofView_.find(&view);
  if (own == ofView_.end()) return nullptr;
  const auto& found = own->second.by[slot(property)];
  return found ? &**found : nullptr;
}

Animator::Running::iterator Animator::take(Running::iterator animation) {
  View& view = *animation->view;
  const auto own = ofView_.find(&view);
  auto& by = own->second.by;
  by[slot(animation->property)].reset();
  if (std::none_of(by.begin(), by.end(), [](const auto& a) { return a.has_value(); })) {
    ofView_.erase(own);
    view.flags_ = static_cast<std::uint16_t>(view.flags_ & ~View::Animated);
  }
  return running_.erase(animation);
}

void Animator::cancel(View& view, Property property) {
  Animation* running = find(view, property);
  if (!running) return;
  Ref<View> pin(&view);
  const Done done = std::move(running->done);
  take(*ofView_.at(&view).by[slot(property)]);
  view.markChanged(changeOf(property));
  if (done) done(false);
}

void Animator::cancel(View& view) {
  Ref<View> pin(&view);
  for (const auto p :
       {Property::Center, Property::Bounds, Property::Background, Property::Alpha, Property::Value})
    cancel(view, p);
}

void Animator::forget(const View& view) {
  const auto own = ofView_.extract(&view);
  if (own.empty()) return;
  std::vector<Done> heard;
  for (const auto& animation : own.mapped().by) {
    if (!animation) continue;
    if ((*animation)->done) heard.push_back(std::move((*animation)->done));
    running_.erase(*animation);
  }
  for (const auto& done : heard) done(false);
}

void Animator::finishAll() {
  while (!running_.empty()) tick(INT64_MAX);
}

void Animator::compute(Animation& a, std::int64_t now) {
  const double t = static_cast<double>(now - a.start) / static_cast<double>(a.timing.milliseconds);
  const double p = a.timing.progress(t);
  for (int i = 0; i < 4; ++i) a.now[i] = a.from[i] + (a.to[i] - a.from[i]) * p;
}

void Animator::tick(std::int64_t now) {
  // Hooks may start, replace and cancel animations: they run after the walk.
  struct Call {
    Ref<View> view;
    std::function<void(double)> apply;
    double value;
    Done done;
  };
  std::vector<Call> calls;
  for (auto it = running_.begin(); it != running_.end();) {
    Animation& a = *it;
    const bool over = now - a.start >= a.timing.milliseconds;
    if (!over) compute(a, now);
    a.view->markChanged(changeOf(a.property));
    if (a.apply || (over && a.done))
      calls.push_back({Ref<View>(a.view), a.apply, over ? a.to[0] : a.now[0],
                       over ? std::move(a.done) : Done{}});
    it = over ? take(it) : std::next(it);
  }
  for (const auto& call : calls)
    if (call.apply) call.apply(call.value);
  for (const auto& call : calls)
    if (call.done) call.done(true);
}

Presented Animator::presented(const View& view) const {
  Presented seen{view.center_, view.size_, view.background_, view.alpha_};
  const auto own = ofView_.find(&view);
  if (own == ofView_.end()) return seen;
  for (const auto& animation : own->second.by) {
    if (!animation) continue;
    const Animation& a = **animation;
    switch (a.property) {
      case Property::Center:
        seen.center = {a.now[0], a.now[1]};
        break;
      case Property::Bounds:
        seen.size = {a.now[0], a.now[1]};
        break;
      case Property::Background:
        seen.background = pack(a.now);
        break;
      case Property::Alpha:
        seen.alpha = a.now[0];
        break;
      case Property::Value:
        break;
    }
  }
  return seen;
}

void Animator::childrenOf(const View& parent, std::vector<View*>& out) const {
  for (const auto& [view, own] : ofView_)
    if (view->parent() == &parent) out.push_back(const_cast<View*>(view));
}

}  // namespace ui
