#include "platform/qt/access/accessible_element.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <algorithm>

#include "platform/qt/access/page_accessible.h"
#include "platform/qt/mirror.h"
#include "platform/ui/controls/indicators.h"
#include "platform/ui/controls/map_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/reading/finder.h"

namespace qt {

namespace {

QAccessible::Role roleOf(ui::Role role) {
  switch (role) {
    case ui::Role::StaticText:
      return QAccessible::StaticText;
    case ui::Role::Heading:
      return QAccessible::Heading;
    case ui::Role::Button:
      return QAccessible::Button;
    case ui::Role::Link:
      return QAccessible::Link;
    case ui::Role::Image:
      return QAccessible::Graphic;
    case ui::Role::TextField:
    case ui::Role::TextArea:
      return QAccessible::EditableText;
    case ui::Role::Switch:
      return QAccessible::CheckBox;
    case ui::Role::Slider:
      return QAccessible::Slider;
    case ui::Role::Stepper:
      return QAccessible::SpinBox;
    case ui::Role::SegmentedControl:
    case ui::Role::DatePicker:
    case ui::Role::Picker:
      return QAccessible::ComboBox;
    case ui::Role::ProgressBar:
      return QAccessible::ProgressBar;
    case ui::Role::ActivityIndicator:
      return QAccessible::Animation;
    case ui::Role::ListItem:
      return QAccessible::ListItem;
    case ui::Role::WebContent:
      return QAccessible::WebDocument;
    case ui::Role::Dialog:
      return QAccessible::Dialog;
    case ui::Role::Alert:
      return QAccessible::AlertMessage;
    case ui::Role::Status:
      return QAccessible::StatusBar;
    case ui::Role::Map:
      return QAccessible::Grouping;
    case ui::Role::None:
      break;
  }
  return QAccessible::Pane;
}

int indexIn(const AccessibleTree& tree, const std::vector<int>& children,
            const QAccessibleInterface* child) {
  for (std::size_t i = 0; i < children.size(); ++i)
    if (tree.nodes()[static_cast<std::size_t>(children[i])].accessible == child)
      return static_cast<int>(i);
  return -1;
}

QAccessibleInterface* nth(const AccessibleTree& tree, const std::vector<int>& children, int i) {
  if (i < 0 || static_cast<std::size_t>(i) >= children.size()) return nullptr;
  return tree.nodes()[static_cast<std::size_t>(children[static_cast<std::size_t>(i)])].accessible;
}

}  // namespace

// --- The window.

QWindow* WindowAccessible::window() const { return static_cast<QWindow*>(object()); }

QAccessibleInterface* WindowAccessible::parent() const {
  return QAccessible::queryAccessibleInterface(qApp);
}

int WindowAccessible::childCount() const {
  auto* t = tree();
  if (!t) return 0;
  t->ensureBuilt();
  return static_cast<int>(t->top().size()) + 1;
}

QAccessibleInterface* WindowAccessible::child(int index) const {
  auto* t = tree();
  if (!t) return nullptr;
  t->ensureBuilt();
  if (static_cast<std::size_t>(index) == t->top().size()) return t->announcer();
  return nth(*t, t->top(), index);
}

int WindowAccessible::indexOfChild(const QAccessibleInterface* child) const {
  auto* t = tree();
  if (!t) return -1;
  if (child && child == t->announcer()) return static_cast<int>(t->top().size());
  return indexIn(*t, t->top(), child);
}

QAccessibleInterface* WindowAccessible::childAt(int x, int y) const {
  auto* t = tree();
  if (!t) return nullptr;
  t->ensureBuilt();
  // What comes later lies in front.
  const auto& nodes = t->nodes();
  for (auto it = nodes.rbegin(); it != nodes.rend(); ++it)
    if (it->accessible && it->accessible->isValid() && it->accessible->rect().contains(x, y))
      return it->accessible;
  return nullptr;
}

QAccessibleInterface* WindowAccessible::focusChild() const {
  auto* t = tree();
  return t ? t->focused() : nullptr;
}

QString WindowAccessible::text(QAccessible::Text what) const {
  return what == QAccessible::Name ? window()->title() : QString();
}

QRect WindowAccessible::rect() const {
  auto* t = tree();
  return t ? t->onScreen(QRectF({}, window()->size())) : window()->geometry();
}

QAccessible::State WindowAccessible::state() const {
  QAccessible::State state;
  state.active = window()->isActive();
  state.focusable = true;
  return state;
}

// --- What is in it.

QWindow* PartAccessible::window() const { return &tree_.window(); }

// What comes later lies in front.
QAccessibleInterface* PartAccessible::childAt(int x, int y) const {
  for (int i = childCount(); i-- > 0;)
    if (auto* part = child(i); part && part->rect().contains(x, y)) return part;
  return nullptr;
}

QAccessible::State AnnouncerAccessible::state() const {
  QAccessible::State state;
  state.invisible = said.isEmpty();
  state.readOnly = true;
  return state;
}

const AccessibleTree::Node* ElementAccessible::node() const {
  return index >= 0 ? &tree_.nodes()[static_cast<std::size_t>(index)] : nullptr;
}

QAccessibleInterface* ElementAccessible::inside() const {
  const auto held = view();
  auto* item = held ? tree_.mirror().itemOf(*held) : nullptr;
  auto* object = item ? item->accessibleInside() : nullptr;
  return object ? QAccessible::queryAccessibleInterface(object) : nullptr;
}

// The engine's view has one child, the page's root.
QAccessibleInterface* ElementAccessible::document() const {
  const auto* n = node();
  const auto* view = n && n->role == ui::Role::WebContent ? inside() : nullptr;
  return view && view->childCount() > 0 ? view->child(0) : nullptr;
}

QAccessibleInterface* ElementAccessible::page() const {
  auto* root = document();
  return root ? tree_.inPage(*view(), root) : nullptr;
}

std::vector<QAccessibleInterface*> ElementAccessible::newInPage() {
  std::vector<QAccessibleInterface*> fresh;
  std::vector<QAccessible::Id> parts;
  const auto* inside = page();
  for (int i = 0; inside && i < inside->childCount(); ++i) {
    auto* part = inside->child(i);
    parts.push_back(QAccessible::uniqueId(part));
    if (std::find(parts_.begin(), parts_.end(), parts.back()) == parts_.end())
      fresh.push_back(part);
  }
  parts_ = std::move(parts);
  return fresh;
}

QAccessibleInterface* ElementAccessible::parent() const {
  const auto* n = node();
  if (!n || n->parent < 0) return tree_.root();
  return tree_.nodes()[static_cast<std::size_t>(n->parent)].accessible;
}

QAccessibleInterface* ElementAccessible::child(int i) const {
  const auto* n = node();
  if (!n) return nullptr;
  if (const auto* inside = page()) return inside->child(i);
  return nth(tree_, n->children, i);
}

int ElementAccessible::childCount() const {
  const auto* n = node();
  if (!n) return 0;
  if (const auto* inside = page()) return inside->childCount();
  return static_cast<int>(n->children.size());
}

int ElementAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto* n = node();
  if (!n) return -1;
  if (const auto* inside = page()) return inside->indexOfChild(child);
  return indexIn(tree_, n->children, child);
}

QAccessibleInterface* ElementAccessible::focusChild() const {
  const auto* inside = page();
  auto* focused = inside ? inside->focusChild() : nullptr;
  return focused != inside ? focused : nullptr;
}

QString ElementAccessible::text(QAccessible::Text what) const {
  const auto* n = node();
  const auto held = view();
  if (!n || !held) return {};
  if (what == QAccessible::Name) {
    const auto* page = n->name.isEmpty() ? document() : nullptr;
    return page ? page->text(what) : n->name;
  }
  if (what == QAccessible::Value) return QString::fromStdString(held->accessibleValue());
  return {};
}

QRect ElementAccessible::rect() const {
  const auto held = view();
  if (!held) return {};
  const ui::Rect r = held->frameInWindow();
  return tree_.onScreen({r.x, r.y, r.width, r.height});
}

QAccessible::Role ElementAccessible::role() const {
  const auto* n = node();
  return n ? roleOf(n->role) : QAccessible::NoRole;
}

QAccessible::State ElementAccessible::state() const {
  QAccessible::State state;
  const auto held = view();
  if (!held) {
    state.invalid = true;
    return state;
  }
  state.disabled = !held->enabled();
  state.focusable = held->canFocus() || held->isFocused();  // a title may have it
  state.selected = held->current();
  state.focused = held->isFocused();
  state.pressed = held->pressed();
  state.modal = held->modal();
  // What is on a map has no item of its own.
  const auto* ground = dynamic_cast<const ui::MapGround*>(held->parent());
  state.offscreen =
      ground ? !ground->bounds().intersects(held->frame()) : !tree_.mirror().itemOf(*held);
  if (const auto* toggle = dynamic_cast<ui::Switch*>(held.get())) {
    state.checkable = true;
    state.checked = toggle->on();
  }
  if (const auto* input = dynamic_cast<ui::TextInput*>(held.get())) {
    state.editable = input->editable();
    state.readOnly = !input->editable();
    state.passwordEdit = input->traits().password;
    state.multiLine = dynamic_cast<const ui::TextView*>(input) != nullptr;
  } else {
    state.readOnly = !held->takesTap();
  }
  return state;
}

void* ElementAccessible::interface_cast(QAccessible::InterfaceType type) {
  const auto held = view();
  if (!held) return nullptr;
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  if (type == QAccessible::ValueInterface &&
      (dynamic_cast<ui::RangeControl*>(held.get()) || dynamic_cast<ui::ProgressView*>(held.get())))
    return static_cast<QAccessibleValueInterface*>(this);
  const bool text =
      type == QAccessible::TextInterface || type == QAccessible::EditableTextInterface;
  if (text && dynamic_cast<ui::TextInput*>(held.get()))
    if (auto* editor = inside()) return editor->interface_cast(type);
  return nullptr;
}

QStringList ElementAccessible::actionNames() const {
  QStringList names;
  const auto held = view();
  if (!held || !held->enabled()) return names;
  if (held->takesTap()) names << pressAction();
  if (held->canFocus()) names << setFocusAction();
  if (dynamic_cast<ui::RangeControl*>(held.get()) ||
      dynamic_cast<ui::SegmentedControl*>(held.get()))
    names << increaseAction() << decreaseAction();
  return names;
}

void ElementAccessible::doAction(const QString& name) {
  const auto held = view();
  if (!held || !actionNames().contains(name) || !ui::reachable(*held)) return;
  tree_.stage().guarded([&] {
    if (name == pressAction()) {
      ui::scrollIntoView(*held);
      held->tap(held->bounds().center());
    } else if (name == setFocusAction()) {
      ui::scrollIntoView(*held);
      held->requestFocus();
    } else {
      held->adjust(name == increaseAction() ? 1 : -1);
    }
  });
}

QVariant ElementAccessible::currentValue() const {
  const auto held = view();
  if (const auto* range = dynamic_cast<ui::RangeControl*>(held.get())) return range->value();
  if (const auto* bar = dynamic_cast<ui::ProgressView*>(held.get())) return bar->progress();
  return {};
}

void ElementAccessible::setCurrentValue(const QVariant& value) {
  const auto held = view();
  if (auto* range = dynamic_cast<ui::RangeControl*>(held.get()))
    tree_.stage().guarded([&] { range->userSet(value.toDouble()); });
}

QVariant ElementAccessible::maximumValue() const {
  const auto held = view();
  const auto* range = dynamic_cast<ui::RangeControl*>(held.get());
  return range ? range->maximum() : 1.0;
}

QVariant ElementAccessible::minimumValue() const {
  const auto held = view();
  const auto* range = dynamic_cast<ui::RangeControl*>(held.get());
  return range ? range->minimum() : 0.0;
}

QVariant ElementAccessible::minimumStepSize() const {
  const auto held = view();
  const auto* range = dynamic_cast<ui::RangeControl*>(held.get());
  return range ? range->step() : 0.0;
}

}  // namespace qt
