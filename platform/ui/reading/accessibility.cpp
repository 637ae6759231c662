#include "platform/ui/reading/accessibility.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "platform/ui/application.h"

namespace ui {

namespace {

std::size_t indexOf(const View& child) {
  const auto& all = child.parent()->children();
  return static_cast<std::size_t>(
      std::find_if(all.begin(), all.end(), [&](const auto& c) { return c.get() == &child; }) -
      all.begin());
}

bool shown(const View& view) {
  for (const View* v = &view; v; v = v->parent())
    if (v->hidden() || v->alpha() < 0.01 || v->accessibilityHidden()) return false;
  return true;
}

// For each ancestor of a modal view on show, the child it lies in: what is behind that
// child is out of reach.
using Cutoffs = std::unordered_map<const View*, std::size_t>;

Cutoffs cutoffs() {
  Cutoffs result;
  auto* app = Application::current();
  if (!app) return result;
  for (const View* modal : app->modalViews()) {
    if (!modal->window() || !shown(*modal)) continue;
    for (const View* v = modal; v->parent(); v = v->parent()) {
      auto& from = result[v->parent()];
      from = std::max(from, indexOf(*v));
    }
  }
  return result;
}

// Top to bottom, line by line: what begins above the middle of a line's first view
// belongs to the line.
std::vector<View*> readingOrder(const View& view, const Cutoffs& cut) {
  const auto it = cut.find(&view);
  const std::size_t from = it == cut.end() ? 0 : it->second;
  std::vector<View*> order;
  const auto readable = [](const View& v) {
    return !v.hidden() && !v.accessibilityHidden() && v.alpha() >= 0.01;
  };
  if (from == 0)
    for (View* c : view.childrenInReadingOrder())
      if (readable(*c)) order.push_back(c);
  if (!order.empty()) return order;
  for (std::size_t i = from; i < view.children().size(); ++i)
    if (auto* c = view.children()[i].get(); readable(*c)) order.push_back(c);
  std::stable_sort(order.begin(), order.end(),
                   [](View* a, View* b) { return a->frame().y < b->frame().y; });
  for (std::size_t first = 0; first < order.size();) {
    const Rect line = order[first]->frame();
    auto last = first + 1;
    while (last < order.size() && order[last]->frame().y < line.y + line.height / 2) ++last;
    std::stable_sort(order.begin() + static_cast<std::ptrdiff_t>(first),
                     order.begin() + static_cast<std::ptrdiff_t>(last),
                     [](View* a, View* b) { return a->frame().x < b->frame().x; });
    first = last;
  }
  return order;
}

void collect(View& view, const Cutoffs& cut, bool insideElement,
             std::vector<AccessibleElement>& out) {
  const Role role = view.role();
  bool element = role != Role::None;
  if (element) {
    auto name = view.accessibleName();
    const bool text = role == Role::StaticText || role == Role::Heading;
    // The texts of a row are read with the row.
    if ((text && name.empty()) || (insideElement && !view.takesTap() && !view.canFocus()))
      element = false;
    if (element)
      out.push_back({Ref<View>(&view), role, std::move(name), view.accessibleValue(),
                     view.frameInWindow(), view.enabled(), view.isFocused()});
  }
  view.completeChildren();
  const bool container = element && view.takesTap();
  for (auto* child : readingOrder(view, cut)) collect(*child, cut, insideElement || container, out);
}

}  // namespace

std::string_view roleName(Role role) {
  static constexpr std::array<std::string_view, 22> kNames{
      "none",        "text",      "heading",  "button",  "link",      "image",
      "text field",  "text area", "switch",   "slider",  "stepper",   "choice",
      "date picker", "picker",    "progress", "working", "list item", "web content",
      "dialog",      "alert",     "status",   "map"};
  const auto i = static_cast<std::size_t>(role);
  return kNames[i];
}

std::vector<AccessibleElement> accessibilityTree(View& root) {
  std::vector<AccessibleElement> elements;
  if (!root.hidden()) collect(root, cutoffs(), false, elements);
  return elements;
}

std::vector<Ref<View>> focusOrder(View& root) {
  std::vector<Ref<View>> order;
  for (auto& e : accessibilityTree(root))
    if (e.enabled && e.view->canFocus() && e.view->userInteraction()) order.push_back(e.view);
  return order;
}

bool reachable(const View& view) {
  if (!view.window() || !shown(view)) return false;
  const auto cut = cutoffs();
  if (cut.empty()) return true;
  for (const View* v = &view; v->parent(); v = v->parent()) {
    const auto it = cut.find(v->parent());
    if (it != cut.end() && indexOf(*v) < it->second) return false;
  }
  return true;
}

}  // namespace ui
