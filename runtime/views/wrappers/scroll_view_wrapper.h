// KesScrollView: a window on a larger panel. Event: "_scrollchanged::" (x, y), in place,
// for each change of the offset. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/scroll_view.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace kes {

class KesScrollView : public ViewWrapper<KesScrollView, ui::ScrollView> {
 public:
  static constexpr std::string_view kPlatformClass = "UIScrollView";
  static constexpr std::string_view kName = "KesScrollView";

  void Initialize(const Ref<Kes>& bi, const Text& eventName, double contentWidth,
                  double contentHeight);
  Ref<ui::View> makeView() const override;  // with an inner panel
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  KesPanelWrapper Panel() const;
  double ContentWidth() const { return self().contentSize().width; }
  double ContentHeight() const { return self().contentSize().height; }
  void setContentWidth(double width);
  void setContentHeight(double height);
  double ScrollOffsetX() const { return self().offset().x; }
  double ScrollOffsetY() const { return self().offset().y; }
  void setScrollOffsetX(double x);
  void setScrollOffsetY(double y);
  void ScrollTo(double x, double y, bool animated);
  bool PagingEnabled() const { return self().paging(); }
  void setPagingEnabled(bool paging) { self().setPaging(paging); }
  bool Bounces() const { return self().bounces(); }
  void setBounces(bool bounces) { self().setBounces(bounces); }
  bool ScrollEnabled() const { return self().scrollEnabled(); }
  void setScrollEnabled(bool enabled) { self().setScrollEnabled(enabled); }
  bool ShowsVerticalIndicator() const { return self().showsVerticalIndicator(); }
  void setShowsVerticalIndicator(bool shows);
  bool ShowsHorizontalIndicator() const { return self().showsHorizontalIndicator(); }
  void setShowsHorizontalIndicator(bool shows);
};

}  // namespace kes
