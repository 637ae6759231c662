#include "platform/ui/pages/navigation_controller.h"

#include <algorithm>

#include "platform/ui/application.h"
#include "platform/ui/tree/layout_view.h"
#include "platform/ui/values/style.h"

namespace ui {

NavigationController::NavigationController()
    : bar_(makeShared<BarView>(BarView::Kind::Navigation)),
      toolbar_(makeShared<BarView>(BarView::Kind::Toolbar)),
      container_(makeShared<View>()) {
  toolbar_->setHidden(true);
  toolbar_->setAccessibilityHidden(true);
  container_->setClipsToBounds(true);
  bar_->onBack = [this] { pop(true); };
}

NavigationController::~NavigationController() {
  bar_->onBack = nullptr;
  if (viewLoaded()) static_cast<LayoutView&>(view()).onLayout = nullptr;
  for (const auto& page : pages_) setParent(*page, nullptr);
}

Ref<View> NavigationController::loadView() {
  auto view = makeShared<LayoutView>();
  view->setBackground(style::kPage);
  view->addSubview(container_);
  view->addSubview(bar_);
  view->addSubview(toolbar_);
  view->onLayout = [this](LayoutView&) { layOut(); };
  if (!pages_.empty()) container_->addSubview(Ref<View>(&pages_.back()->view()));
  fillBars();
  return view;
}

NavigationController::Pages NavigationController::shownChildren() {
  return pages_.empty() ? Pages{} : Pages{pages_.back()};
}

bool NavigationController::contains(const ViewController& page) const {
  return std::any_of(pages_.begin(), pages_.end(), [&](const auto& p) { return p.get() == &page; });
}

void NavigationController::push(Ref<ViewController> page, bool animated) {
  if (!page || contains(*page)) return;
  Pages pages = pages_;
  pages.push_back(std::move(page));
  replaceTop(std::move(pages), animated && !pages_.empty() ? Slide::Forward : Slide::None);
}

Ref<ViewController> NavigationController::pop(bool animated) {
  if (pages_.size() < 2) return nullptr;
  Ref<ViewController> top = pages_.back();
  replaceTop(Pages(pages_.begin(), pages_.end() - 1), animated ? Slide::Backward : Slide::None);
  return top;
}

void NavigationController::popTo(const ViewController& page, bool animated) {
  const auto it =
      std::find_if(pages_.begin(), pages_.end(), [&](const auto& p) { return p.get() == &page; });
  if (it == pages_.end() || it + 1 == pages_.end()) return;
  replaceTop(Pages(pages_.begin(), it + 1), animated ? Slide::Backward : Slide::None);
}

void NavigationController::popToRoot(bool animated) {
  if (!pages_.empty()) popTo(*pages_.front(), animated);
}

void NavigationController::setViewControllers(Pages pages, bool animated) {
  std::erase(pages, nullptr);
  const bool back = !pages.empty() && contains(*pages.back());
  replaceTop(std::move(pages), !animated ? Slide::None : back ? Slide::Backward : Slide::Forward);
}

void NavigationController::replaceTop(Pages pages, Slide slide) {
  Ref<ViewController> pin(this);
  const Pages former = std::exchange(pages_, std::move(pages));
  for (const auto& page : former)
    if (!contains(*page)) setParent(*page, nullptr);
  for (const auto& page : pages_) setParent(*page, this);
  const Ref<ViewController> formerTop = former.empty() ? nullptr : former.back();
  const Ref<ViewController> top = pages_.empty() ? nullptr : pages_.back();
  if (formerTop == top) {
    fillBars();
    return;
  }
  showTop(formerTop.get(), slide);
  const bool animated = slide != Slide::None;
  if (formerTop) formerTop->setAppeared(false, animated);
  if (appeared() && top && topViewController() == top.get()) top->setAppeared(true, animated);
}

void NavigationController::showTop(ViewController* former, Slide slide) {
  if (!viewLoaded()) return;
  fillBars();
  const Ref<View> leaving(former && former->viewLoaded() ? &former->view() : nullptr);
  const Ref<View> coming(pages_.empty() ? nullptr : &pages_.back()->view());
  const auto children = container_->children();
  for (const auto& other : children)
    if (other != leaving && other != coming) other->removeFromParent();
  auto* app = Application::current();
  const Rect content = contentFrame(), here{0, 0, content.width, content.height};
  if (coming) {
    coming->setAccessibilityHidden(false);
    container_->insertSubview(coming, slide == Slide::Backward ? 0 : container_->children().size());
  }
  if (slide == Slide::None || !app || !leaving || !coming || !container_->window()) {
    if (coming) {
      if (app) app->animator().cancel(*coming, Property::Center);
      coming->setFrame(here);
    }
    if (leaving && leaving != coming) leaving->removeFromParent();
    return;
  }
  // The page in front moves the whole width, the one behind it a third of it.
  const bool forward = slide == Slide::Forward;
  const Timing timing{style::kPageTransition, Timing::EaseOut};
  coming->setFrame(here.movedBy({forward ? here.width : -here.width / 3, 0}));
  app->animator().center(*coming, here.center(), timing);
  leaving->setAccessibilityHidden(true);
  if (auto focused = Ref<View>(app->focus().view()); focused && focused->isDescendantOf(*leaving))
    app->focus().set(nullptr);
  app->animator().center(
      *leaving, here.movedBy({forward ? -here.width / 3 : here.width, 0}).center(), timing,
      [weak = WeakRef<NavigationController>(this), view = WeakRef<View>(leaving)](bool) {
        const auto nav = weak.lock();
        const auto gone = view.lock();
        if (!gone) return;
        gone->setAccessibilityHidden(false);
        const bool top = nav && !nav->pages_.empty() && &nav->pages_.back()->view() == gone.get();
        if (!top && (!nav || gone->parent() == nav->container_.get())) gone->removeFromParent();
      });
}

void NavigationController::barsChanged(ViewController& page) {
  if (&page == topViewController()) fillBars();
}

void NavigationController::fillBars() {
  BarView::Contents above, below;
  if (auto* top = topViewController()) {
    auto& item = top->navigationItem();
    above = {item.title(),
             item.prompt(),
             Ref<View>(item.titleView()),
             item.leftItems(),
             item.rightItems(),
             pages_.size() > 1 && !item.hidesBackButton() && item.leftItems().empty()};
    below.left = top->toolbarItems();
  }
  bar_->show(std::move(above));
  toolbar_->show(std::move(below));
  if (viewLoaded()) view().setNeedsLayout();
}

void NavigationController::setNavigationBarHidden(bool hidden, bool animated) {
  if (hidden == barHidden_) return;
  setBarHidden(*bar_, barHidden_, hidden, animated);
  // The page makes room for the status bar itself once there is no bar.
  if (auto* top = topViewController(); top && viewLoaded()) top->view().setNeedsLayout();
}

void NavigationController::setToolbarHidden(bool hidden, bool animated) {
  if (hidden != toolbarHidden_) setBarHidden(*toolbar_, toolbarHidden_, hidden, animated);
}

void NavigationController::setBarHidden(BarView& bar, bool& state, bool hidden, bool animated) {
  auto* app = Application::current();
  const bool slides = animated && app && viewLoaded() && view().window();
  if (slides) view().layoutIfNeeded();  // where it starts from
  state = hidden;
  bar.setAccessibilityHidden(hidden);
  bar.setHidden(hidden && !slides);
  if (!viewLoaded()) return;
  view().setNeedsLayout();
  if (!slides) return;
  // The page has its new size at once and moves along with the bar.
  const Timing timing{style::kBarTransition, Timing::EaseOut};
  const Rect content = contentFrame(), former = container_->frame();
  container_->setFrame({former.x, former.y, content.width, content.height});
  app->animator().center(*container_, content.center(), timing);
  app->animator().frame(bar, &bar == bar_.get() ? barFrame() : toolbarFrame(), timing,
                        [weak = WeakRef<BarView>(&bar)](bool) {
                          if (const auto b = weak.lock()) b->setHidden(b->accessibilityHidden());
                        });
}

// A hidden bar waits beyond its edge.
Rect NavigationController::barFrame() {
  auto* app = Application::current();
  const double height = bar_->heightFor(app ? app->statusBarFrame().height : 0);
  return {0, barHidden_ ? -height : 0, view().bounds().width, height};
}

Rect NavigationController::toolbarFrame() {
  const Rect all = view().bounds();
  const double height = toolbar_->heightFor(0);
  return {0, all.height - (toolbarHidden_ ? 0 : height), all.width, height};
}

Rect NavigationController::contentFrame() {
  const Rect all = view().bounds();
  const double top = barHidden_ ? 0 : barFrame().height;
  const double bottom = toolbarHidden_ ? 0 : toolbarFrame().height;
  return {0, top, all.width, std::max(0.0, all.height - top - bottom)};
}

void NavigationController::layOut() {
  const Rect content = contentFrame();
  auto* app = Application::current();
  bar_->topInset = app ? app->statusBarFrame().height : 0;
  bar_->setFrame(barFrame());
  bar_->setNeedsLayout();
  toolbar_->setFrame(toolbarFrame());
  container_->setFrame(content);
  if (auto* top = topViewController()) top->view().setFrame({0, 0, content.width, content.height});
}

bool NavigationController::goBack() {
  auto* top = topViewController();
  if (top && top->goBack()) return true;
  return pop(true).get() != nullptr;
}

}  // namespace ui
