#include "runtime/views/pages/page.h"

#include "platform/ui/pages/navigation_controller.h"
#include "runtime/views/base/device.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"
#include "runtime/views/layout/layout_builder.h"
#include "runtime/views/pages/bar_button_item.h"

namespace kes {

namespace {

constexpr int kBarSlots = 5;

KesList listOf(const ui::BarItems& items) {
  return KesList::of(std::vector<Value>(items.begin(), items.end()));
}

ui::BarItems itemsOf(const KesList& list) {
  ui::BarItems items;
  if (!list.IsInitialized()) return items;
  for (const Value& v : list) items.push_back(KesBarButtonItemWrapper::fromBoxed(v).native());
  return items;
}

// Not the item's number, which a flexible space's would be 5.
bool endsInSpace(const ui::BarItems& items) { return items.back()->style() == 5; }

}  // namespace

void KesPage::Initialize(const Ref<Kes>& bi, const Text& eventName) {
  setObject(platform::makeShared<KesViewController>(bi, eventName));
}

KesViewController& KesPage::page() const {
  const auto controller = object().as<KesViewController>();
  if (!controller)
    throw KesException("Invalid object type",
                       formatText("Expected: %@, object type: %@",
                                  {"KesViewController", object().object()->className()}));
  return *controller;
}

KesPanelWrapper KesPage::RootPanel() const {
  return KesPanelWrapper::fromBoxed(Ref<ui::View>(&page().mainView().holder()));
}

void KesPage::setTitle(const Value& title) { native()->setTitle(textForm(title)); }

void KesPage::setPrompt(const Value& prompt) {
  native()->navigationItem().setPrompt(prompt.isNil() ? "" : textForm(prompt));
}

KesViewWrapper KesPage::TitleView() const {
  KesViewWrapper view;
  if (auto* v = native()->navigationItem().titleView()) view.setObject(Ref<ui::View>(v));
  return view;
}

void KesPage::setTitleView(const KesViewWrapper& view) {
  native()->navigationItem().setTitleView(view.nativeOrNull());
}

bool KesPage::Visible() const { return page().visible(); }

Value KesPage::TabBarItem() const { return getMap(*native()).get("tabBarItem"); }
void KesPage::setTabBarItem(Value item) { getMap(*native()).set("tabBarItem", std::move(item)); }

KesList KesPage::TopRightButtons() const { return listOf(native()->navigationItem().rightItems()); }
KesList KesPage::TopLeftButtons() const { return listOf(native()->navigationItem().leftItems()); }
KesList KesPage::ToolbarButtons() const { return listOf(native()->toolbarItems()); }

void KesPage::setTopRightButtons(const KesList& buttons) {
  auto& item = native()->navigationItem();
  item.setRightItems({});
  item.setRightItems(itemsOf(buttons));
  page().setBarAction(item.rightItems());
}
void KesPage::setTopLeftButtons(const KesList& buttons) {
  auto& item = native()->navigationItem();
  item.setLeftItems({});
  item.setLeftItems(itemsOf(buttons));
  page().setBarAction(item.leftItems());
}
void KesPage::setToolbarButtons(const KesList& buttons) {
  native()->setToolbarItems({});
  native()->setToolbarItems(itemsOf(buttons));
  page().setBarAction(native()->toolbarItems());
}

KesRect KesPage::SafeAreaInsets() const {
  KesRect rect;
  if (device::systemVersionNumber() < 11) return rect;
  const ui::Insets i = page().mainView().holder().safeAreaInsets();
  rect.Initialize(static_cast<float>(i.left), static_cast<float>(i.top),
                  static_cast<float>(i.right), static_cast<float>(i.bottom));
  return rect;
}

void KesPage::setStatusBarHeight(std::int32_t height) {
  page().mainView().setStatusBarSize(height);
}

void KesPage::ResignFocus() {
  for (const Value& v : RootPanel().GetAllViewsRecursive())
    KesViewWrapper::fromBoxed(v).ResignFocus();
}

Text KesPage::description() const {
  return formatText("Page: %@", {IsInitialized() ? native()->title() : std::string("null")});
}

void KesPage::buildPage(KesViewController& controller, const Dictionary& properties, bool bridge) {
  const std::string title = props::string(properties, "title");
  controller.setTitle(bridge ? "(Bridge) " + title : title);
  auto& item = controller.navigationItem();
  item.setPrompt(props::string(properties, "prompt"));
  item.setHidesBackButton(props::flag(properties, "hideBackButton"));
  if (auto* nav = controller.navigationController(); nav && bridge) {
    nav->setNavigationBarHidden(!props::flag(properties, "navigationBarVisible"));
    nav->setToolbarHidden(!props::flag(properties, "navigationToolbarVisible"));
    nav->visibleViewController()->view().setNeedsLayout();
  }
  ui::BarItems right, toolbar;
  for (int i = 0; i < kBarSlots; ++i) {
    const auto built = [&](const char* key) {
      return KesBarButtonItemWrapper::buildBarButton(
          props::map(properties, key + std::to_string(i)), bridge);
    };
    if (auto button = built("topRight")) right.push_back(button);
    if (auto button = built("toolbar")) {
      if (!toolbar.empty() && !endsInSpace(toolbar))
        toolbar.push_back(ui::BarButtonItem::system(ui::BarButtonItem::kFlexibleSpace));
      toolbar.push_back(button);
    }
  }
  controller.setToolbarItems(toolbar);
  item.setRightItems(right);
  if (bridge) return;
  controller.setBarAction(toolbar);
  controller.setBarAction(right);
}

}  // namespace kes
