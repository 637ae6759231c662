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

// Which elements listen for clicks, the engine tells nobody. Words and pictures may, and a box
// of nothing else; what has links or controls in it is there for these.
bool mayBeClicked(const QAccessibleInterface& in) {
  const auto state = in.state();
  if (state.editable || state.invisible || in.rect().isEmpty()) return false;
  for (int i = 0; i < in.childCount(); ++i)
    if (const auto* part = in.child(i); part->childCount() > 0 || part->state().focusable)
      return false;
  return true;
}

// Where the element is in its page: the engine takes the page's corner for the window's.
QRectF placeIn(const QAccessibleInterface& in, const QWindow& window) {
  return in.rect().translated(-window.position());
}

}  // namespace

// The engine is built without type information: what is its own must not be asked for a class.
const PageAccessible* PageAccessible::from(const QAccessibleInterface* any) {
  return any && !any->object() ? dynamic_cast<const PageAccessible*>(any) : nullptr;
}

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
  const auto* other = from(child);
  return in && other && other->inner() ? in->indexOfChild(other->inner()) : -1;
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
  return tree_.onScreen(placeIn(*in, tree_.window()).translated(item->mapToScene({})));
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
  QStringList names = act ? act->actionNames() : QStringList();
  if (in && (pressKeyOf(in->role()) || mayBeClicked(*in))) names.prepend(pressAction());
  return names;
}

ViewItem::Place PageAccessible::middle() const {
  return [id = inner_, &window = tree_.window()]() -> std::optional<QPointF> {
    const auto* in = QAccessible::accessibleInterface(id);
    if (!in || !in->isValid()) return std::nullopt;
    return placeIn(*in, window).center();
  };
}

// What a reader presses was pressed by its user: a link in it is followed as if by hand.
void PageAccessible::doAction(const QString& name) {
  const auto page = page_.lock();
  auto* item = page ? tree_.mirror().itemOf(*page) : nullptr;
  if (!item || !actionNames().contains(name) || !ui::reachable(*page)) return;
  tree_.stage().guarded([&] { ui::scrollIntoView(*page); });
  auto* in = inner();
  if (!in) return;
  const bool press = name == pressAction();
  const int key = press ? pressKeyOf(in->role()) : 0;
  if (press && !key) return item->clickInside(middle());
  if (auto* act = in->actionInterface()) act->doAction(press ? setFocusAction() : name);
  if (press) item->pressInside(key);
}

}  // namespace qt
