#include "platform/ui/controls/scroll_view.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/application.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {
constexpr double kMostFade = 32;  // points
}

ScrollView::ScrollView() {
  setClipsToBounds(true);
  setContent(makeShared<View>());
}

ScrollView::~ScrollView() = default;

void ScrollView::setContent(Ref<View> content) {
  if (!content || content == content_) return;
  if (content_) content_->removeFromParent();
  content_ = std::move(content);
  insertSubview(content_, 0);
  setContentSize(contentSize());
}

void ScrollView::setContentSize(Size size) {
  content_->setFrame({0, 0, size.width, size.height});
  markChanged(Change::Scroll);
  setNeedsLayout();
}

void ScrollView::reveal(View& inside) {
  const Point origin = inside.toWindow({}) - content_->toWindow({});
  const double fade = moreFade_ ? fadeHeight() : 0;  // not under that
  scrollToShow({origin.x, origin.y, inside.bounds().width, inside.bounds().height + fade});
}

double ScrollView::fadeHeight() const { return std::min(kMostFade, bounds().height / 3); }

Point ScrollView::maxOffset() const {
  const Size c = contentSize(), v = bounds().size();
  return {std::max(0.0, c.width - v.width), std::max(0.0, c.height - v.height)};
}

void ScrollView::setOffset(Point offset) {
  const Point max = maxOffset();
  offset = {std::clamp(offset.x, 0.0, max.x), std::clamp(offset.y, 0.0, max.y)};
  if (offset == offset_) return;
  offset_ = offset;
  markChanged(Change::Scroll);
  Ref<View> pin(this);
  offsetChanged();
  if (const auto hook = onScroll) hook(offset.x, offset.y);
}

void ScrollView::scrollTo(Point offset, std::int64_t milliseconds) {
  auto* app = Application::current();
  if (!app || milliseconds < 1) return setOffset(offset);
  const Point from = offset_;
  app->animator().value(
      *this, 0, 1,
      [this, from, offset](double t) {
        setOffset({from.x + (offset.x - from.x) * t, from.y + (offset.y - from.y) * t});
      },
      {milliseconds, Timing::EaseOut});
}

void ScrollView::scrollToShow(const Rect& area) {
  const auto move = [](double offset, double visible, double from, double extent) {
    if (from < offset || extent > visible) return from;
    return std::max(offset, from + extent - visible);
  };
  const Size v = bounds().size();
  setOffset({move(offset_.x, v.width, area.x, area.width),
             move(offset_.y, v.height, area.y, area.height)});
}

// A page less what a row needs, so that the last line read stays in sight.
void ScrollView::scrollByKey(Key key) {
  if (auto* app = Application::current()) app->animator().cancel(*this, Property::Value);
  const double page = std::max(1.0, bounds().height - style::kTapSize);
  switch (key) {
    case Key::PageUp:
      return setOffset({offset_.x, offset_.y - page});
    case Key::PageDown:
      return setOffset({offset_.x, offset_.y + page});
    case Key::Home:
      return setOffset({offset_.x, 0});
    default:
      return setOffset({offset_.x, maxOffset().y});
  }
}

Point ScrollView::restingPage(Point start, Point velocity) const {
  const auto rest = [](double from, double now, double page, double speed, double most) {
    if (page <= 0) return now;
    double to = std::round(now / page);
    if (std::abs(speed) >= style::kFling) to = std::round(from / page) + (speed > 0 ? 1 : -1);
    return std::clamp(to * page, 0.0, most);
  };
  const Size page = bounds().size();
  const Point most = maxOffset();
  return {rest(start.x, offset_.x, page.width, velocity.x, most.x),
          rest(start.y, offset_.y, page.height, velocity.y, most.y)};
}

void ScrollView::setPaging(bool paging) {
  if (paging == paging_) return;
  paging_ = paging;
  markChanged(Change::Scroll);
}

void ScrollView::setBounces(bool bounces) {
  if (bounces == bounces_) return;
  bounces_ = bounces;
  markChanged(Change::Scroll);
}

void ScrollView::setIndicators(bool vertical, bool horizontal) {
  if (vertical == vertical_ && horizontal == horizontal_) return;
  vertical_ = vertical;
  horizontal_ = horizontal;
  markChanged(Change::Scroll);
}

void ScrollView::setMoreFade(std::optional<Color> color) {
  if (color == moreFade_) return;
  moreFade_ = color;
  markChanged(Change::Scroll);
}

void ScrollView::setScrollEnabled(bool enabled) {
  if (enabled == scrollEnabled_) return;
  scrollEnabled_ = enabled;
  markChanged(Change::Scroll);
}

void ScrollView::layoutSubviews() { setOffset(offset_); }

}  // namespace ui
