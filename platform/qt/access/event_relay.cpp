#include "platform/qt/access/event_relay.h"

#include <QGuiApplication>
#include <memory>

#include "platform/qt/access/accessible_tree.h"

namespace qt {

namespace {

void heard(QAccessibleEvent* event) { relayEvent(*event); }

// The window, the program, and what has no object of the toolkit's.
bool isOurs(QAccessibleInterface& about) {
  const auto* object = about.object();
  return !object || object == qApp || object->isWindowType();
}

// The tree tells what comes and goes in it by itself.
bool tellsOfLife(QAccessible::Event type) {
  return type == QAccessible::ObjectCreated || type == QAccessible::ObjectDestroyed ||
         type == QAccessible::ObjectShow || type == QAccessible::ObjectHide;
}

// The same event about another: an event can't be given one, and each kind has its class.
std::unique_ptr<QAccessibleEvent> retold(QAccessibleEvent& event, QAccessibleInterface* about) {
  switch (event.type()) {
    case QAccessible::StateChanged:
      return std::make_unique<QAccessibleStateChangeEvent>(
          about, static_cast<QAccessibleStateChangeEvent&>(event).changedStates());
    case QAccessible::ValueChanged:
      return std::make_unique<QAccessibleValueChangeEvent>(
          about, static_cast<QAccessibleValueChangeEvent&>(event).value());
    case QAccessible::TextCaretMoved:
      return std::make_unique<QAccessibleTextCursorEvent>(
          about, static_cast<QAccessibleTextCursorEvent&>(event).cursorPosition());
    case QAccessible::TextSelectionChanged: {
      auto& e = static_cast<QAccessibleTextSelectionEvent&>(event);
      return std::make_unique<QAccessibleTextSelectionEvent>(about, e.selectionStart(),
                                                             e.selectionEnd());
    }
    case QAccessible::TextInserted: {
      auto& e = static_cast<QAccessibleTextInsertEvent&>(event);
      return std::make_unique<QAccessibleTextInsertEvent>(about, e.changePosition(),
                                                          e.textInserted());
    }
    case QAccessible::TextRemoved: {
      auto& e = static_cast<QAccessibleTextRemoveEvent&>(event);
      return std::make_unique<QAccessibleTextRemoveEvent>(about, e.changePosition(),
                                                          e.textRemoved());
    }
    case QAccessible::TextUpdated: {
      auto& e = static_cast<QAccessibleTextUpdateEvent&>(event);
      return std::make_unique<QAccessibleTextUpdateEvent>(about, e.changePosition(),
                                                          e.textRemoved(), e.textInserted());
    }
    case QAccessible::TableModelChanged:
      return nullptr;  // the tree has no tables
    default:
      return std::make_unique<QAccessibleEvent>(about, event.type());
  }
}

}  // namespace

void relayEvents(bool on) { QAccessible::installUpdateHandler(on ? heard : nullptr); }

void relayEvent(QAccessibleEvent& event) {
  auto* about = event.accessibleInterface();
  if (!about || isOurs(*about)) return handOn(event);
  if (tellsOfLife(event.type())) return;
  for (auto* tree : AccessibleTree::all())
    if (auto* instead = tree->standIn(*about))
      if (const auto other = retold(event, instead)) return tree->teller(*other);
}

void handOn(QAccessibleEvent& event) {
  const auto hook = QAccessible::installUpdateHandler(nullptr);
  QAccessible::updateAccessibility(&event);
  QAccessible::installUpdateHandler(hook);
}

}  // namespace qt
