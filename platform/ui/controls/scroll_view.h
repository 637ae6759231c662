// A window on a larger content panel.
//
// Children that are to scroll go into content(). The program and the user move it the
// same way: setOffset() is where both end, and where onScroll is raised, once for each
// change. The offset is kept within the content; a screen whose own scroller bounces
// shows the bounce itself and reports clamped offsets. Main thread, points.
#pragma once

#include "platform/ui/tree/view.h"

namespace ui {

class ScrollView : public View {
 public:
  ScrollView();
  ~ScrollView() override;
  std::string_view className() const override { return "UIScrollView"; }

  View& content() const { return *content_; }
  // Replaces the content panel; what was in the former one goes with it.
  void setContent(Ref<View> content);
  Size contentSize() const { return content_->bounds().size(); }
  void setContentSize(Size size);
  Point offset() const { return offset_; }
  void setOffset(Point offset);
  void scrollTo(Point offset, std::int64_t milliseconds);  // animated
  void scrollToShow(const Rect& area);  // in the content's coordinates, least movement
  void reveal(View& inside) override;
  Point maxOffset() const;
  // Where a paging view comes to rest once it is let go: at the nearest page, or after a
  // flick at the one beside `start`, where the finger came. The velocity is the content's,
  // in points a second.
  Point restingPage(Point start, Point velocity) const;

  bool paging() const { return paging_; }
  void setPaging(bool paging);
  bool bounces() const { return bounces_; }
  void setBounces(bool bounces);
  bool showsVerticalIndicator() const { return vertical_; }
  bool showsHorizontalIndicator() const { return horizontal_; }
  void setIndicators(bool vertical, bool horizontal);
  // The colour into which the lower edge fades while more follows below; none: it doesn't.
  std::optional<Color> moreFade() const { return moreFade_; }
  double fadeHeight() const;
  void setMoreFade(std::optional<Color> color);
  bool scrollEnabled() const { return scrollEnabled_; }
  void setScrollEnabled(bool enabled);

  bool scrollsByKeys() const override { return scrollEnabled_ && maxOffset().y > 0; }
  void scrollByKey(Key key) override;

  std::function<void(double x, double y)> onScroll;

  Point childOffset() const override { return {-offset_.x, -offset_.y}; }

 protected:
  void layoutSubviews() override;  // a smaller view or content pulls the offset back
  virtual void offsetChanged() {}  // before the hook is raised

 private:
  Ref<View> content_;
  Point offset_;
  bool paging_ = false, bounces_ = true, vertical_ = true, horizontal_ = true;
  bool scrollEnabled_ = true;
  std::optional<Color> moreFade_;
};

}  // namespace ui
