// KesPage: one screen of the application: a root panel, a title and bar buttons.
//
// A plain copyable member over a page controller, which the wrappers and the navigation
// stack keep alive. Initialize makes a new page; until then operations throw "Object was
// not initialized (%@)". Events: "_appear", "_disappear", "_resize::" (width, height),
// "_keyboardstatechanged:" (height), "_barbuttonclick:" (tag). Main thread, points.
#pragma once

#include "runtime/core/list.h"
#include "runtime/views/base/rect.h"
#include "runtime/views/pages/view_controller.h"

namespace kes {

class KesPage final : public TypedWrapper<KesPage, ui::ViewController> {
 public:
  static constexpr std::string_view kPlatformClass = "UIViewController";
  std::string_view className() const override { return "KesPage"; }

  void Initialize(const Ref<Kes>& bi, const Text& eventName);

  KesPanelWrapper RootPanel() const;
  Text Title() const { return Text(native()->title()); }
  void setTitle(const Value& title);
  Text Prompt() const { return Text(native()->navigationItem().prompt()); }
  void setPrompt(const Value& prompt);  // empty: none
  bool HideBackButton() const { return native()->navigationItem().hidesBackButton(); }
  void setHideBackButton(bool hide) { native()->navigationItem().setHidesBackButton(hide); }
  KesViewWrapper TitleView() const;
  void setTitleView(const KesViewWrapper& view);
  bool Visible() const;
  Value TabBarItem() const;
  void setTabBarItem(Value item);

  // Bar items, to be read and given as KesBarButtonItemWrapper. Never uninitialised.
  KesList TopRightButtons() const;
  KesList TopLeftButtons() const;
  KesList ToolbarButtons() const;
  void setTopRightButtons(const KesList& buttons);
  void setTopLeftButtons(const KesList& buttons);
  void setToolbarButtons(const KesList& buttons);

  KesRect SafeAreaInsets() const;
  void setStatusBarHeight(std::int32_t height);
  void ResignFocus();
  Text description() const override;

  // The page properties of a layout's root map.
  static void buildPage(KesViewController& controller, const Dictionary& properties, bool bridge);

 private:
  KesViewController& page() const;  // throws for a controller of another kind
};

}  // namespace kes
