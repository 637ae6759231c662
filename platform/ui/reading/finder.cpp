#include "platform/ui/reading/finder.h"

#include <algorithm>

#include "platform/ui/reading/accessibility.h"
#include "platform/ui/window.h"

namespace ui {

namespace {

bool contains(const std::string& whole, std::string_view part) {
  return whole.find(part) != std::string::npos;
}

class Search {
 public:
  explicit Search(std::string_view text)
      : byName_(text.size() > 1 && text.front() == '#'), text_(byName_ ? text.substr(1) : text) {}

  // Answers whether the view or something in it matched.
  bool in(View& view) {
    if (view.hidden() || view.alpha() < 0.01 || view.accessibilityHidden()) return false;
    view.completeChildren();
    const auto at = found.size();
    bool inner = false;
    for (const auto& child : order(view)) inner = in(*child) || inner;
    if (byName_ ? view.name() != text_ : inner || !matches(view)) return inner;
    if (view.bounds().empty() || !reachable(view)) return inner;
    found.insert(found.begin() + static_cast<std::ptrdiff_t>(at), Ref<View>(&view));
    return true;
  }

  std::vector<Ref<View>> found;

 private:
  bool matches(const View& view) const {
    return contains(view.displayText(), text_) || contains(view.accessibleName(), text_);
  }

  // As one looks at a page: from the top, from the left; of a window the overlay first.
  static std::vector<Ref<View>> order(View& view) {
    auto children = view.children();
    if (auto* window = dynamic_cast<Window*>(&view)) {
      std::stable_partition(children.begin(), children.end(),
                            [&](const auto& c) { return c.get() == &window->overlay(); });
      return children;
    }
    std::stable_sort(children.begin(), children.end(), [](const auto& a, const auto& b) {
      const Rect f = a->frame(), g = b->frame();
      return f.y != g.y ? f.y < g.y : f.x < g.x;
    });
    return children;
  }

  bool byName_;
  std::string_view text_;
};

}  // namespace

std::vector<Ref<View>> findAll(Window& window, std::string_view text) {
  if (text.empty()) return {};
  Search search(text);
  search.in(window);
  return std::move(search.found);
}

Ref<View> find(Window& window, std::string_view text, int nth) {
  auto all = findAll(window, text);
  return nth >= 1 && static_cast<std::size_t>(nth) <= all.size()
             ? all[static_cast<std::size_t>(nth) - 1]
             : nullptr;
}

void scrollIntoView(View& view) {
  for (View* v = view.parent(); v; v = v->parent()) v->reveal(view);
}

Point tapPoint(const View& view) {
  Rect seen = view.frameInWindow();
  for (const View* v = view.parent(); v; v = v->parent())
    if (v->clipsToBounds()) seen = seen.intersection(v->frameInWindow());
  return seen.center();
}

}  // namespace ui
