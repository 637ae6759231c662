#include "platform/qt/mirror.h"

#include <algorithm>

namespace qt {

Mirror::~Mirror() = default;

void Mirror::update(ui::Application& application) {
  ++pass_;
  shown_ = 0;
  windows_.clear();
  for (const auto& window : application.windows()) {
    if (window->hidden()) continue;
    window->visitVisible([this](const ui::Visible& seen) { return see(seen); });
    close(0);
  }
  order(root_, windows_);
  sweep();
}

bool Mirror::see(const ui::Visible& seen) {
  close(seen.depth);
  Entry& entry = entries_[&seen.view];
  ui::Change changed = seen.view.takeChanges();
  // Another view may have come to live at the address of one that died.
  if (!entry.item || !entry.item->standsFor(seen.view)) {
    entry.item = makeViewItem(stage_, seen.view);
    changed = ui::Change::All;
  }
  entry.pass = pass_;
  ++shown_;
  ViewItem* item = entry.item.get();
  // A parent that can't be seen itself isn't visited: its children hang from the next
  // one above that is.
  const bool top = open_.empty();
  QQuickItem* parent = top ? &root_ : open_.back().item->inside();
  (top ? windows_ : open_.back().children).push_back(item);
  if (item->parentItem() != parent) item->setParentItem(parent);
  item->setOpacity(top ? seen.opacity : seen.opacity / open_.back().opacity);
  item->show(seen, changed, top ? ui::Point{} : open_.back().origin);
  ViewItem* round = item->insideRadius() > 0 ? item : top ? nullptr : open_.back().round;
  if (round) item->leaveToCornersOf(*round);
  open_.push_back(
      {item, round, seen.depth, seen.opacity, seen.frame.origin() + item->insideOffset(), {}});
  return !item->drawsInside();
}

void Mirror::close(int depth) {
  while (!open_.empty() && open_.back().depth >= depth) {
    order(*open_.back().item->inside(), open_.back().children);
    open_.pop_back();
  }
}

void Mirror::order(QQuickItem& parent, const std::vector<ViewItem*>& children) {
  if (children.size() < 2) return;
  const auto present = parent.childItems();
  std::size_t next = 0;
  for (const auto* item : present)
    if (next < children.size() && item == children[next]) ++next;
  if (next == children.size()) return;
  for (std::size_t i = 1; i < children.size(); ++i) children[i]->stackAfter(children[i - 1]);
}

void Mirror::sweep() {
  // Deepest first would be as well: an item takes its children's items out of the scene,
  // not out of memory.
  for (auto it = entries_.begin(); it != entries_.end();) {
    Entry& entry = it->second;
    if (entry.pass == pass_) {
      ++it;
    } else if (entry.item->keepsState() && entry.item->view()) {
      entry.item->setVisible(false);
      entry.item->setParentItem(&root_);
      ++it;
    } else {
      entry.item->setParentItem(nullptr);
      it = entries_.erase(it);
    }
  }
}

ViewItem* Mirror::itemOf(const ui::View& view) const {
  const auto it = entries_.find(&view);
  if (it == entries_.end() || it->second.pass != pass_) return nullptr;
  return it->second.item->standsFor(view) ? it->second.item.get() : nullptr;
}

bool Mirror::busy() const {
  return std::any_of(entries_.begin(), entries_.end(), [this](const auto& e) {
    return e.second.pass == pass_ && e.second.item->busy();
  });
}

}  // namespace qt
