// The one application of the process: windows, frames and timers, input, focus,
// dialogs, lifecycle, and what is handed to the platform.
//
// Made by a side with its Screen and TextEngine, which must outlive it; a
// PlatformScope must be in force. Main thread only. Points and milliseconds.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/input.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/overlays/hud.h"
#include "platform/ui/screen.h"
#include "platform/ui/text_engine.h"
#include "platform/ui/tree/animation.h"
#include "platform/ui/window.h"

namespace ui {

// Told of the life of the application, on the main thread.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void willResignActive() {}
  virtual void didEnterBackground() {}
  virtual void willEnterForeground() {}
  virtual void didBecomeActive() {}
  virtual void willTerminate() {}
};

class Application {
 public:
  enum class State { Inactive, Active, Background };

  Application(Screen& screen, TextEngine& text);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  // The current one, or null when none is made.
  static Application* current();

  Screen& screen() { return screen_; }
  TextEngine& text() { return text_; }
  Animator& animator() { return animator_; }
  Hud& hud() { return hud_; }
  Input& input() { return input_; }

  // --- The screen.
  Rect screenBounds() const { return screen_.bounds(); }
  double screenScale() const { return screen_.scale(); }
  Rect statusBarFrame() const;
  void screenChanged();  // called by the side: new size, scale or status bar

  // --- Windows, back to front.
  std::vector<Ref<Window>> windows() const;
  Window* keyWindow() const;  // the one made key, else the frontmost shown, else null

  // Every view that is modal, shown or not; each dies or turns ordinary before it leaves.
  const std::vector<const View*>& modalViews() const { return modals_; }

  // --- Frames. A side calls frame() after treeChanged() and tick() after requestTick().
  void frame();  // tick and layout pass; asks for another while something is animated
  void tick();   // due timers, animations
  void layoutIfNeeded();
  bool idle() const { return !animator_.isAnimating(); }
  void treeChanged();  // coalesced on its way to the screen
  // Timers that are no work in flight: toasts, long presses. 0 is no timer.
  std::uint64_t startTimer(std::int64_t milliseconds, std::function<void()> due);
  void stopTimer(std::uint64_t timer);
  std::optional<std::int64_t> nextTimerDue() const;  // on the monotonic clock

  // --- Input and focus.
  bool pointer(PointerPhase phase, int id, double x, double y) {
    return input_.pointer(phase, id, x, y);
  }
  void cancelPointer() { input_.cancelPointer(); }
  bool key(Key key) { return input_.key(key); }
  View* focused() const { return focused_.lock().get(); }
  bool focusByKeyboard() const { return focusByKeyboard_; }
  void setFocus(View* view, bool byKeyboard = false);
  // Height of the keyboard on show; hooks hear (shown, height).
  double keyboardHeight() const { return keyboard_; }
  void setKeyboard(double height);
  std::uint64_t addKeyboardObserver(std::function<void(bool shown, double height)> observer);
  void removeKeyboardObserver(std::uint64_t observer);

  // --- Dialogs, topmost last.
  const std::vector<Ref<Dialog>>& dialogs() const { return dialogs_; }
  // A message box; the callback hears the index of the button pressed.
  Ref<Dialog> messageBox(std::string title, std::string message, std::vector<std::string> buttons,
                         std::function<void(int)> done);

  // --- The platform.
  bool openUrl(const std::string& url);  // http, https, tel, mailto; others are refused
  const std::string& lastOpenedUrl() const { return lastUrl_; }

  // --- Lifecycle, as the side reports it.
  void setDelegate(ApplicationDelegate* delegate) { delegate_ = delegate; }
  State state() const { return state_; }
  void activate();         // inactive or background to active
  void resignActive();     // active to inactive
  void enterBackground();  // resigns first
  void terminate();

 private:
  friend class View;
  friend class Window;
  friend class Dialog;
  struct Timer {
    std::uint64_t id;
    std::int64_t due;
    std::function<void()> run;
  };
  struct KeyboardObserver {
    std::uint64_t id;
    std::function<void(bool, double)> call;
  };

  Screen& screen_;
  TextEngine& text_;
  Animator animator_;
  Hud hud_{*this};
  Input input_{*this};
  std::vector<Window*> windows_;
  std::vector<const View*> modals_;
  Window* key_ = nullptr;
  std::vector<Timer> timers_;
  std::vector<KeyboardObserver> keyboardObservers_;
  std::uint64_t nextId_ = 0;
  std::vector<Ref<Dialog>> dialogs_;
  WeakRef<View> focused_;
  bool focusByKeyboard_ = false;
  bool frameAsked_ = false;
  double keyboard_ = 0;
  std::string lastUrl_;
  ApplicationDelegate* delegate_ = nullptr;
  State state_ = State::Inactive;
};

}  // namespace ui
