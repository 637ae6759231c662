#include "platform/qt/access/accessible_tree.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>
#include <algorithm>

#include "platform/qt/access/accessible_element.h"
#include "platform/qt/access/page_accessible.h"
#include "platform/qt/mirror.h"
#include "platform/qt/phone_window.h"
#include "platform/ui/application.h"

namespace qt {

namespace {

constexpr int kDelay = 100;       // milliseconds behind the view tree
constexpr int kSaid = 5000;       // after that an announcement is no longer found
constexpr int kPageDelay = 500;   // …and behind what pages do by themselves
constexpr int kMostEvents = 200;  // beyond, a reader had better look for itself

std::vector<AccessibleTree*>& trees() {
  static std::vector<AccessibleTree*> all;
  return all;
}

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  if (className != QLatin1String(PhoneWindow::staticMetaObject.className())) return nullptr;
  return AccessibleTree::of(object) ? new WindowAccessible(object) : nullptr;
}

}  // namespace

AccessibleTree::AccessibleTree(Stage& stage, QQuickWindow& window, const Mirror& mirror)
    : stage_(stage), window_(window), mirror_(mirror) {
  if (trees().empty()) {
    QAccessible::installFactory(makeAccessible);
    relayEvents(true);
  }
  trees().push_back(this);
  later_.setSingleShot(true);
  later_.setInterval(kDelay);
  QObject::connect(&later_, &QTimer::timeout, &window, [this] { rebuild(); });
  forget_.setSingleShot(true);
  forget_.setInterval(kSaid);
  QObject::connect(&forget_, &QTimer::timeout, &window,
                   [this] { static_cast<AnnouncerAccessible*>(announcer_)->said.clear(); });
  pages_.setInterval(kPageDelay);
  QObject::connect(&pages_, &QTimer::timeout, &window, [this] { followPages(); });
  focusLater_.setSingleShot(true);
  QObject::connect(&focusLater_, &QTimer::timeout, &window, [this] {
    rebuild();
    if (auto* now = focused()) tell(QAccessible::Focus, now);
  });
}

AccessibleTree::~AccessibleTree() {
  std::erase(trees(), this);
  if (trees().empty()) {
    QAccessible::removeFactory(makeAccessible);
    relayEvents(false);
  }
  for (auto& [view, accessible] : made_)
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(accessible));
  for (auto& [id, accessible] : inPages_)
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(accessible));
  if (announcer_) QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(announcer_));
}

const std::vector<AccessibleTree*>& AccessibleTree::all() { return trees(); }

AccessibleTree* AccessibleTree::of(const QObject* window) {
  for (auto* tree : trees())
    if (&tree->window_ == window) return tree;
  return nullptr;
}

QAccessibleInterface* AccessibleTree::root() const {
  return QAccessible::queryAccessibleInterface(&window_);
}

// The toolkit's bridge hands on what it is told. Its screens begin at a pixel and go on in
// points; a Wayland window knows no place but its own.
QRect AccessibleTree::onScreen(const QRectF& inWindow) const {
  const QRectF points(window_.mapToGlobal(inWindow.topLeft()), inWindow.size());
  const bool pixels = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  const auto* screen = window_.screen();
  if (!pixels || !screen) return points.toRect();
  const double ratio = window_.devicePixelRatio();
  const QPointF origin = screen->geometry().topLeft();
  return QRectF(origin + (points.topLeft() - origin) * ratio, points.size() * ratio).toRect();
}

ElementAccessible* AccessibleTree::elementOf(const ui::View& view) const {
  const auto it = made_.find(&view);
  return it == made_.end() ? nullptr : it->second;
}

QAccessibleInterface* AccessibleTree::focused() const {
  auto* app = ui::Application::current();
  const auto* view = app ? app->focus().view() : nullptr;
  return view ? elementOf(*view) : nullptr;
}

QAccessibleInterface* AccessibleTree::inPage(ui::View& page, QAccessibleInterface* inner) {
  if (!inner) return nullptr;
  auto& made = inPages_[QAccessible::uniqueId(inner)];
  if (!made) {
    made = new PageAccessible(*this, page, QAccessible::uniqueId(inner));
    QAccessible::registerAccessibleInterface(made);
  }
  return made;
}

// Editors and pages have one item each that is the toolkit's object for what is inside; the
// objects in a page lead up to it.
QAccessibleInterface* AccessibleTree::standIn(QAccessibleInterface& about) {
  const QAccessibleInterface* top = &about;
  while (top && !qobject_cast<QQuickItem*>(top->object())) top = top->parent();
  auto* inside = top ? qobject_cast<QQuickItem*>(top->object()) : nullptr;
  ViewItem* item = nullptr;
  for (auto* above = inside; above && !item; above = above->parentItem())
    item = qobject_cast<ViewItem*>(above);
  const auto view = item && item->accessibleInside() == inside ? item->view() : nullptr;
  auto* element = view ? elementOf(*view) : nullptr;
  if (!element || top == &about) return element;
  const auto* document = element->document();
  if (document == &about) return element;
  return document ? inPage(*view, &about) : nullptr;
}

// What comes and goes in a page the engine tells nobody: while there is one, it is looked at.
void AccessibleTree::followPages() {
  sweepPages();
  for (const auto& node : nodes_) {
    if (node.role != ui::Role::WebContent) continue;
    const auto fresh = node.accessible->newInPage();
    if (fresh.size() <= kMostEvents)
      for (auto* part : fresh) tell(QAccessible::ObjectCreated, part);
  }
}

void AccessibleTree::sweepPages() {
  std::erase_if(inPages_, [&](const auto& entry) {
    if (entry.second->isValid()) return false;
    tell(QAccessible::ObjectDestroyed, entry.second);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(entry.second));
    return true;
  });
}

void AccessibleTree::changed() {
  if (built_ && !later_.isActive()) later_.start();
}

void AccessibleTree::focusMoved() {
  if (built_ && QAccessible::isActive()) focusLater_.start(0);
}

void AccessibleTree::announce(const std::string& text) {
  if (!built_) return;
  static_cast<AnnouncerAccessible*>(announcer_)->said = QString::fromStdString(text);
  tell(QAccessible::NameChanged, announcer_);
  tell(QAccessible::Alert, announcer_);
  forget_.start();
}

void AccessibleTree::tell(QAccessible::Event event, QAccessibleInterface* about) {
  QAccessibleEvent e(about, event);
  teller(e);
}

void AccessibleTree::ensureBuilt() {
  if (built_) return;
  built_ = true;
  announcer_ = new AnnouncerAccessible(*this);
  QAccessible::registerAccessibleInterface(announcer_);
  rebuild();
}

void AccessibleTree::rebuild() {
  auto* app = ui::Application::current();
  std::vector<Node> nodes;
  std::vector<ui::Ref<ui::View>> views;  // of the nodes
  std::unordered_map<const ui::View*, int> at;
  if (app)
    for (const auto& window : app->windows())
      for (const auto& e : ui::accessibilityTree(*window)) {
        at[e.view.get()] = static_cast<int>(nodes.size());
        nodes.push_back({ui::WeakRef<ui::View>(e.view), e.role, QString::fromStdString(e.name)});
        views.push_back(e.view);
      }
  // What is gone, or another view at the same address. Whoever reads is told of each, or,
  // where a whole page goes, looks at the window again.
  std::size_t told = 0;
  for (auto it = made_.begin(); it != made_.end();) {
    ElementAccessible* accessible = it->second;
    const auto view = accessible->view();
    if (view && at.count(view.get())) {
      ++it;
    } else {
      if (told++ < kMostEvents) tell(QAccessible::ObjectDestroyed, accessible);
      accessible->index = -1;
      it = made_.erase(it);
      QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(accessible));
    }
  }
  std::vector<QAccessibleInterface*> fresh, renamed;
  std::vector<int> top;
  for (int i = 0; i < static_cast<int>(nodes.size()); ++i) {
    Node& node = nodes[static_cast<std::size_t>(i)];
    const auto& view = views[static_cast<std::size_t>(i)];
    auto& made = made_[view.get()];
    if (!made) {
      made = new ElementAccessible(*this, *view);
      QAccessible::registerAccessibleInterface(made);
      fresh.push_back(made);
    } else if (nodes_[static_cast<std::size_t>(made->index)].name != node.name) {
      renamed.push_back(made);
    }
    made->index = i;
    node.accessible = made;
    for (const auto* v = view->parent(); v && node.parent < 0; v = v->parent())
      if (const auto found = at.find(v); found != at.end()) node.parent = found->second;
    (node.parent < 0 ? top : nodes[static_cast<std::size_t>(node.parent)].children).push_back(i);
  }
  nodes_ = std::move(nodes);
  top_ = std::move(top);
  if (fresh.size() <= kMostEvents)
    for (auto* element : fresh) tell(QAccessible::ObjectCreated, element);
  for (auto* element : renamed) tell(QAccessible::NameChanged, element);
  followPages();
  const bool pages = std::any_of(nodes_.begin(), nodes_.end(),
                                 [](const Node& n) { return n.role == ui::Role::WebContent; });
  if (pages != pages_.isActive()) pages ? pages_.start() : pages_.stop();
}

}  // namespace qt
