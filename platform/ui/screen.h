// What a side implements: a screen of some size that mirrors the view tree, and the
// services of the platform around it. Owned by the side and given to the Application,
// which calls it on the main thread. Points and milliseconds. Must not throw.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ui/values/geometry.h"
#include "platform/ui/values/style.h"

namespace ui {

class View;

struct Notification {
  std::string title, body;
  bool sound = true;
};

class Screen {
 public:
  virtual ~Screen() = default;

  virtual Rect bounds() const = 0;
  virtual double scale() const = 0;  // pixels a point
  virtual double statusBarHeight() const { return style::kStatusBarHeight; }

  // Something is to be drawn anew: call Application::frame() soon, then mirror what
  // Window::visitVisible() shows. Not called again before that frame().
  virtual void treeChanged() = 0;
  // Something is animated: call frame() at the next refresh.
  virtual void nextFrame() { treeChanged(); }
  // Call Application::tick() when so much time has passed (again for each request).
  virtual void requestTick(std::int64_t milliseconds) = 0;

  virtual bool openUrl(const std::string& url) = 0;
  virtual void notify(const Notification& notification) = 0;

  // The focus moved (null: nowhere). The screen draws a ring around it if byKeyboard.
  virtual void focusChanged(View* /*view*/, bool /*byKeyboard*/) {}
  // Said aloud by assistive technology without moving the focus.
  virtual void announce(const std::string& /*text*/) {}
  // Height of the keyboard that comes up for text input; 0 where there is none.
  virtual double keyboardHeight() const { return 0; }
  // True when the screen's own scrollers turn drags into ScrollView::setOffset().
  virtual bool scrollsNatively() const { return false; }
};

}  // namespace ui
