#include "platform/qt/items/view_item.h"

#include "platform/qt/items/button_item.h"
#include "platform/qt/items/choice_items.h"
#include "platform/qt/items/control_item.h"
#include "platform/qt/items/editor_item.h"
#include "platform/qt/items/image_item.h"
#include "platform/qt/items/indicator_items.h"
#include "platform/qt/items/label_item.h"
#include "platform/qt/items/map_item.h"
#include "platform/qt/items/scroll_item.h"
#include "platform/qt/items/web_item.h"

namespace qt {

namespace {
constexpr double kCurrentTint = 0.12, kCurrentBar = 3;  // points
}  // namespace

void ViewItem::show(const ui::Visible& seen, ui::Change changed, ui::Point origin) {
  ui::View& view = seen.view;
  // Both edges lie on the pixel grid: neighbours meet, and a line keeps its width.
  const ui::Rect at = seen.frame.movedBy(ui::Point{} - origin);
  const QPointF corner(snapped(at.x), snapped(at.y));
  setPosition(corner);
  setSize({snapped(at.right()) - corner.x(), snapped(at.bottom()) - corner.y()});
  frame_ = seen.frame;
  const ui::Size former = std::exchange(frameSize_, seen.frame.size());
  setClip(view.clipsToBounds());
  setLook(lookOf(view, seen.background));
  setCut(cornersAround());
  setVisible(true);
  mark(view);
  const ui::Rect visible =
      seen.clip.intersection(seen.frame).movedBy(ui::Point{} - seen.frame.origin());
  const bool moved = followsClip() && visible != visible_;
  visible_ = visible;
  const bool fresh = std::exchange(stale_, false);
  if (fresh) changed = ui::Change::All;
  if (fresh || moved || former != frameSize_ || changed != ui::Change::None || wantsSync())
    sync(view, changed);
  radius_ = view.clipsToBounds() ? view.border().radius : 0;
  if (radius_ <= 0) corners_.reset();
  if (corners_) corners_->update(radius_);
}

// A tint behind the content and a bar at its side.
BoxLook ViewItem::lookOf(const ui::View& view, ui::Color background) const {
  const ui::Color fill =
      view.current() ? background.mixed(view.tint().withAlpha(255), kCurrentTint) : background;
  return {fill, view.border(), view.shadow()};
}

void ViewItem::mark(const ui::View& view) {
  if (!view.current()) {
    mark_.reset();
    return;
  }
  if (!mark_) mark_ = std::make_unique<PaintedItem>(this);
  mark_->setZ(1);
  mark_->setSize({kCurrentBar, height()});
  mark_->setLook({view.tint(), {}, {}});
}

void ViewItem::leaveToCornersOf(ViewItem& round) {
  for (auto* item : childItems()) {
    if (qobject_cast<ViewItem*>(item) || (corners_ && corners_->has(*item))) continue;
    if (!round.corners_) round.corners_ = std::make_unique<RoundCorners>(round, round.radius_);
    if (item->opacity() > RoundCorners::kMostOpacity) item->setOpacity(RoundCorners::kMostOpacity);
  }
}

std::optional<RoundedClip> ViewItem::cornersAround() const {
  const auto held = view();
  for (auto* above = held ? held->parent() : nullptr; above; above = above->parent()) {
    const double radius = above->border().radius;
    if (!above->clipsToBounds() || radius <= 0) continue;
    const RoundedClip clip{above->frameInWindow().movedBy(ui::Point{} - frame_.origin()), radius};
    const bool cuts = clip.cuts({0, 0, frame_.width, frame_.height});
    return cuts ? std::optional(clip) : std::nullopt;
  }
  return std::nullopt;
}

void ViewItem::scaleChanged() {
  stale_ = true;
  stage_.changed();
}

std::unique_ptr<ViewItem> makeViewItem(Stage& stage, ui::View& view) {
  if (dynamic_cast<ui::Label*>(&view)) return std::make_unique<LabelItem>(stage, view);
  if (dynamic_cast<ui::Button*>(&view)) return std::make_unique<ButtonItem>(stage, view);
  if (dynamic_cast<ui::ImageView*>(&view)) return std::make_unique<ImageItem>(stage, view);
  if (dynamic_cast<ui::ScrollView*>(&view)) return std::make_unique<ScrollItem>(stage, view);
  if (dynamic_cast<ui::TextInput*>(&view)) return std::make_unique<EditorItem>(stage, view);
  if (dynamic_cast<ui::WebView*>(&view)) return std::make_unique<WebItem>(stage, view);
  if (dynamic_cast<ui::MapGround*>(&view)) return std::make_unique<MapItem>(stage, view);
  if (dynamic_cast<ui::ActivityIndicator*>(&view))
    return std::make_unique<SpinnerItem>(stage, view);
  if (dynamic_cast<ui::ProgressView*>(&view)) return std::make_unique<ProgressItem>(stage, view);
  if (dynamic_cast<ui::Switch*>(&view)) return std::make_unique<SwitchItem>(stage, view);
  if (dynamic_cast<ui::Slider*>(&view)) return std::make_unique<SliderItem>(stage, view);
  if (dynamic_cast<ui::Stepper*>(&view)) return std::make_unique<StepperItem>(stage, view);
  if (dynamic_cast<ui::SegmentedControl*>(&view))
    return std::make_unique<SegmentsItem>(stage, view);
  if (dynamic_cast<ui::PickerView*>(&view)) return std::make_unique<PickerItem>(stage, view);
  if (dynamic_cast<ui::DatePicker*>(&view)) return std::make_unique<DateItem>(stage, view);
  return std::make_unique<ViewItem>(stage, view);
}

}  // namespace qt
