#include "platform/ui/focus.h"

#include <algorithm>

#include "platform/ui/screen.h"
#include "platform/ui/tree/view.h"

namespace ui {

bool Focus::within(const View& tree) const {
  const auto view = view_.lock();
  return view && view->isDescendantOf(tree);
}

void Focus::set(View* view, bool byKeyboard) {
  const Ref<View> now(view);
  const Ref<View> former = view_.lock();
  if (former == now) {
    if (byKeyboard == byKeyboard_) return;
    byKeyboard_ = byKeyboard;
    if (now) now->markChanged(Change::State);
    screen_.focusChanged(now.get(), byKeyboard);
    return;
  }
  view_ = WeakRef<View>(now);
  byKeyboard_ = now && byKeyboard;
  if (former) {
    former->setFlag(View::Focused, false, Change::State);
    former->focusChanged(false);
  }
  if (view_.lock() != now) return;  // the hook moved it on
  if (now) now->setFlag(View::Focused, true, Change::State);
  screen_.focusChanged(now.get(), byKeyboard_);
  setKeyboard(now && now->wantsKeyboard() ? screen_.keyboardHeight() : 0);
  if (now && view_.lock() == now) now->focusChanged(true);
}

void Focus::lose() {
  set(nullptr);
  lost_ = true;
}

void Focus::setKeyboard(double height) {
  if (height == keyboard_) return;
  keyboard_ = height;
  const auto observers = observers_;
  for (const auto& o : observers) {
    const bool stays = std::any_of(observers_.begin(), observers_.end(),
                                   [&](const auto& k) { return k.id == o.id; });
    if (stays) o.call(height > 0, height);
  }
}

std::uint64_t Focus::addKeyboardObserver(std::function<void(bool, double)> observer) {
  observers_.push_back({++lastId_, std::move(observer)});
  return lastId_;
}

void Focus::removeKeyboardObserver(std::uint64_t observer) {
  std::erase_if(observers_, [&](const auto& o) { return o.id == observer; });
}

}  // namespace ui
