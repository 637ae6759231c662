#include "platform/ui/input.h"

#include <algorithm>
#include <cmath>

#include "platform/base/platform.h"
#include "platform/ui/application.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/finder.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

std::int64_t now() { return platform::current().clock().monotonic(); }

Ref<Window> windowAt(Application& app, Point p) {
  const auto windows = app.windows();
  for (auto it = windows.rbegin(); it != windows.rend(); ++it)
    if (!(*it)->hidden() && (*it)->frame().contains(p)) return *it;
  return nullptr;
}

// The nearest scroll view around a view that can move the way of a drag.
ScrollView* scrollerFor(View* view, Point drag) {
  const bool across = std::abs(drag.x) > std::abs(drag.y);
  for (; view; view = view->parent())
    if (auto* scroll = dynamic_cast<ScrollView*>(view); scroll && scroll->scrollEnabled()) {
      const Point max = scroll->maxOffset();
      if ((across ? max.x : max.y) > 0) return scroll;
    }
  return nullptr;
}

}  // namespace

// --- Pointer.

bool Input::pointer(PointerPhase phase, int id, double x, double y) {
  const Point at{x, y};
  if (phase == PointerPhase::Began) {
    if (active_) return false;
    active_ = true;
    id_ = id;
    ++gesture_;
    start_ = last_ = at;
    lastTime_ = now();
    velocityX_ = 0;
    drag_ = Drag::Undecided;
    return began(at);
  }
  if (!active_ || id != id_) return false;
  switch (phase) {
    case PointerPhase::Moved:
      return moved(at);
    case PointerPhase::Ended:
      return ended(at);
    default:
      cancelPointer();
      return true;
  }
}

bool Input::began(Point at) {
  const auto window = windowAt(app_, at);
  target_ = Ref<View>(window ? window->hitTest(at) : nullptr);
  const bool hit = target_.get() != nullptr;
  if (app_.focus().byKeyboard()) app_.focus().set(app_.focus().view(), false);
  bool tapDecided = false;
  for (View* v = target_.get(); v; v = v->parent()) {
    if (!tapDecided && v->takesTap()) {
      tapDecided = true;  // a disabled control takes the tap and does nothing
      if (v->enabled()) pressed_ = Ref<View>(v);
    }
    if (!held_ && v->hasOnLongPress() && v->enabled()) held_ = Ref<View>(v);
    if (!touched_ && v->hasOnTouch()) touched_ = Ref<View>(v);
  }
  if (window)
    if (auto* root = window->rootViewController();
        root && target_ && target_->isDescendantOf(root->view()))
      page_ = Ref<ViewController>(root);
  if (held_)
    app_.timers().start(style::kLongPress, [this, gesture = gesture_] { longPressDue(gesture); });
  if (pressed_) pressed_->setPressed(true);
  if (const auto touched = touched_) touched->touch(TouchAction::Down, touched->fromWindow(at));
  return hit;
}

void Input::longPressDue(std::uint64_t gesture) {
  if (!active_ || gesture != gesture_ || !held_) return;
  const Ref<View> held = std::exchange(held_, nullptr);
  if (pressed_) pressed_->setPressed(false);
  pressed_ = nullptr;
  if (held->window()) held->longPress();
}

bool Input::moved(Point at) {
  const auto time = now();
  if (time > lastTime_)
    velocityX_ = (at.x - last_.x) * 1000 / static_cast<double>(time - lastTime_);
  last_ = at;
  lastTime_ = time;
  const Point way = at - start_;
  if (drag_ == Drag::Undecided && std::max(std::abs(way.x), std::abs(way.y)) >= style::kTapSlop) {
    if (pressed_) pressed_->setPressed(false);
    pressed_ = held_ = nullptr;
    decideDrag(way);
  }
  if (!active_) return true;  // a hook ended it
  if (drag_ == Drag::Page) {
    page_->pan(way);
  } else if (drag_ == Drag::Scroll) {
    if (scroller_->window()) scroller_->setOffset(scrollStart_ - way);
  } else if (const auto touched = touched_) {
    touched->touch(TouchAction::Move, touched->fromWindow(at));
  }
  return target_.get() != nullptr;
}

void Input::decideDrag(Point way) {
  drag_ = Drag::None;
  page_ = page_ ? page_->beginPan(start_, way) : nullptr;
  if (page_) {
    drag_ = Drag::Page;
  } else if (!app_.screen().scrollsNatively() && target_ && target_->window()) {
    scroller_ = Ref<ScrollView>(scrollerFor(target_.get(), way));
    if (!scroller_) return;
    drag_ = Drag::Scroll;
    app_.animator().cancel(*scroller_, Property::Value);
    scrollStart_ = scroller_->offset();
  } else {
    return;
  }
  if (const auto touched = std::exchange(touched_, nullptr))
    touched->touch(TouchAction::Up, touched->fromWindow(last_));
}

bool Input::ended(Point at) {
  // All state is put away first: the hooks below may start anything.
  const auto target = target_, pressed = pressed_, touched = touched_;
  const auto scroller = scroller_;
  const auto page = page_;
  const auto drag = drag_;
  const Point way = at - start_;
  if (now() - lastTime_ > 100) velocityX_ = 0;  // the finger rested before it left
  const double velocity = velocityX_;
  release();
  if (pressed) pressed->setPressed(false);
  if (drag == Drag::Page) {
    page->endPan(way, velocity);
  } else if (drag == Drag::Scroll) {
    scroller->setOffset(scrollStart_ - way);
    const Size page = scroller->bounds().size();
    if (scroller->paging() && !page.empty())
      scroller->scrollTo({std::round(scroller->offset().x / page.width) * page.width,
                          std::round(scroller->offset().y / page.height) * page.height},
                         style::kPageTransition);
  } else {
    if (touched) touched->touch(TouchAction::Up, touched->fromWindow(at));
    const bool still = std::max(std::abs(way.x), std::abs(way.y)) < style::kTapSlop;
    if (pressed && still && pressed->window()) pressed->tap(pressed->fromWindow(at));
  }
  return target.get() != nullptr;
}

void Input::release() {
  active_ = false;
  ++gesture_;
  target_ = pressed_ = held_ = touched_ = nullptr;
  scroller_ = nullptr;
  page_ = nullptr;
}

void Input::cancelPointer() {
  if (!active_) return;
  const auto pressed = pressed_, touched = touched_;
  const auto page = drag_ == Drag::Page ? page_ : nullptr;
  const Point way = last_ - start_;
  release();
  if (pressed) pressed->setPressed(false);
  if (page) page->endPan(way, 0);
  if (touched) touched->touch(TouchAction::Up, touched->fromWindow(last_));
}

void Input::wheel(double x, double y, double dx, double dy) {
  const auto window = windowAt(app_, {x, y});
  const Ref<View> hit(window ? window->hitTest({x, y}) : nullptr);
  const Ref<ScrollView> scroll(scrollerFor(hit.get(), {dx, dy}));
  if (!scroll) return;
  app_.animator().cancel(*scroll, Property::Value);
  scroll->setOffset(scroll->offset() + Point{dx, dy});
}

// --- Keys.

bool Input::key(Key key) {
  if (app_.hud().progressShown()) return true;  // nothing to reach, nothing to leave
  const Ref<View> focused(app_.focus().view());
  if (const KeyUse use = focused ? focused->keyPressed(key) : KeyUse::None; use != KeyUse::None)
    return use == KeyUse::Used;
  switch (key) {
    case Key::Tab:
    case Key::Down:
      return moveFocus(1);
    case Key::BackTab:
    case Key::Up:
      return moveFocus(-1);
    case Key::Left:
      return (focused && focused->adjust(-1)) || moveFocus(-1);
    case Key::Right:
      return (focused && focused->adjust(1)) || moveFocus(1);
    case Key::Enter:
    case Key::Space:
      return activateFocused();
    case Key::Escape:
    case Key::Back:
      return stepBack();
    default:
      return scrollPage(key);
  }
}

bool Input::text(std::string_view utf8) {
  const Ref<View> focused(app_.focus().view());
  return focused && !app_.hud().progressShown() && focused->typed(utf8);
}

bool Input::moveFocus(int direction) {
  auto* window = app_.keyWindow();
  if (!window) return false;
  const auto order = focusOrder(*window);
  if (order.empty()) return false;
  const auto count = static_cast<std::ptrdiff_t>(order.size());
  const auto it = std::find(order.begin(), order.end(), Ref<View>(app_.focus().view()));
  const auto next = it == order.end() ? (direction > 0 ? 0 : count - 1)
                                      : (it - order.begin() + direction + count) % count;
  const auto& view = order[static_cast<std::size_t>(next)];
  app_.focus().set(view.get(), true);
  scrollIntoView(*view);
  return true;
}

bool Input::activateFocused() {
  const Ref<View> focused(app_.focus().view());
  if (!focused || !focused->enabled() || !reachable(*focused)) return false;
  if (!focused->takesTap()) return false;
  focused->tap(focused->bounds().center());
  return true;
}

bool Input::stepBack() {
  if (!app_.dialogs().empty()) {
    const auto top = app_.dialogs().back();
    top->cancel();
    return true;
  }
  auto* window = app_.keyWindow();
  const Ref<ViewController> root(window ? window->rootViewController() : nullptr);
  return root && root->goBack();
}

namespace {

ScrollView* firstScroller(View& view) {
  for (auto it = view.children().rbegin(); it != view.children().rend(); ++it) {
    View& child = **it;
    if (child.hidden() || child.accessibilityHidden()) continue;
    if (auto* scroll = dynamic_cast<ScrollView*>(&child);
        scroll && scroll->maxOffset().y > 0 && reachable(child))
      return scroll;
    if (dynamic_cast<ScrollView*>(&child)) continue;
    if (auto* inner = firstScroller(child)) return inner;
  }
  return nullptr;
}

}  // namespace

bool Input::scrollPage(Key key) {
  auto* window = app_.keyWindow();
  if (!window) return false;
  auto* found = scrollerFor(app_.focus().view(), {0, 1});
  const Ref<ScrollView> scroll(found ? found : firstScroller(*window));
  if (!scroll) return false;
  app_.animator().cancel(*scroll, Property::Value);
  const double page = std::max(1.0, scroll->bounds().height - style::kTapSize);
  Point to = scroll->offset();
  switch (key) {
    case Key::PageUp:
      to.y -= page;
      break;
    case Key::PageDown:
      to.y += page;
      break;
    case Key::Home:
      to.y = 0;
      break;
    default:
      to.y = scroll->maxOffset().y;
      break;
  }
  scroll->setOffset(to);
  return true;
}

}  // namespace ui
