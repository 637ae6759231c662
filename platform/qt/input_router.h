// Hands touches, the mouse, the wheel and keys to the view tree, and decides what Qt
// Quick is to get of them as well.
//
// The tree's hit test says who is touched. A touch in a scroller or a control of the
// toolkit goes to both: the scroller cancels the tree's touch once it moves, the drawer
// takes the touch away from the toolkit once it is swiped. All else is the tree's alone.
// Keys are the tree's unless an editor or a web page has the focus. Owned by the
// QtScreen. Main thread, points.
#pragma once

#include <QEvent>
#include <QPointF>
#include <QPointer>

#include "platform/qt/mirror.h"
#include "platform/ui/application.h"

class QKeyEvent;
class QMouseEvent;
class QPointerEvent;
class QTouchEvent;
class QWheelEvent;

namespace qt {

class InputRouter {
 public:
  InputRouter(Stage& stage, Mirror& mirror) : stage_(stage), mirror_(mirror) {}

  // True when Qt Quick isn't to get the event.
  bool handle(QEvent& event);

 private:
  struct Touched {  // what the toolkit has at a place
    bool any = false, ownsTaps = false, moving = false;
    bool acts = false;  // something else than scroll
    ViewItem* item = nullptr;
    bool ignored = false;  // the tree ignores taps there
  };
  bool mouse(QMouseEvent& event);
  bool touch(QTouchEvent& event);
  bool wheel(QWheelEvent& event);
  bool key(QKeyEvent& event);
  Touched touchedAt(QPointF at) const;
  bool pointer(QPointerEvent& event, ui::PointerPhase phase, int id, QPointF at);
  static void letGo(QPointerEvent& event);

  Stage& stage_;
  Mirror& mirror_;
  int finger_ = -1;  // the one that goes to the tree
  bool down_ = false;
  bool toTree_ = false;     // this gesture is told to the tree
  bool toToolkit_ = false;  // …and to Qt Quick
  bool ownsTaps_ = false;
  QPointer<ViewItem> touched_;  // the innermost that takes touches
};

}  // namespace qt
