#include "platform/qt/access/page_accessible.h"

#include <QQuickWindow>

#include "platform/qt/mirror.h"
#include "platform/ui/reading/finder.h"

namespace qt {

namespace {

// The key that presses what has this role; 0: it is not for pressing.
int pressKeyOf(QAccessible::Role role) {
  switch (role) {
    case QAccessible::Link:
    case QAccessible::Button:
      return Qt::Key_Return;
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
      return Qt::Key_Space;
    default:
      return 0;
  }
}

}  // namespace

QAccessibleInterface* PageAccessible::wrapped(QAccessibleInterface* inner) const {
  const auto page = page_.lock();
  return page ? tree_.inPage(*page, inner) : nullptr;
}

bool PageAccessible::isValid() const {
  const auto* in = inner();
  return in && in->isValid() && page_.lock();
}

QAccessibleInterface* PageAccessible::parent() const {
  const auto* in = inner();
  const auto page = page_.lock();
  auto* element = page ? tree_.elementOf(*page) : nullptr;
  if (!in || !element) return tree_.root();
  auto* above = in->parent();
  if (above == element->document()) return element;
  return wrapped(above);
}

QAccessibleInterface* PageAccessible::child(int index) const {
  const auto* in = inner();
  return in ? wrapped(in->child(index)) : nullptr;
}

int PageAccessible::childCount() const {
  const auto* in = inner();
  return in ? in->childCount() : 0;
}

int PageAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto* in = inner();
  const auto* other = dynamic_cast<const PageAccessible*>(child);
  return in && other && other->inner() ? in->indexOfChild(other->inner()) : -1;
}

QAccessibleInterface* PageAccessible::childAt(int x, int y) const {
  for (int i = childCount(); i-- > 0;)
    if (auto* part = child(i); part && part->rect().contains(x, y)) return part;
  return nullptr;
}

QAccessibleInterface* PageAccessible::focusChild() const {
  const auto* in = inner();
  return in ? wrapped(in->focusChild()) : nullptr;
}

QString PageAccessible::text(QAccessible::Text what) const {
  const auto* in = inner();
  return in ? in->text(what) : QString();
}

QRect PageAccessible::rect() const {
  const auto* in = inner();
  const auto page = page_.lock();
  const auto* item = page ? tree_.mirror().itemOf(*page) : nullptr;
  if (!in || !item) return {};
  const QRectF inPage = in->rect().translated(-tree_.window().position());
  return tree_.onScreen(inPage.translated(item->mapToScene({})));
}

QAccessible::Role PageAccessible::role() const {
  const auto* in = inner();
  return in ? in->role() : QAccessible::NoRole;
}

QAccessible::State PageAccessible::state() const {
  if (const auto* in = inner()) return in->state();
  QAccessible::State state;
  state.invalid = true;
  return state;
}

void* PageAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  // What the engine's tables and texts answer with are its own objects, in other places.
  if (type != QAccessible::ValueInterface && type != QAccessible::TextInterface) return nullptr;
  auto* in = inner();
  return in ? in->interface_cast(type) : nullptr;
}

QStringList PageAccessible::actionNames() const {
  auto* in = inner();
  auto* act = in ? in->actionInterface() : nullptr;
  if (!act) return {};
  QStringList names = act->actionNames();
  if (names.contains(setFocusAction()) && pressKeyOf(in->role())) names.prepend(pressAction());
  return names;
}

// What a reader presses was pressed by its user: a link in it is followed as if by hand.
void PageAccessible::doAction(const QString& name) {
  const auto page = page_.lock();
  auto* item = page ? tree_.mirror().itemOf(*page) : nullptr;
  if (!item || !actionNames().contains(name) || !ui::reachable(*page)) return;
  tree_.stage().guarded([&] { ui::scrollIntoView(*page); });
  const bool press = name == pressAction();
  auto* in = inner();
  if (!in) return;
  const int key = pressKeyOf(in->role());
  in->actionInterface()->doAction(press ? setFocusAction() : name);
  if (press) item->pressInside(key);
}

}  // namespace qt
