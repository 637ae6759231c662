#include "platform/ui/pages/view_controller.h"

#include "platform/ui/application.h"
#include "platform/ui/pages/drawer_controller.h"
#include "platform/ui/pages/navigation_controller.h"
#include "platform/ui/values/style.h"

namespace ui {

void NavigationItem::setTitle(std::string title) {
  title_ = std::move(title);
  page_.tellBars();
}
void NavigationItem::setPrompt(std::string prompt) {
  prompt_ = std::move(prompt);
  page_.tellBars();
}
void NavigationItem::setHidesBackButton(bool hides) {
  hidesBack_ = hides;
  page_.tellBars();
}
void NavigationItem::setTitleView(Ref<View> view) {
  titleView_ = std::move(view);
  page_.tellBars();
}
void NavigationItem::setLeftItems(BarItems items) {
  left_ = std::move(items);
  page_.tellBars();
}
void NavigationItem::setRightItems(BarItems items) {
  right_ = std::move(items);
  page_.tellBars();
}

ViewController::ViewController() = default;
ViewController::~ViewController() {
  if (view_) view_->removeFromParent();
}

View& ViewController::view() {
  if (view_) return *view_;
  view_ = loadView();
  // As large as the screen until somebody knows better, so that what is put into a page
  // before it is shown has something to go by.
  if (const auto* app = Application::current(); app && view_->bounds().empty())
    view_->setFrame({0, 0, app->screenBounds().width, app->screenBounds().height});
  return *view_;
}

Ref<View> ViewController::loadView() {
  auto view = makeShared<View>();
  view->setBackground(style::kPage);
  return view;
}

void ViewController::setTitle(std::string title) {
  title_ = title;
  navigationItem_.setTitle(std::move(title));
}

void ViewController::setToolbarItems(BarItems items) {
  toolbar_ = std::move(items);
  tellBars();
}

void ViewController::tellBars() {
  for (auto* p = parent_; p; p = p->parent_) p->barsChanged(*this);
}

NavigationController* ViewController::navigationController() const {
  for (auto* p = parent_; p; p = p->parent_)
    if (auto* nav = dynamic_cast<NavigationController*>(p)) return nav;
  return nullptr;
}

DrawerController* ViewController::drawerController() const {
  for (auto* p = parent_; p; p = p->parent_)
    if (auto* drawer = dynamic_cast<DrawerController*>(p)) return drawer;
  return nullptr;
}

void ViewController::setAppeared(bool appeared, bool animated) {
  if (appeared == appeared_) return;
  Ref<ViewController> pin(this);
  appeared_ = appeared;
  if (appeared)
    viewWillAppear(animated);
  else
    viewWillDisappear(animated);
  if (appeared_ != appeared) return;  // turned round by the page itself
  for (const auto& child : shownChildren())
    if (child) child->setAppeared(appeared, animated);
}

}  // namespace ui
