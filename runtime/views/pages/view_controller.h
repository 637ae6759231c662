// KesViewController and KesMainView: the page behind KesPage.
//
// The main view holds one panel, the root panel, and gives it the room that the status
// bar leaves: from the start, when it is as large as the screen, and again as soon as the
// page is put below a bar. Page events ("_appear", "_disappear", "_keyboardstatechanged:",
// "_barbuttonclick:") go to the Kes and prefix that were attached to the controller;
// the root panel raises "_resize::" under the same prefix. Shared by the page's wrappers
// and its container. Main thread, points.
#pragma once

#include "platform/ui/pages/view_controller.h"
#include "runtime/core/described.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace kes {

class KesViewController;

class KesMainView final : public ui::View {
 public:
  explicit KesMainView(KesViewController& controller);
  std::string_view className() const override { return "KesMainView"; }

  KesPanelView& holder() const { return *holder_; }
  Ref<KesViewController> controller() const { return parent_.lock(); }
  std::int32_t statusBarSize() const { return statusBarSize_; }
  // Until the next layout pass.
  void setStatusBarSize(std::int32_t height) { statusBarSize_ = height; }

 protected:
  void layoutSubviews() override;
  void sizeChanged() override;

 private:
  void placeHolder();

  Ref<KesPanelView> holder_;
  WeakRef<KesViewController> parent_;
  std::int32_t statusBarSize_ = 0, currentStatusBarSize_ = 0;
  ui::Size currentSize_;
};

class KesViewController final : public ui::ViewController, public Described {
 public:
  KesViewController(const Ref<Kes>& bi, const Text& eventName);
  ~KesViewController() override;

  KesMainView& mainView() const { return *mainView_; }
  bool visible() const;
  // A press of a bar button.
  void toolbarClick(ui::BarButtonItem& item);
  // Gives those of the items that do nothing yet this page as their target.
  void setBarAction(const ui::BarItems& items);
  Text description() const override { return "Page (vc): " + title(); }

 protected:
  Ref<ui::View> loadView() override { return mainView_; }
  void viewWillAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;

 private:
  void stopObserving();

  Ref<KesMainView> mainView_;
  std::uint64_t keyboardObserver_ = 0;
};

}  // namespace kes
