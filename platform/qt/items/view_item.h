// The item that stands for one visible view, and shows its box. Each kind of view has a
// class of its own (made by makeViewItem).
//
// Owned by the Mirror, which calls show() on each pass in which the view is seen. The
// view is held weakly: an item may outlive it until the next pass. Main thread, points.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/qt/drawing/painted_item.h"
#include "platform/qt/drawing/round_corners.h"
#include "platform/qt/drawing/rounded_clip.h"
#include "platform/ui/values/geo.h"
#include "platform/ui/window.h"

namespace qt {

class QmlParts;
class ImageStore;

// What items need of the screen they are on. Lives as long as the screen.
struct Stage {
  QmlParts& parts;
  ImageStore& images;
  bool firstFrameShown = false;   // nothing slow is begun before
  std::function<void()> changed;  // an item wants a mirror pass
  // Runs what calls into the application; what it throws goes to the main queue's
  // fault handler, not through the toolkit.
  std::function<void(const std::function<void()>&)> guarded;
  bool browserStarted = false;           // the browser engine is in the process
  std::optional<ui::GeoPoint> position;  // where the phone is, for once and all
  bool asksWhere = false;                // else: whether the desktop is asked
};

class ViewItem : public PaintedItem {
  Q_OBJECT
 public:
  ViewItem(Stage& stage, ui::View& view) : stage_(stage), view_(&view) {}

  ui::Ref<ui::View> view() const { return view_.lock(); }
  bool standsFor(const ui::View& view) const { return view_.refersTo(&view); }

  // Takes over place, look and content. `origin` is where the parent item's inside has
  // its top left, in window points.
  void show(const ui::Visible& seen, ui::Change changed, ui::Point origin);

  // Where the items of the children go, and how far that is moved.
  virtual QQuickItem* inside() { return this; }
  virtual ui::Point insideOffset() const { return {}; }
  // Its corners are round, and what it has inside ends there.
  double insideRadius() const { return radius_; }
  // Leaves items in it that paint themselves, the toolkit's, to the corners of `round`: the
  // item itself or one that it is in.
  void leaveToCornersOf(ViewItem& round);
  // Kept, hidden, while its view isn't seen: it holds what the view doesn't know.
  virtual bool keepsState() const { return false; }
  // Its own item takes touches: Qt Quick is to get them too.
  virtual bool takesTouches() const { return false; }
  // …and makes of them what a tap on the view would.
  virtual bool ownsTaps() const { return false; }
  // What lies in the view is the item's to draw: the views in it get no items.
  virtual bool drawsInside() const { return false; }
  // What gets the keyboard while the view is focused; null: the view tree itself.
  virtual QQuickItem* keyboardItem() { return nullptr; }
  // The toolkit's own accessible object for what is inside (text, web page), or null.
  virtual QObject* accessibleInside() { return nullptr; }
  // The user has touched it or used a key in it.
  virtual void userActed() {}
  // A reader presses what has the focus inside, which this key does.
  virtual void pressInside(int /*key*/) {}
  // …or a place inside, in the item's points, as told at any time; none: no longer there.
  using Place = std::function<std::optional<QPointF>()>;
  virtual void clickInside(const Place& /*where*/) {}
  // Something moves by itself or is still to come.
  virtual bool busy() const { return false; }

 protected:
  // The view's kind-specific content. Not called when nothing changed and the size and
  // the clip are the same.
  virtual void sync(ui::View& /*view*/, ui::Change /*changed*/) {}
  virtual BoxLook lookOf(const ui::View& view, ui::Color background) const;
  // The part of the item that can be seen, in its own points, as of the last show().
  const ui::Rect& visibleArea() const { return visible_; }
  // The view's size as seen, which the item's is rounded from.
  ui::Size frameSize() const { return frameSize_; }
  // Needs a sync() when another part of it can be seen.
  virtual bool followsClip() const { return false; }
  // Has waited for something of the screen's that has come about.
  virtual bool wantsSync() const { return false; }
  void scaleChanged() override;
  void mark(const ui::View& view);
  Stage& stage() const { return stage_; }

 private:
  // The nearest ancestor that clips with round corners, in the item's own points, if a
  // corner of it may cut into the item.
  std::optional<RoundedClip> cornersAround() const;

  Stage& stage_;
  ui::WeakRef<ui::View> view_;
  ui::Rect visible_;
  ui::Rect frame_;  // in window points
  ui::Size frameSize_;
  std::unique_ptr<PaintedItem> mark_;      // of what is current
  std::unique_ptr<RoundCorners> corners_;  // where something paints itself inside
  double radius_ = 0;
  bool stale_ = true;
};

std::unique_ptr<ViewItem> makeViewItem(Stage& stage, ui::View& view);

}  // namespace qt
