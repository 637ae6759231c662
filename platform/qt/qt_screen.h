// The screen on a desk or a phone: one window in which the view tree is mirrored as Qt
// Quick items (only what can be seen), and the desktop's services around it.
//
// Made before the Application, which is given the screen and its textEngine(), and must
// outlive it; a PlatformScope must be in force. Frames are made when the window draws,
// and only while something changes; a QtLoop runs the main queue. Main thread, points.
// The constructor throws std::runtime_error where there is no display.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/qt/qt_process.h"
#include "platform/ui/screen.h"
#include "platform/ui/text_engine.h"
#include "platform/ui/values/geo.h"

class QQuickWindow;

namespace qt {

class QtScreen final : public ui::Screen {
 public:
  struct Options {
    ui::Size size{375, 667};
    QtProcess::Options process;  // used where no QtProcess is running yet
    double statusBar = ui::style::kStatusBarHeight;
    double textScale = 0;  // the reader's text size; 0: as the desktop says
    bool resizable = true;
    double keyboard = 0;  // height of a simulated on-screen keyboard; 0: there is none
    // Opens an address instead of the desktop; answers whether it could.
    std::function<bool(const std::string& url)> opener;
    // Where the phone is, once and for all; or else whether the desktop is asked for it.
    std::optional<ui::GeoPoint> position;
    bool asksWhere = false;
  };

  explicit QtScreen(Options options);
  ~QtScreen() override;

  ui::TextEngine& textEngine();
  void show();

  // Once the first frame is on the screen; once the user has closed the window.
  std::function<void()> onFirstFrame, onClosed;
  bool firstFrameShown() const;
  // No frame is due, nothing scrolls by itself, no page is loading.
  bool idle() const;
  // Called when one of these may have come about.
  std::function<void()> onIdleChanged;

  // Writes what the window shows as a PNG, in pixels. For pages that are still loading
  // see QtLoop::grab().
  bool grab(const std::string& path);
  // Views that have an item now.
  std::size_t shownViews() const;
  QQuickWindow& window();

  // --- ui::Screen
  ui::Rect bounds() const override;
  double scale() const override;
  double statusBarHeight() const override;
  void treeChanged() override;
  void nextFrame() override;
  void requestTick(std::int64_t milliseconds) override;
  bool openUrl(const std::string& url) override;
  void notify(const ui::Notification& notification) override;
  void focusChanged(ui::View* view, bool byKeyboard) override;
  void announce(const std::string& text) override;
  double keyboardHeight() const override;
  bool scrollsNatively() const override { return true; }

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace qt
