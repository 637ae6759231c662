// The toolkit's accessible objects: the window, an element of the view tree, and the
// voice that announcements come from. Owned by the toolkit's cache; made and deleted by
// AccessibleTree. Main thread; rectangles are pixels of the screen.
#pragma once

#include <QAccessible>
#include <QAccessibleInterface>
#include <QAccessibleObject>

#include "platform/qt/access/accessible_tree.h"
#include "platform/ui/controls/controls.h"

namespace qt {

class WindowAccessible final : public QAccessibleObject {
 public:
  explicit WindowAccessible(QObject* window) : QAccessibleObject(window) {}
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int index) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  QString text(QAccessible::Text what) const override;
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::Window; }
  QAccessible::State state() const override;

 private:
  AccessibleTree* tree() const { return AccessibleTree::of(object()); }
};

// Something below the window: no QObject of its own.
class PartAccessible : public QAccessibleInterface {
 public:
  explicit PartAccessible(AccessibleTree& tree) : tree_(tree) {}
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  void setText(QAccessible::Text, const QString&) override {}
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessibleInterface* parent() const override { return tree_.root(); }

 protected:
  AccessibleTree& tree_;
};

class AnnouncerAccessible final : public PartAccessible {
 public:
  using PartAccessible::PartAccessible;
  QString said;
  bool isValid() const override { return true; }
  QString text(QAccessible::Text what) const override {
    return what == QAccessible::Name ? said : QString();
  }
  QRect rect() const override { return {}; }
  QAccessible::Role role() const override { return QAccessible::AlertMessage; }
  QAccessible::State state() const override;
};

class ElementAccessible final : public PartAccessible,
                                public QAccessibleActionInterface,
                                public QAccessibleValueInterface {
 public:
  ElementAccessible(AccessibleTree& tree, ui::View& view) : PartAccessible(tree), view_(&view) {}
  int index = -1;  // in the tree's nodes; -1: no longer there

  bool isValid() const override { return index >= 0 && view_.lock(); }
  ui::Ref<ui::View> view() const { return view_.lock(); }
  // The engine's object for the page that a web view shows; null if there is none (yet).
  QAccessibleInterface* document() const;
  // The parts of its page that were not there the last time that this was asked.
  std::vector<QAccessibleInterface*> newInPage();
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

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant maximumValue() const override;
  QVariant minimumValue() const override;
  QVariant minimumStepSize() const override;

 private:
  const AccessibleTree::Node* node() const;
  // The editor's or the page's own accessible object.
  QAccessibleInterface* inside() const;
  // What stands for the whole page, and answers for what is in it; null without one.
  QAccessibleInterface* page() const;

  ui::WeakRef<ui::View> view_;
  std::vector<QAccessible::Id> parts_;  // of its page, as of the last newInPage()
};

}  // namespace qt
