#include "platform/ui/pages/drawer_controller.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/application.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/tree/layout_view.h"

namespace ui {

namespace {
constexpr double kGive = 0.25;  // of a pull beyond the width, as much as shows
ScrollView* firstScroller(View& view) {
  if (auto* scroll = dynamic_cast<ScrollView*>(&view)) return scroll;
  for (const auto& child : view.children())
    if (auto* found = firstScroller(*child)) return found;
  return nullptr;
}

}  // namespace

DrawerController::DrawerController(Ref<ViewController> center, Ref<ViewController> left,
                                   Ref<ViewController> right)
    : center_(std::move(center)),
      left_(std::move(left)),
      right_(std::move(right)),
      leftWidth_(style::kDrawerWidth),
      rightWidth_(style::kDrawerWidth) {
  for (const auto* c : {&center_, &left_, &right_})
    if (*c) setParent(**c, this);
}

DrawerController::~DrawerController() {
  if (viewLoaded()) static_cast<LayoutView&>(view()).onLayout = nullptr;
  if (scrim_) scrim_->setOnTap({});
  for (const auto* c : {&center_, &left_, &right_})
    if (*c) setParent(**c, nullptr);
}

Ref<View> DrawerController::loadView() {
  auto view = makeShared<LayoutView>();
  view->setClipsToBounds(true);
  if (center_) view->addSubview(Ref<View>(&center_->view()));
  scrim_ = makeShared<View>();
  scrim_->setBackground(style::kScrim);
  scrim_->setAlpha(0);
  scrim_->setHidden(true);
  scrim_->setRole(Role::None);
  scrim_->setOnTap([this](View&) { dismiss(); });
  view->addSubview(scrim_);
  for (const auto* c : {&left_, &right_}) {
    if (!*c) continue;
    auto& panel = (*c)->view();
    if (panel.background().transparent()) panel.setBackground(style::kDrawer);
    panel.setHidden(true);
    view->addSubview(Ref<View>(&panel));
  }
  view->onLayout = [this](LayoutView&) { layOut(); };
  return view;
}

std::vector<Ref<ViewController>> DrawerController::shownChildren() {
  std::vector<Ref<ViewController>> shown;
  if (center_) shown.push_back(center_);
  if (auto* open = controllerOf(open_)) shown.emplace_back(open);
  return shown;
}

ViewController* DrawerController::controllerOf(DrawerSide side) const {
  return side == DrawerSide::Left    ? left_.get()
         : side == DrawerSide::Right ? right_.get()
                                     : nullptr;
}

void DrawerController::setCenter(Ref<ViewController> center) {
  if (center == center_) return;
  Ref<ViewController> pin(this);
  const Ref<ViewController> former = std::exchange(center_, std::move(center));
  if (former) {
    former->setAppeared(false, false);
    setParent(*former, nullptr);
    if (viewLoaded() && former->viewLoaded()) former->view().removeFromParent();
  }
  if (!center_) return;
  setParent(*center_, this);
  if (viewLoaded()) {
    view().insertSubview(Ref<View>(&center_->view()), 0);
    layOut();
  }
  if (appeared()) center_->setAppeared(true, false);
}

void DrawerController::setMaximumLeftDrawerWidth(double width) {
  leftWidth_ = std::max(0.0, width);
  if (viewLoaded()) view().setNeedsLayout();
}

void DrawerController::setMaximumRightDrawerWidth(double width) {
  rightWidth_ = std::max(0.0, width);
  if (viewLoaded()) view().setNeedsLayout();
}

// Wider for larger text, as long as a finger finds the page beside it.
double DrawerController::widthIn(double all, double maximum) {
  const double wide = std::clamp(textHeight(maximum), 0.0, std::max(0.0, all - style::kTapSize));
  return std::min(std::max(maximum, wide), all);
}

double DrawerController::widthOf(DrawerSide side) {
  return widthIn(view().bounds().width, side == DrawerSide::Left ? leftWidth_ : rightWidth_);
}

Rect DrawerController::panelFrame(DrawerSide side, double shown) {
  const Size all = view().bounds().size();
  const double width = widthOf(side);
  const double beyond = std::min(width * std::max(0.0, shown - 1), all.width - width);
  const double part = std::min(shown, 1.0);
  const double x =
      side == DrawerSide::Left ? width * (part - 1) : all.width - width * part - beyond;
  return {x, 0, width + beyond, all.height};
}

void DrawerController::layOut() {
  const Rect all = view().bounds();
  if (center_) center_->view().setFrame(all);
  scrim_->setFrame(all);
  if (panning_ != DrawerSide::None) return;  // the finger places the panel
  for (const auto side : {DrawerSide::Left, DrawerSide::Right})
    if (auto* c = controllerOf(side)) c->view().setFrame(panelFrame(side, open_ == side ? 1 : 0));
}

void DrawerController::showSide(DrawerSide side, bool animated) {
  auto& panel = controllerOf(side)->view();
  if (auto* list = firstScroller(panel)) list->setMoreFade(style::kDrawer);
  panel.setHidden(false);
  panel.setUserInteraction(true);
  panel.setAccessibilityHidden(false);
  panel.setModal(true);
  scrim_->setHidden(false);
  if (auto* app = Application::current(); app && !app->focus().within(panel)) {
    former_ = WeakRef<View>(app->focus().view());
    app->input().moveFocusInto(panel);
  }
  if (appeared()) controllerOf(side)->setAppeared(true, animated);
}

void DrawerController::hideSide(DrawerSide side) {
  controllerOf(side)->view().setHidden(true);
  scrim_->setHidden(open_ == DrawerSide::None && panning_ == DrawerSide::None);
}

void DrawerController::place(DrawerSide side, double shown) {
  controllerOf(side)->view().setFrame(panelFrame(side, shown));
  scrim_->setAlpha(std::clamp(shown, 0.0, 1.0));
}

void DrawerController::settle(DrawerSide side, bool open, bool animated,
                              std::function<void()> done) {
  Ref<ViewController> pin(this);
  const Ref<ViewController> panel(controllerOf(side));
  if (open) {
    showSide(side, animated);
  } else {
    panel->view().setModal(false);
    panel->view().setUserInteraction(false);  // a second tap chooses nothing on the way out
    panel->view().setAccessibilityHidden(true);
    if (auto* app = Application::current(); app && app->focus().within(panel->view()))
      app->input().focusOn(landmark());
    panel->setAppeared(false, animated);
  }
  view().layoutIfNeeded();
  auto* app = Application::current();
  const Timing timing{animated && app && view().window() ? style::kDrawerTransition : 0,
                      Timing::EaseOut};
  const auto arrived = [weak = WeakRef<DrawerController>(this), side, open,
                        done = std::move(done)](bool) {
    const auto self = weak.lock();
    if (self && !open && self->open_ != side && self->panning_ != side) self->hideSide(side);
    if (done) done();
  };
  if (timing.milliseconds < 1) {
    place(side, open ? 1 : 0);
    arrived(true);
    return;
  }
  app->animator().alpha(*scrim_, open ? 1 : 0, timing);
  app->animator().frame(panel->view(), panelFrame(side, open ? 1 : 0), timing, arrived);
}

void DrawerController::openDrawer(DrawerSide side, bool animated, std::function<void()> done) {
  if (!controllerOf(side) || open_ == side) {
    if (done) done();
    return;
  }
  view();
  if (open_ != DrawerSide::None) closeDrawer(false);
  open_ = side;
  settle(side, true, animated, std::move(done));
}

void DrawerController::closeDrawer(bool animated, std::function<void()> done) {
  if (open_ == DrawerSide::None) {
    if (done) done();
    return;
  }
  settle(std::exchange(open_, DrawerSide::None), false, animated, std::move(done));
}

Ref<ViewController> DrawerController::beginPan(Point at, Point moved) {
  if (std::abs(moved.x) <= std::abs(moved.y)) return nullptr;
  if (open_ == DrawerSide::None && center_) {
    if (auto inner = center_->beginPan(at, moved)) return inner;
    if (center_->hasPageBehind()) return nullptr;
  }
  at = view().fromWindow(at);
  if (open_ != DrawerSide::None) {
    const bool outward =
        shouldStretchDrawer || (open_ == DrawerSide::Left ? moved.x < 0 : moved.x > 0);
    const bool inside = panelFrame(open_, 1).contains(at);
    const int needed = inside ? drawer_gesture::kPanDrawer : drawer_gesture::kPanCenter;
    if (!outward || !(closeGestureMask & needed)) return nullptr;
    panning_ = open_;
    panStart_ = 1;
    return Ref<ViewController>(this);
  }
  const auto side = moved.x > 0 ? DrawerSide::Left : DrawerSide::Right;
  const double width = view().bounds().width;
  const bool edge =
      side == DrawerSide::Left ? at.x <= style::kEdgeWidth : at.x >= width - style::kEdgeWidth;
  const bool allowed = (openGestureMask & drawer_gesture::kPanCenter) ||
                       ((openGestureMask & drawer_gesture::kPanEdge) && edge);
  if (!controllerOf(side) || !allowed) return nullptr;
  panning_ = side;
  panStart_ = 0;
  showSide(side, true);
  place(side, 0);
  return Ref<ViewController>(this);
}

void DrawerController::pan(Point moved) {
  if (panning_ == DrawerSide::None) return;
  const double width = std::max(1.0, widthOf(panning_));
  const double way = (panning_ == DrawerSide::Left ? moved.x : -moved.x) / width;
  const double shown = panStart_ + way, beyond = shouldStretchDrawer ? shown - 1 : 0;
  place(panning_, std::clamp(shown, 0.0, 1.0) + kGive * std::max(0.0, beyond));
}

void DrawerController::endPan(Point moved, double velocityX) {
  if (panning_ == DrawerSide::None) return;
  pan(moved);
  const auto side = std::exchange(panning_, DrawerSide::None);
  const double toward = side == DrawerSide::Left ? 1 : -1;
  const double shown = panStart_ + moved.x * toward / std::max(1.0, widthOf(side));
  const bool open = std::abs(velocityX) > style::kFling ? velocityX * toward > 0 : shown > 0.5;
  open_ = open ? side : DrawerSide::None;
  settle(side, open, true, {});
  if (!open) giveFocusBack();
}

// The user has closed it: nothing was chosen.
void DrawerController::dismiss() {
  closeDrawer(true);
  giveFocusBack();
}

void DrawerController::giveFocusBack() {
  const auto former = former_.lock();
  former_ = {};
  auto* app = Application::current();
  if (app && former && former->window()) app->input().focusOn(former.get());
}

bool DrawerController::openMenu() {
  if (!left_) return false;
  openDrawer(DrawerSide::Left, true);
  return true;
}

bool DrawerController::goBack() {
  if (open_ != DrawerSide::None) {
    dismiss();
    return true;
  }
  return center_ && center_->goBack();
}

}  // namespace ui
