#include "platform/ui/pages/navigation_controller.h"

#include <algorithm>
#include <cmath>

#include "platform/base/platform.h"
#include "platform/ui/application.h"
#include "platform/ui/pages/bar_view.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/tree/layer_view.h"
#include "platform/ui/tree/layout_view.h"
#include "platform/ui/values/style.h"

namespace ui {

NavigationController::NavigationController()
    : bar_(makeShared<BarView>(BarView::Kind::Navigation)),
      toolbar_(makeShared<BarView>(BarView::Kind::Toolbar)),
      container_(makeShared<View>()),
      cover_(makeShared<LayerView>()) {
  toolbar_->setHidden(true);
  toolbar_->setAccessibilityHidden(true);
  container_->setClipsToBounds(true);
  bar_->onBack = [this] { goBack(); };
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
  view->addSubview(cover_);
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
  if (!appeared() || !top || topViewController() != top.get()) return;
  top->setAppeared(true, animated);
  if (auto* app = Application::current(); app && formerTop && topViewController() == top.get())
    app->input().focusOn(landmark());
}

void NavigationController::showTop(ViewController* former, Slide way) {
  if (!viewLoaded()) return;
  panning_ = false;
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
    container_->insertSubview(coming, way == Slide::Backward ? 0 : container_->children().size());
  }
  if (way == Slide::None || !app || !leaving || !coming || !container_->window()) {
    if (coming) {
      if (app) app->animator().cancel(*coming, Property::Center);
      coming->setFrame(here);
    }
    if (leaving && leaving != coming) leaving->removeFromParent();
    return;
  }
  slide(*leaving, *coming, way);
}

// The page in front moves the whole width, the one behind it a third of it.
void NavigationController::slide(View& leaving, View& coming, Slide way) {
  auto& app = *Application::current();
  const bool forward = way == Slide::Forward;
  const Rect here{0, 0, container_->bounds().width, container_->bounds().height};
  const Timing timing{style::kPageTransition, Timing::EaseOut};
  slideEnds_ = platform::current().clock().monotonic() + timing.milliseconds;
  app.input().ignoreTaps(view(), timing.milliseconds);
  app.input().ignoreTaps(*container_, timing.milliseconds + style::kTapPause);
  app.input().ignoreTaps(bar_->backButton(), timing.milliseconds + style::kTapPause);
  if (!std::exchange(swiped_, false))
    coming.setFrame(here.movedBy({forward ? here.width : -here.width / 3, 0}));
  app.animator().center(coming, here.center(), timing);
  leaving.setAccessibilityHidden(true);
  if (app.focus().within(leaving)) app.focus().set(nullptr);
  app.animator().center(
      leaving, here.movedBy({forward ? -here.width / 3 : here.width, 0}).center(), timing,
      [weak = WeakRef<NavigationController>(this), view = WeakRef<View>(&leaving)](bool) {
        const auto nav = weak.lock();
        const auto gone = view.lock();
        if (!gone) return;
        gone->setAccessibilityHidden(false);
        const bool top = nav && !nav->pages_.empty() && &nav->pages_.back()->view() == gone.get();
        if (!top && (!nav || gone->parent() == nav->container_.get())) gone->removeFromParent();
      });
}

bool NavigationController::sliding() const {
  return platform::current().clock().monotonic() < slideEnds_;
}

// --- The swipe from the edge.

Ref<ViewController> NavigationController::beginPan(Point at, Point moved) {
  const bool fromEdge = view().fromWindow(at).x <= style::kEdgeWidth && moved.x > std::abs(moved.y);
  if (pages_.size() < 2 || !fromEdge || sliding()) return nullptr;
  if (pages_.back()->navigationItem().hidesBackButton()) return nullptr;
  View& behind = pages_[pages_.size() - 2]->view();
  const Rect here{0, 0, container_->bounds().width, container_->bounds().height};
  behind.setFrame(here.movedBy({-here.width / 3, 0}));
  behind.setAccessibilityHidden(true);
  container_->insertSubview(Ref<View>(&behind), 0);
  panning_ = true;
  return Ref<ViewController>(this);
}

void NavigationController::pan(Point moved) {
  if (!panning_) return;
  const Point middle = container_->bounds().center();
  const double x = std::clamp(moved.x, 0.0, container_->bounds().width);
  pages_.back()->view().setCenter({middle.x + x, middle.y});
  pages_[pages_.size() - 2]->view().setCenter(
      {middle.x + (x - container_->bounds().width) / 3, middle.y});
}

void NavigationController::endPan(Point moved, double velocityX) {
  if (!panning_) return;
  pan(moved);
  panning_ = false;
  const double width = container_->bounds().width;
  const bool back = std::abs(velocityX) > style::kFling ? velocityX > 0 : moved.x > width / 2;
  if (back) {
    swiped_ = true;
    if (!goBack()) swiped_ = false;
    return;
  }
  // The page on top goes back over the other, which then has no place here.
  const Ref<View> behind(&pages_[pages_.size() - 2]->view());
  auto& animator = Application::current()->animator();
  const Timing timing{style::kPageTransition, Timing::EaseOut};
  const Point middle = container_->bounds().center();
  animator.center(*behind, {middle.x - width / 3, middle.y}, timing);
  animator.center(
      pages_.back()->view(), middle, timing,
      [weak = WeakRef<NavigationController>(this), behind](bool) {
        behind->setAccessibilityHidden(false);
        const auto nav = weak.lock();
        const auto* top = nav ? nav->topViewController() : nullptr;
        const bool shown =
            top && top->viewLoaded() && &nav->topViewController()->view() == behind.get();
        if (!shown && nav && !nav->panning_ && behind->parent() == nav->container_.get())
          behind->removeFromParent();
      });
}

View* NavigationController::landmark() {
  if (!topViewController()) return nullptr;
  if (!barHidden_ && !bar_->titleLabel().hidden()) return &bar_->titleLabel();
  const auto order = focusOrder(*container_);
  return order.empty() ? nullptr : order.front().get();
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
  cover_->setFrame(content);
  if (auto* top = topViewController()) top->view().setFrame({0, 0, content.width, content.height});
}

// A second step while the first is still to be seen was meant as one.
View* NavigationController::cover() { return cover_.get(); }

bool NavigationController::goBack() {
  if (sliding()) return true;
  auto* top = topViewController();
  if (top && top->goBack()) return true;
  return pop(true).get() != nullptr;
}

}  // namespace ui
