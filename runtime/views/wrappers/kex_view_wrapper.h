// KexViewWrapper and KesXUI: any view behind the interface that components written for
// several platforms use.
//
// KexViewWrapper forwards to the wrapper of the kind of view that it holds; an operation
// that the view does not have throws "Invalid object type". Times are milliseconds.
// Conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace kes {

class KexViewWrapper : public ViewWrapper<KexViewWrapper, ui::View> {
 public:
  static constexpr std::string_view kPlatformClass = "UIView";
  static constexpr std::string_view kName = "KexViewWrapper";
  KexViewWrapper() = default;
  KexViewWrapper(const KesViewWrapper& other) { setObject(other.objectOrNull()); }

  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;

  void SetLayoutAnimated(std::int64_t milliseconds, double left, double top, double width,
                         double height);
  void SetColorAnimated(std::int64_t milliseconds, std::int32_t from, std::int32_t to);
  KexViewWrapper Parent() const { return KesViewWrapper::Parent(); }

  // Panels.
  void AddView(const KesViewWrapper& view, double left, double top, double width, double height);
  KesLayoutValues LoadLayout(std::string_view fileName, const Ref<Kes>& bi);
  KexViewWrapper GetView(std::int32_t index) const;
  std::int32_t NumberOfViews() const { return panel().NumberOfViews(); }
  void RemoveAllViews() { panel().RemoveAllViews(); }
  KesList GetAllViewsRecursive() const { return panel().GetAllViewsRecursive(); }

  // Scroll views.
  KexViewWrapper ScrollViewInnerPanel() const { return scroll().Panel(); }
  double ScrollViewContentWidth() const { return scroll().ContentWidth(); }
  double ScrollViewContentHeight() const { return scroll().ContentHeight(); }
  void setScrollViewContentWidth(double width) { scroll().setContentWidth(width); }
  void setScrollViewContentHeight(double height) { scroll().setContentHeight(height); }
  double ScrollViewOffsetX() const { return scroll().ScrollOffsetX(); }
  double ScrollViewOffsetY() const { return scroll().ScrollOffsetY(); }
  void setScrollViewOffsetX(double x) { scroll().setScrollOffsetX(x); }
  void setScrollViewOffsetY(double y) { scroll().setScrollOffsetY(y); }

 private:
  KesPanelWrapper panel() const { return KesPanelWrapper::fromBoxed(object()); }
  KesScrollView scroll() const { return KesScrollView::fromBoxed(object()); }
};

class KesXUI final : public Object, public ByValue {
 public:
  std::string_view className() const override { return "KesXUI"; }
  static constexpr std::int32_t Color_White = static_cast<std::int32_t>(0xFFFFFFFF);
  static constexpr std::int32_t Color_Black = static_cast<std::int32_t>(0xFF000000);
  static constexpr std::int32_t Color_Transparent = 0;

  static KexViewWrapper CreatePanel(const Ref<Kes>& bi, const Text& eventName);
  static std::int32_t PaintOrColorToColor(const Value& color);
  static bool SubExists(const Value& component, std::string_view sub, std::int32_t parameters);
  static bool IsKex() { return false; }
};

}  // namespace kes
