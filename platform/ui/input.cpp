#include "platform/ui/input.h"

#include <algorithm>
#include <cmath>

#include "platform/base/platform.h"
#include "platform/ui/application.h"
#include "platform/ui/overlays/dialog.h"
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
    velocity_ = {};
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
  const bool paused = hit && ignoresTaps(*target_);
  byKeys_ = false;
  if (app_.focus().byKeyboard()) app_.focus().set(app_.focus().view(), false);
  bool tapDecided = false;
  for (View* v = target_.get(); v; v = v->parent()) {
    if (!tapDecided && v->takesTap()) {
      tapDecided = true;  // a disabled control takes the tap and does nothing
      if (v->enabled() && !paused) pressed_ = Ref<View>(v);
    }
    if (!held_ && v->hasOnLongPress() && v->enabled() && !paused) held_ = Ref<View>(v);
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
  if (time > lastTime_) {
    const double second = 1000 / static_cast<double>(time - lastTime_);
    velocity_ = {(at.x - last_.x) * second, (at.y - last_.y) * second};
  }
  last_ = at;
  lastTime_ = time;
  const Point way = at - start_;
  if (drag_ == Drag::Undecided && std::max(std::abs(way.x), std::abs(way.y)) >= style::kTapSlop) {
    held_ = nullptr;
    if (pressed_ && !pressed_->holdsPress()) dropPress();
    decideDrag(way);
  }
  if (!active_) return true;  // a hook ended it
  if (pressed_ && pressed_->holdsPress()) pressed_->setPressed(pressReaches(at));
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
  dropPress();
  if (const auto touched = std::exchange(touched_, nullptr))
    touched->touch(TouchAction::Up, touched->fromWindow(last_));
}

void Input::dropPress() {
  if (const auto pressed = std::exchange(pressed_, nullptr)) pressed->setPressed(false);
}

// A control keeps its press while the finger is on it or near; anything else loses it once
// the finger has moved.
bool Input::pressReaches(Point at) const {
  if (!pressed_ || !pressed_->window()) return false;
  if (!pressed_->holdsPress())
    return std::max(std::abs(at.x - start_.x), std::abs(at.y - start_.y)) < style::kTapSlop;
  const double m = -style::kPressMargin;
  return pressed_->frameInWindow().inset({m, m, m, m}).contains(at);
}

bool Input::ended(Point at) {
  // All state is put away first: the hooks below may start anything.
  const auto target = target_, pressed = pressed_, touched = touched_;
  const auto scroller = scroller_;
  const auto page = page_;
  const auto drag = drag_;
  const Point way = at - start_;
  if (now() - lastTime_ > 100) velocity_ = {};  // the finger rested before it left
  const Point velocity = velocity_;
  const bool taps = pressReaches(at);
  release();
  if (pressed) pressed->setPressed(false);
  if (drag == Drag::Page) {
    page->endPan(way, velocity.x);
  } else if (drag == Drag::Scroll) {
    scroller->setOffset(scrollStart_ - way);
    if (scroller->paging())
      scroller->scrollTo(scroller->restingPage(scrollStart_, Point{} - velocity),
                         style::kPageTransition);
  } else {
    if (touched) touched->touch(TouchAction::Up, touched->fromWindow(at));
    if (!taps || !pressed->window()) return true;
    // The focus follows the finger, but takes nobody's text away from the keyboard.
    const Ref<View> focused(app_.focus().view());
    if (pressed->canFocus() && !(focused && focused->wantsKeyboard()))
      app_.focus().set(pressed.get());
    pressed->tap(pressed->fromWindow(at));
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

void Input::ignoreTaps(View& tree, std::int64_t milliseconds) {
  const auto at = now();
  std::erase_if(pauses_, [at](const Pause& p) { return p.until <= at || !p.tree.lock(); });
  pauses_.push_back({WeakRef<View>(&tree), at + milliseconds});
  app_.screen().requestTick(milliseconds);
}

bool Input::ignoresTaps(const View& view) const {
  const auto at = now();
  return std::any_of(pauses_.begin(), pauses_.end(), [&](const Pause& p) {
    const auto tree = p.until > at ? p.tree.lock() : nullptr;
    return tree && view.isDescendantOf(*tree);
  });
}

std::optional<std::int64_t> Input::settledAt() const {
  const auto at = now();
  std::optional<std::int64_t> last;
  for (const auto& p : pauses_)
    if (p.until > at && p.until > last.value_or(0) && p.tree.lock()) last = p.until;
  return last;
}

void Input::focusOn(View* view) {
  const Ref<View> pin(view);
  if (view && app_.focus().view() == view) app_.focus().set(nullptr);
  app_.focus().set(view, byKeys_);
}

void Input::moveFocusInto(View& tree) {
  const auto order = focusOrder(tree);
  const auto current =
      std::find_if(order.begin(), order.end(), [](const auto& v) { return v->current(); });
  const auto found = current == order.end() ? order.begin() : current;
  focusOn(found == order.end() ? nullptr : found->get());
  if (found != order.end()) scrollIntoView(**found);
}

bool Input::key(Key key) {
  byKeys_ = true;
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
    case Key::Menu:
      return openMenu();
    default:
      return scrollPage(key);
  }
}

bool Input::text(std::string_view utf8) {
  const Ref<View> focused(app_.focus().view());
  return focused && reachable(*focused) && focused->typed(utf8);
}

// From where the focus is, which may be a title that no key reaches.
bool Input::moveFocus(int direction) {
  auto* window = app_.keyWindow();
  if (!window) return false;
  const auto all = accessibilityTree(*window);
  const auto count = static_cast<std::ptrdiff_t>(all.size());
  const auto here = std::find_if(
      all.begin(), all.end(), [&](const auto& e) { return e.view.get() == app_.focus().view(); });
  const auto from = here != all.end() ? here - all.begin() : direction > 0 ? -1 : count;
  for (std::ptrdiff_t step = 1; step <= count; ++step) {
    const auto& next = all[static_cast<std::size_t>((from + direction * step + count) % count)];
    if (!next.enabled || !next.view->canFocus() || !next.view->userInteraction()) continue;
    app_.focus().set(next.view.get(), true);
    scrollIntoView(*next.view);
    return true;
  }
  return false;
}

bool Input::activateFocused() {
  const Ref<View> focused(app_.focus().view());
  if (focused && focused->takesTap()) {
    if (!focused->enabled() || !reachable(*focused)) return false;
    if (!ignoresTaps(*focused)) focused->tap(focused->bounds().center());
    return true;
  }
  if (app_.dialogs().empty()) return false;
  const Ref<Dialog> dialog = app_.dialogs().back();
  if (dialog->buttons().size() != 1) return false;
  dialog->dismiss(dialog->buttons().front().result);
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

bool Input::openMenu() {
  auto* window = app_.keyWindow();
  const Ref<ViewController> root(window ? window->rootViewController() : nullptr);
  return root && app_.dialogs().empty() && root->openMenu();
}

namespace {

// The largest that keys can scroll and that can be reached: the page's main one.
void findMainScroller(View& view, const Rect& clip, View*& best, double& area) {
  for (const auto& child : view.children()) {
    if (child->hidden() || child->accessibilityHidden()) continue;
    const Rect seen = clip.intersection(child->frameInWindow());
    const double size = seen.width * seen.height;
    if (child->scrollsByKeys() && size > area && reachable(*child)) {
      best = child.get();
      area = size;
    } else if (size > area || !child->clipsToBounds()) {
      findMainScroller(*child, child->clipsToBounds() ? seen : clip, best, area);
    }
  }
}

}  // namespace

bool Input::scrollPage(Key key) {
  for (Ref<View> v(app_.focus().view()); v; v = Ref<View>(v->parent()))
    if (v->scrollsByKeys() && reachable(*v)) {
      v->scrollByKey(key);
      return true;
    }
  auto* window = app_.keyWindow();
  View* found = nullptr;
  double area = 0;
  if (window) findMainScroller(*window, window->bounds(), found, area);
  if (!found) return false;
  Ref<View>(found)->scrollByKey(key);
  return true;
}

}  // namespace ui
