// The view tree on the toolkit's accessibility tree: under the window, one element for
// each that ui::accessibilityTree() names, what lies in an element under it, with role,
// name, value, state and actions. Editors lend their text, web pages their content.
// Rectangles are pixels of the screen, wherever the screen tells its pixels.
//
// Built when assistive technology first asks, then kept up with the view tree, a little
// behind it so that busy moments don't build it over and over. Owned by the QtScreen.
// Main thread.
#pragma once

#include <QAccessible>
#include <QTimer>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/qt/access/event_relay.h"
#include "platform/ui/reading/accessibility.h"

class QQuickWindow;

namespace qt {

class ElementAccessible;
class Mirror;
class PageAccessible;
struct Stage;

class AccessibleTree {
 public:
  AccessibleTree(Stage& stage, QQuickWindow& window, const Mirror& mirror);
  ~AccessibleTree();

  // The view tree has changed; the focus is elsewhere.
  void changed();
  void focusMoved();
  // Something to be said aloud.
  void announce(const std::string& text);

  // What carries events to readers: the toolkit, if any of them listens.
  std::function<void(QAccessibleEvent&)> teller = handOn;

  // --- For the interfaces.
  struct Node {
    ui::WeakRef<ui::View> view;
    ui::Role role;
    QString name;
    int parent = -1;  // index; -1: the window
    std::vector<int> children;
    ElementAccessible* accessible = nullptr;
  };
  static const std::vector<AccessibleTree*>& all();
  static AccessibleTree* of(const QObject* window);
  void ensureBuilt();
  const std::vector<Node>& nodes() const { return nodes_; }
  const std::vector<int>& top() const { return top_; }
  QAccessibleInterface* root() const;
  QAccessibleInterface* announcer() const { return announcer_; }
  QAccessibleInterface* focused() const;
  ElementAccessible* elementOf(const ui::View& view) const;  // null: none
  // What stands for an object of the engine's in a web view's page; null for null.
  QAccessibleInterface* inPage(ui::View& page, QAccessibleInterface* inner);
  // What stands in the tree for an object of the toolkit's or the engine's; null: nothing.
  QAccessibleInterface* standIn(QAccessibleInterface& about);
  QQuickWindow& window() const { return window_; }
  // Where points of the window are on the screen: in its pixels, as readers count.
  QRect onScreen(const QRectF& inWindow) const;
  const Mirror& mirror() const { return mirror_; }
  Stage& stage() const { return stage_; }

 private:
  void rebuild();
  void sweepPages();
  void followPages();
  void tell(QAccessible::Event event, QAccessibleInterface* about);

  Stage& stage_;
  QQuickWindow& window_;
  const Mirror& mirror_;
  std::vector<Node> nodes_;
  std::vector<int> top_;
  std::unordered_map<const ui::View*, ElementAccessible*> made_;
  std::unordered_map<QAccessible::Id, PageAccessible*> inPages_;  // by the engine's object
  QAccessibleInterface* announcer_ = nullptr;
  QTimer later_, focusLater_, forget_, pages_;
  bool built_ = false;
};

}  // namespace qt
