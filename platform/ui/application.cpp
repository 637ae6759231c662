#include "platform/ui/application.h"

#include <algorithm>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/values/link.h"

namespace ui {

namespace {

Application* g_current = nullptr;

constexpr int kLayoutRounds = 16;  // layouts that never come to rest end here

std::int64_t now() { return platform::current().clock().monotonic(); }

}  // namespace

Application::Application(Screen& screen, TextEngine& text) : screen_(screen), text_(text) {
  g_current = this;
}

Application::~Application() {
  animator_.finishAll();
  dialogs_.clear();
  if (g_current == this) g_current = nullptr;
}

double textScale() {
  auto* app = Application::current();
  return app ? app->text().scale() : 1;
}

double textHeight(double designed) { return designed * std::max(1.0, textScale()); }

Application* Application::current() { return g_current; }

// --- The screen.

Rect Application::statusBarFrame() const {
  return {0, 0, screen_.bounds().width, screen_.statusBarHeight()};
}

void Application::screenChanged() {
  for (const auto& window : windows()) {
    window->setFrame(screen_.bounds());
    window->setNeedsLayout();
  }
  treeChanged();
}

std::vector<Ref<Window>> Application::windows() const {
  std::vector<Ref<Window>> all;
  for (auto* w : windows_)
    if (w != key_) all.emplace_back(w);
  if (key_) all.emplace_back(key_);
  return all;
}

Window* Application::keyWindow() const {
  if (key_) return key_;
  for (auto it = windows_.rbegin(); it != windows_.rend(); ++it)
    if (!(*it)->hidden()) return *it;
  return nullptr;
}

// --- Frames.

void Application::treeChanged() {
  if (frameAsked_) return;
  frameAsked_ = true;
  screen_.treeChanged();
}

void Application::frame() {
  frameAsked_ = true;  // what changes while the frame is made is part of it
  tick();
  layoutIfNeeded();
  auto* window = keyWindow();
  auto* root = window ? window->rootViewController() : nullptr;
  if (focus_.takeLost() && root && dialogs_.empty()) input_.focusOn(root->landmark());
  frameAsked_ = false;
  if (animator_.isAnimating()) screen_.nextFrame();
}

void Application::tick() {
  const auto at = now();
  timers_.runDue(at);
  animator_.tick(at);
}

void Application::layoutIfNeeded() {
  for (int round = 0; round < kLayoutRounds; ++round) {
    bool again = false;
    for (const auto& window : windows()) {
      if (window->hidden()) continue;
      if (!window->flag(View::NeedsLayout) && !window->flag(View::BelowNeedsLayout)) continue;
      again = true;
      window->layoutIfNeeded();
    }
    if (!again) return;
  }
  platform::log("Layout did not come to rest.");
}

// --- Dialogs and the platform.

Ref<Dialog> Application::messageBox(std::string title, std::string message,
                                    std::vector<std::string> buttons,
                                    std::function<void(int)> done) {
  auto dialog = makeShared<Dialog>();
  dialog->title = std::move(title);
  dialog->message = std::move(message);
  dialog->role = Role::Alert;
  dialog->horizontalButtons = buttons.size() <= 2;
  for (std::size_t i = 0; i < buttons.size(); ++i)
    dialog->addButton(std::move(buttons[i]), static_cast<int>(i));
  dialog->onResult = std::move(done);
  // What only informs is closed by any way out; that is no answer.
  dialog->cancelable = buttons.size() < 2;
  dialog->cancelResult = -1;
  dialog->present();
  return dialog;
}

bool Application::openUrl(const std::string& url) {
  const auto clean = outgoingLink(url);
  if (!clean) {
    platform::log("Not opened, no address for the outside: " + url);
    return false;
  }
  lastUrl_ = *clean;
  return screen_.openUrl(*clean);
}

void Application::notify(const Notification& notification) {
  constexpr std::size_t kKept = 50;
  if (notifications_.size() == kKept) notifications_.erase(notifications_.begin());
  notifications_.push_back(notification);
  screen_.notify(notification);
}

// --- Lifecycle.

void Application::activate() {
  if (state_ == State::Active) return;
  const bool returning = state_ == State::Background;
  if (returning && delegate_) delegate_->willEnterForeground();
  state_ = State::Active;
  if (delegate_) delegate_->didBecomeActive();
}

void Application::resignActive() {
  if (state_ != State::Active) return;
  input_.cancelPointer();
  if (delegate_) delegate_->willResignActive();
  state_ = State::Inactive;
}

void Application::enterBackground() {
  if (state_ == State::Background) return;
  resignActive();
  state_ = State::Background;
  if (delegate_) delegate_->didEnterBackground();
}

void Application::terminate() {
  if (delegate_) delegate_->willTerminate();
}

}  // namespace ui
