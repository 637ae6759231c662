#include "runtime/views/wrappers/scroll_view_wrapper.h"

#include "runtime/views/base/properties.h"

namespace kes {

namespace {
constexpr std::int64_t kScrollMilliseconds = 300;
}

void KesScrollView::Initialize(const Ref<Kes>& bi, const Text& eventName, double contentWidth,
                               double contentHeight) {
  innerInitialize(bi, eventName, false);
  self().setContentSize({contentWidth, contentHeight});
}

Ref<ui::View> KesScrollView::makeView() const {
  auto scroll = platform::makeShared<ui::ScrollView>();
  scroll->setContent(platform::makeShared<KesPanelView>());
  return scroll;
}

void KesScrollView::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::ScrollView& scroll = self();
  if (!hasMethod(scroll, "_scrollchanged::")) return;
  // Raised at once, where other events wait their turn: what follows the finger would lag.
  scroll.onScroll = [&scroll](double x, double y) {
    const Value params[] = {x, y};
    raiseEvent(scroll, "_scrollchanged::", params);
  };
}

Ref<ui::View> KesScrollView::build(Ref<ui::View> view, const Dictionary& properties,
                                   bool bridge) const {
  if (!dynamic_cast<ui::ScrollView*>(view.get())) view = makeView();
  auto& scroll = static_cast<ui::ScrollView&>(*view);
  scroll.setContentSize(
      {props::number(properties, "contentWidth"), props::number(properties, "contentHeight")});
  scroll.setPaging(props::flag(properties, "pagingEnabled"));
  scroll.setBounces(props::flag(properties, "bounces"));
  scroll.setIndicators(props::flag(properties, "showsVerticalIndicator"),
                       props::flag(properties, "showsHorizontalIndicator"));
  return KesViewWrapper::build(std::move(view), properties, bridge);
}

KesPanelWrapper KesScrollView::Panel() const {
  ui::ScrollView& scroll = self();
  return KesPanelWrapper::fromBoxed(Ref<ui::View>(&scroll.content()));
}

void KesScrollView::setContentWidth(double width) {
  self().setContentSize({width, ContentHeight()});
}
void KesScrollView::setContentHeight(double height) {
  self().setContentSize({ContentWidth(), height});
}
void KesScrollView::setScrollOffsetX(double x) { self().setOffset({x, ScrollOffsetY()}); }
void KesScrollView::setScrollOffsetY(double y) { self().setOffset({ScrollOffsetX(), y}); }

void KesScrollView::ScrollTo(double x, double y, bool animated) {
  self().scrollTo({x, y}, animated ? kScrollMilliseconds : 0);
}

void KesScrollView::setShowsVerticalIndicator(bool shows) {
  self().setIndicators(shows, ShowsHorizontalIndicator());
}
void KesScrollView::setShowsHorizontalIndicator(bool shows) {
  self().setIndicators(ShowsVerticalIndicator(), shows);
}

}  // namespace kes
