// Progress bar and activity spinner: state only; the screen moves the spinner. Main
// thread.
#pragma once

#include "platform/ui/tree/view.h"

namespace ui {

class ProgressView : public View {
 public:
  ProgressView() { setUserInteraction(false); }
  std::string_view className() const override { return "UIProgressView"; }
  double progress() const { return progress_; }  // 0 to 1
  void setProgress(double progress);
  std::string accessibleValue() const override;
  std::optional<Color> progressColor;

 protected:
  Role defaultRole() const override { return Role::ProgressBar; }

 private:
  double progress_ = 0;
};

class ActivityIndicator : public View {
 public:
  ActivityIndicator() { setUserInteraction(false); }
  std::string_view className() const override { return "UIActivityIndicatorView"; }
  bool spinning() const { return spinning_; }
  void setSpinning(bool spinning);
  int style() const { return style_; }  // 0 large white, 1 white, 2 grey
  void setStyle(int style);
  Color color() const { return color_; }
  void setColor(Color color);

 protected:
  // At rest there is nothing to see, and nothing to tell of.
  Role defaultRole() const override { return spinning_ ? Role::ActivityIndicator : Role::None; }

 private:
  Color color_{0xFF808080};
  int style_ = 1;
  bool spinning_ = false;
};

}  // namespace ui
