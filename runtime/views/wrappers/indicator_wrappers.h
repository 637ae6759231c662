// Progress bar and activity spinner. No events. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/indicators.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesProgressWrapper : public ViewWrapper<KesProgressWrapper, ui::ProgressView> {
 public:
  static constexpr std::string_view kPlatformClass = "UIProgressView";
  static constexpr std::string_view kName = "KesProgressWrapper";
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  float Progress() const { return static_cast<float>(self().progress()); }  // 0 to 1
  void setProgress(float progress) { self().setProgress(progress); }
};

class KesActivityIndicatorWrapper
    : public ViewWrapper<KesActivityIndicatorWrapper, ui::ActivityIndicator> {
 public:
  static constexpr std::string_view kPlatformClass = "UIActivityIndicatorView";
  static constexpr std::string_view kName = "KesActivityIndicatorWrapper";
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  void Start() { self().setSpinning(true); }
  void Stop() { self().setSpinning(false); }
  bool IsSpinning() const { return self().spinning(); }
};

}  // namespace kes
