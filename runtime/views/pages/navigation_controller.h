// KesNavigationControllerWrapper: the stack of pages.
//
// A plain copyable member over a navigation controller; pages on the stack are kept
// alive by it. Main thread. Operations throw "Object was not initialized (%@)" before
// Initialize.
#pragma once

#include "platform/ui/pages/navigation_controller.h"
#include "runtime/core/list.h"
#include "runtime/views/pages/page.h"

namespace kes {

class KesNavigationController final : public ui::NavigationController {
 public:
  std::int32_t supportedOrientations = 0;  // kept, and not asked
  // All four, whatever the field holds.
  std::int32_t supportedInterfaceOrientations() const { return 30; }
};

class KesNavigationControllerWrapper final
    : public TypedWrapper<KesNavigationControllerWrapper, ui::NavigationController> {
 public:
  static constexpr std::string_view kPlatformClass = "UINavigationController";
  std::string_view className() const override { return "KesNavigationControllerWrapper"; }

  void Initialize(const Ref<Kes>& bi, const Text& eventName);

  bool NavigationBarVisible() const { return !native()->navigationBarHidden(); }
  void setNavigationBarVisible(bool visible) { native()->setNavigationBarHidden(!visible); }
  void SetNavigationBarVisibleAnimated(bool visible) {
    native()->setNavigationBarHidden(!visible, true);
  }
  bool ToolBarVisible() const { return !native()->toolbarHidden(); }
  void setToolBarVisible(bool visible) { native()->setToolbarHidden(!visible, true); }
  std::int32_t SupportedOrientations() const;
  void setSupportedOrientations(std::int32_t mask);

  void SetPagesStack(const KesList& pages);
  // Goes back to a page that is on the stack, pushes any other.
  void ShowPage(const KesPage& page) { ShowPage2(page, true); }
  void ShowPage2(const KesPage& page, bool animated);
  void RemoveCurrentPage() { RemoveCurrentPage2(true); }
  void RemoveCurrentPage2(bool animated) { native()->pop(animated); }
};

}  // namespace kes
