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

#include "platform/ui/focus.h"
#include "platform/ui/input.h"
#include "platform/ui/overlays/hud.h"
#include "platform/ui/screen.h"
#include "platform/ui/text_engine.h"
#include "platform/ui/timers.h"
#include "platform/ui/tree/animation.h"
#include "platform/ui/window.h"

namespace ui {

class Dialog;

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
  Timers& timers() { return timers_; }
  Focus& focus() { return focus_; }

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
  // Nothing is animated and no tap is ignored for what was animated just now.
  bool idle() const { return !animator_.isAnimating() && !input_.settledAt(); }
  void treeChanged();  // coalesced on its way to the screen

  // --- Input.
  bool pointer(PointerPhase phase, int id, double x, double y) {
    return input_.pointer(phase, id, x, y);
  }
  void cancelPointer() { input_.cancelPointer(); }
  bool key(Key key) { return input_.key(key); }

  // --- Dialogs, topmost last.
  const std::vector<Ref<Dialog>>& dialogs() const { return dialogs_; }
  // A message box; the callback hears the index of the button pressed.
  Ref<Dialog> messageBox(std::string title, std::string message, std::vector<std::string> buttons,
                         std::function<void(int)> done);

  // --- The platform.
  // Through the gate of values/link.h: false where the address may not leave, or the screen
  // could not open it.
  bool openUrl(const std::string& url);
  const std::string& lastOpenedUrl() const { return lastUrl_; }

  void notify(const Notification& notification);
  // The last ones shown, newest last; a few dozen.
  const std::vector<Notification>& notifications() const { return notifications_; }

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

  Screen& screen_;
  TextEngine& text_;
  Animator animator_;
  Hud hud_{*this};
  Timers timers_{screen_};
  Focus focus_{screen_};
  Input input_{*this};
  std::vector<Window*> windows_;
  std::vector<const View*> modals_;
  Window* key_ = nullptr;
  std::vector<Ref<Dialog>> dialogs_;
  bool frameAsked_ = false;
  std::string lastUrl_;
  std::vector<Notification> notifications_;
  ApplicationDelegate* delegate_ = nullptr;
  State state_ = State::Inactive;
};

}  // namespace ui
