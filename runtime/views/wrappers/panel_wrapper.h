// KesPanelWrapper: a container of views, into which layouts are loaded.
//
// Events: "_click", "_longclick", "_touch:::" (action, x, y), "_resize::" (width,
// height). Conditions as for KesViewWrapper.
#pragma once

#include "runtime/core/list.h"
#include "runtime/views/base/view_wrapper.h"
#include "runtime/views/layout/layout_values.h"
#include "runtime/views/wrappers/panel_view.h"

namespace kes {

class KesPanelWrapper : public ViewWrapper<KesPanelWrapper, KesPanelView> {
 public:
  static constexpr std::string_view kPlatformClass = "KesPanelView";
  static constexpr std::string_view kName = "KesPanelWrapper";
  static constexpr std::int32_t ACTION_DOWN = 0, ACTION_UP = 1, ACTION_MOVE = 2;

  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  void AddView(const KesViewWrapper& view, double left, double top, double width, double height);
  // Builds the views of a layout file; see KesLayoutBuilder::loadLayout.
  KesLayoutValues LoadLayout(std::string_view fileName, const Ref<Kes>& bi);
  void RemoveAllViews() { view().removeAllSubviews(); }
  void RemoveViewAt(std::int32_t index);
  KesViewWrapper GetView(std::int32_t index) const;
  KesViewWrapper Get(std::int32_t index) const { return GetView(index); }
  std::int32_t NumberOfViews() const { return static_cast<std::int32_t>(view().children().size()); }
  std::int32_t Size() const { return NumberOfViews(); }
  // The views of this panel, each followed by what a panel among them holds.
  KesList GetAllViewsRecursive() const;
};

}  // namespace kes
