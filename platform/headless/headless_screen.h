// A screen that draws nothing and remembers what was asked of it: opened addresses,
// notifications, announcements, frames. Owned by the test or the simulator; must
// outlive the Application. Main thread, points.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ui/screen.h"
#include "platform/ui/values/geo.h"

namespace headless {

class HeadlessScreen final : public ui::Screen {
 public:
  explicit HeadlessScreen(ui::Size size = {320, 568}, double scale = 2)
      : size_(size), scale_(scale) {}

  ui::Rect bounds() const override { return {0, 0, size_.width, size_.height}; }
  double scale() const override { return scale_; }
  double statusBarHeight() const override { return statusBar; }
  void treeChanged() override { frameWanted_ = true; }
  // The pump asks the application itself.
  void nextFrame() override {}
  void requestTick(std::int64_t) override {}
  bool openUrl(const std::string& url) override;
  void notify(const ui::Notification& n) override { notifications.push_back(n); }
  void focusChanged(ui::View*, bool) override {}
  void announce(const std::string& text) override { announcements.push_back(text); }
  double keyboardHeight() const override { return keyboard; }

  // Turns or resizes the phone; tell the application (screenChanged).
  void setSize(ui::Size size) { size_ = size; }
  bool frameWanted() const { return frameWanted_; }
  void frameTaken() { frameWanted_ = false; }

  double statusBar = ui::style::kStatusBarHeight;
  double keyboard = 0;
  bool opens = true;                     // what openUrl() answers
  std::optional<ui::GeoPoint> position;  // where the phone is, if that can be known
  std::vector<std::string> opened;
  std::vector<ui::Notification> notifications;
  std::vector<std::string> announcements;

 private:
  ui::Size size_;
  double scale_;
  bool frameWanted_ = false;
};

}  // namespace headless
