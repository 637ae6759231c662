// An element inside a web page. The engine's own objects say what is in the page but place
// it as if the page began at the window's corner, and cannot be pressed, so each goes by way
// of one of these. The engine may end its object at any time: it is known by its id. Owned
// by the toolkit's cache; made and deleted by AccessibleTree. Main thread; rectangles are
// pixels of the screen.
#pragma once

#include "platform/qt/access/accessible_element.h"
#include "platform/qt/items/view_item.h"

namespace qt {

class PageAccessible final : public PartAccessible, public QAccessibleActionInterface {
 public:
  // `page` is the web view that the element is in.
  PageAccessible(AccessibleTree& tree, ui::View& page, QAccessible::Id inner)
      : PartAccessible(tree), page_(&page), inner_(inner) {}

  // The same as what it is; null when it is something else.
  static const PageAccessible* from(const QAccessibleInterface* any);
  // The engine's object; null when it is gone.
  QAccessibleInterface* inner() const { return QAccessible::accessibleInterface(inner_); }

  bool isValid() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int index) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* focusChild() const override;
  QString text(QAccessible::Text what) const override;
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QAccessibleInterface* wrapped(QAccessibleInterface* inner) const;
  ViewItem::Place middle() const;

  ui::WeakRef<ui::View> page_;
  QAccessible::Id inner_;
};

}  // namespace qt
