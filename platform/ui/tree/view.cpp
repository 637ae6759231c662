#include "platform/ui/tree/view.h"

#include <algorithm>
#include <utility>

#include "platform/ui/application.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {

struct View::Rare {
  Border border;
  Shadow shadow;
  Hook onTap, onLongPress;
  TouchHook onTouch;
  std::string name, accessibleName;
  std::optional<Role> role;
  std::optional<Color> tint;
};

// The children in the order of where they start along the axis they are laid out on,
// each with the furthest end up to it: both ends of a visible range by bisection.
struct View::ChildIndex {
  struct Entry {
    double start, furthestEnd;
    std::uint32_t child;
  };
  bool valid = false;
  bool vertical = true;
  std::vector<Entry> entries;

  void build(const std::vector<Ref<View>>& children) {
    entries.clear();
    entries.reserve(children.size());
    double width = 0, height = 0;
    for (const auto& c : children) {
      width = std::max(width, c->frame().right());
      height = std::max(height, c->frame().bottom());
    }
    vertical = height >= width;
    for (std::uint32_t i = 0; i < children.size(); ++i) {
      const Rect f = children[i]->frame();
      entries.push_back({vertical ? f.y : f.x, vertical ? f.bottom() : f.right(), i});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.start < b.start; });
    for (std::size_t i = 1; i < entries.size(); ++i)
      entries[i].furthestEnd = std::max(entries[i].furthestEnd, entries[i - 1].furthestEnd);
    valid = true;
  }

  void find(const Rect& area, std::vector<std::uint32_t>& out) const {
    const double from = vertical ? area.y : area.x;
    const double to = vertical ? area.bottom() : area.right();
    auto it = std::partition_point(entries.begin(), entries.end(),
                                   [from](const Entry& e) { return e.furthestEnd <= from; });
    for (; it != entries.end() && it->start < to; ++it) out.push_back(it->child);
  }
};

namespace {

constexpr std::size_t kIndexedFrom = 48;  // with fewer children a plain walk is as quick
constexpr double kSeeThrough = 0.01;

Application* app() { return Application::current(); }

}  // namespace

View::View() = default;

View::~View() {
  orphan(children_);
  if (flag(Animated) && app()) app()->animator().forget(*this);
  if (flag(Modal) && app()) std::erase(app()->modals_, this);
}

View::Rare& View::rare() {
  if (!rare_) rare_ = std::make_unique<Rare>();
  return *rare_;
}

void View::markChanged(Change what) {
  pending_ = pending_ | what;
  if (auto* a = app()) a->treeChanged();
}

Change View::takeChanges() { return std::exchange(pending_, Change::None); }

void View::setFlag(Flag f, bool on, Change what) {
  if (flag(f) == on) return;
  flags_ = static_cast<std::uint16_t>(on ? flags_ | f : flags_ & ~f);
  markChanged(what);
}

// --- Geometry.

void View::setBounds(const Rect& bounds) {
  if (bounds.size() == size_) return;
  if (flag(Animated)) app()->animator().cancel(*this, Property::Bounds);
  size_ = bounds.size();
  geometryChanged(true);
}

void View::setCenter(Point center) {
  if (center == center_) return;
  if (flag(Animated)) app()->animator().cancel(*this, Property::Center);
  center_ = center;
  geometryChanged(false);
}

void View::setFrame(const Rect& frame) {
  setBounds(frame);
  setCenter(frame.center());
}

void View::geometryChanged(bool resized) {
  if (parent_ && parent_->index_) parent_->index_->valid = false;
  markChanged(Change::Geometry);
  if (!resized) return;
  setNeedsLayout();
  sizeChanged();
}

Size View::sizeThatFits(Size) const { return size_; }

void View::sizeToFit() {
  const Rect f = frame();
  const Size s = sizeThatFits({f.width, 0});
  setFrame({f.x, f.y, s.width, s.height});
}

Presented View::presented() const {
  if (flag(Animated)) return app()->animator().presented(*this);
  return {center_, size_, background_, alpha_};
}

Point View::toWindow(Point p) const {
  for (const View* v = this; v->parent_; v = v->parent_)
    p = p + v->frame().origin() + v->parent_->childOffset();
  return p;
}

Point View::fromWindow(Point p) const { return p - toWindow({}); }

Insets View::safeAreaInsets() const {
  if (!window() || !app()) return {};
  const Rect bar = app()->statusBarFrame();
  const Rect mine = frameInWindow();
  if (!bar.intersects(mine)) return {};
  return {0, bar.bottom() - std::max(0.0, mine.y), 0, 0};
}

// --- Tree.

void View::adopt(Ref<View> child, std::size_t index) {
  if (!child || isDescendantOf(*child)) return;
  const bool moves = child->parent_ != this;
  if (child->parent_ == this) {
    const auto it = std::find(children_.begin(), children_.end(), child);
    const auto at = static_cast<std::size_t>(it - children_.begin());
    index = std::min(index, children_.size() - 1);
    if (at == index) return;
    children_.erase(it);
  } else {
    child->leaveParent();
    index = std::min(index, children_.size());
  }
  View& c = *child;
  children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(index), std::move(child));
  c.parent_ = this;
  if (index_) index_->valid = false;
  markChanged(Change::Children);
  setNeedsLayout();
  if (c.flag(NeedsLayout) || c.flag(BelowNeedsLayout))
    flags_ = static_cast<std::uint16_t>(flags_ | BelowNeedsLayout);
  if (moves) c.parentChanged();
}

void View::orphan(const std::vector<Ref<View>>& children) {
  for (const auto& child : children) child->parent_ = nullptr;
  for (const auto& child : children)
    if (!child->parent_) child->parentChanged();
}

void View::addSubview(Ref<View> child) { adopt(std::move(child), children_.size()); }
void View::insertSubview(Ref<View> child, std::size_t index) { adopt(std::move(child), index); }

void View::removeFromParent() {
  if (!parent_) return;
  const Ref<View> pin(this);
  leaveParent();
  if (!parent_) parentChanged();
}

void View::leaveParent() {
  if (!parent_) return;
  const Ref<View> pin(this);
  if (auto* a = app(); a && a->focus().within(*this)) a->focus().lose();
  View* parent = std::exchange(parent_, nullptr);
  if (!parent) return;  // whoever lost the focus removed it
  std::erase(parent->children_, pin);
  if (parent->index_) parent->index_->valid = false;
  parent->markChanged(Change::Children);
  parent->setNeedsLayout();
}

void View::removeAllSubviews() {
  if (children_.empty()) return;
  if (auto* a = app(); a && a->focus().within(*this) && a->focus().view() != this)
    a->focus().lose();
  auto former = std::move(children_);
  children_.clear();
  index_.reset();
  markChanged(Change::Children);
  setNeedsLayout();
  orphan(former);
}

void View::bringToFront() {
  if (parent_) parent_->adopt(Ref<View>(this), parent_->children_.size());
}
void View::sendToBack() {
  if (parent_) parent_->adopt(Ref<View>(this), 0);
}

bool View::isDescendantOf(const View& other) const {
  for (const View* v = this; v; v = v->parent_)
    if (v == &other) return true;
  return false;
}

Window* View::window() const {
  const View* root = this;
  while (root->parent_) root = root->parent_;
  return const_cast<View*>(root)->asWindow();
}

void View::childrenIn(const Rect& area, std::vector<View*>& out) const {
  const Rect local = area.movedBy(Point{} - childOffset());
  if (children_.size() < kIndexedFrom) {
    for (const auto& c : children_) {
      // A view that does not clip may show children beyond its own frame.
      const bool mayShow = c->flag(Animated) || (!c->flag(Clips) && !c->children_.empty());
      if (mayShow || c->frame().intersects(local)) out.push_back(c.get());
    }
    return;
  }
  if (!index_) index_ = std::make_unique<ChildIndex>();
  if (!index_->valid) index_->build(children_);
  std::vector<std::uint32_t> found;
  index_->find(local, found);
  std::vector<View*> animated;
  if (app()) app()->animator().childrenOf(*this, animated);
  for (View* v : animated)
    found.push_back(static_cast<std::uint32_t>(
        std::find(children_.begin(), children_.end(), Ref<View>(v)) - children_.begin()));
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  for (const auto i : found)
    if (children_[i]->flag(Animated) || children_[i]->frame().intersects(local))
      out.push_back(children_[i].get());
}

View* View::hitTest(Point p) {
  if (flag(Hidden) || !flag(Interactive) || alpha_ < kSeeThrough || !bounds().contains(p))
    return nullptr;
  std::vector<View*> candidates;
  childrenIn({p.x, p.y, 1e-6, 1e-6}, candidates);
  for (auto it = candidates.rbegin(); it != candidates.rend(); ++it)
    if (View* hit = (*it)->hitTest(p - (*it)->frame().origin() - childOffset())) return hit;
  return this;
}

// --- Layout.

void View::setNeedsLayout() {
  flags_ = static_cast<std::uint16_t>(flags_ | NeedsLayout);
  for (View* v = parent_; v; v = v->parent_)
    v->flags_ = static_cast<std::uint16_t>(v->flags_ | BelowNeedsLayout);
  if (auto* a = app()) a->treeChanged();
}

void View::layoutIfNeeded() { runLayout(); }

void View::runLayout() {
  Ref<View> pin(this);
  if (flag(NeedsLayout)) {
    flags_ = static_cast<std::uint16_t>(flags_ & ~NeedsLayout);
    layoutSubviews();
  }
  if (!flag(BelowNeedsLayout)) return;
  flags_ = static_cast<std::uint16_t>(flags_ & ~BelowNeedsLayout);
  std::vector<Ref<View>> waiting;
  for (const auto& c : children_)
    if (c->flag(NeedsLayout) || c->flag(BelowNeedsLayout)) waiting.push_back(c);
  for (const auto& c : waiting)
    if (c->parent_ == this) c->runLayout();
}

// --- Look.

void View::setBackground(Color color) {
  if (color == background_) return;
  if (flag(Animated)) app()->animator().cancel(*this, Property::Background);
  background_ = color;
  markChanged(Change::Appearance);
}

void View::setAlpha(double alpha) {
  const auto a = static_cast<float>(std::clamp(alpha, 0.0, 1.0));
  if (a == alpha_) return;
  if (flag(Animated)) app()->animator().cancel(*this, Property::Alpha);
  alpha_ = a;
  markChanged(Change::Appearance);
}

void View::setHidden(bool hidden) {
  setFlag(Hidden, hidden, Change::Appearance);
  if (parent_) parent_->markChanged(Change::Children);
}

void View::setClipsToBounds(bool clips) { setFlag(Clips, clips, Change::Appearance); }

Border View::border() const { return rare_ ? rare_->border : Border{}; }
void View::setBorder(const Border& border) {
  if (border == this->border()) return;
  rare().border = border;
  markChanged(Change::Appearance);
}

Shadow View::shadow() const { return rare_ ? rare_->shadow : Shadow{}; }
void View::setShadow(const Shadow& shadow) {
  if (shadow == this->shadow()) return;
  rare().shadow = shadow;
  markChanged(Change::Appearance);
}

Color View::tint() const {
  for (const View* v = this; v; v = v->parent_)
    if (v->rare_ && v->rare_->tint) return *v->rare_->tint;
  return looks().accent;
}
void View::setTint(std::optional<Color> tint) {
  if (!tint && !rare_) return;
  rare().tint = tint;
  markChanged(Change::Appearance);
}

// --- Interaction.

void View::setOnTap(Hook hook) {
  rare().onTap = std::move(hook);
  markChanged(Change::Accessibility);
}
void View::setOnLongPress(Hook hook) { rare().onLongPress = std::move(hook); }
void View::setOnTouch(TouchHook hook) { rare().onTouch = std::move(hook); }
bool View::hasOnTap() const { return rare_ && rare_->onTap; }
bool View::hasOnLongPress() const { return rare_ && rare_->onLongPress; }
bool View::hasOnTouch() const { return rare_ && rare_->onTouch; }

// Each hook is copied before the call: it may replace itself or end the view.

void View::tap(Point) {
  if (!enabled() || !hasOnTap()) return;
  Ref<View> pin(this);
  const auto hook = rare_->onTap;
  hook(*this);
}

void View::longPress() {
  if (!enabled() || !hasOnLongPress()) return;
  Ref<View> pin(this);
  const auto hook = rare_->onLongPress;
  hook(*this);
}

void View::touch(TouchAction action, Point at) {
  if (!hasOnTouch()) return;
  Ref<View> pin(this);
  const auto hook = rare_->onTouch;
  hook(action, at.x, at.y);
}

void View::requestFocus() {
  if (auto* a = app(); a && canFocus() && window()) a->focus().set(this);
}
void View::resignFocus() {
  if (auto* a = app(); a && isFocused()) a->focus().lose();
}

// --- Names.

namespace {

const std::string kNone;

// The texts inside a view, as they are read one after the other.
void gatherText(const View& view, std::string& out) {
  for (const auto& child : view.children()) {
    if (child->hidden() || child->accessibilityHidden()) continue;
    const auto text = spokenText(child->displayText());
    if (!text.empty()) {
      if (!out.empty()) out += ", ";
      out += text;
    }
    gatherText(*child, out);
  }
}

}  // namespace

const std::string& View::name() const { return rare_ ? rare_->name : kNone; }
void View::setName(std::string name) { rare().name = std::move(name); }

Role View::role() const {
  if (rare_ && rare_->role) return *rare_->role;
  const Role byKind = defaultRole();
  const bool plain = byKind == Role::None || byKind == Role::StaticText || byKind == Role::Image;
  return plain && takesTap() ? Role::Button : byKind;
}
void View::setRole(std::optional<Role> role) {
  rare().role = role;
  markChanged(Change::Accessibility);
}

std::string View::accessibleName() const {
  return rare_ && !rare_->accessibleName.empty() ? rare_->accessibleName : derivedName();
}
void View::setAccessibleName(std::string name) {
  rare().accessibleName = std::move(name);
  markChanged(Change::Accessibility);
}

std::string View::derivedName() const {
  auto text = spokenText(displayText());
  if (text.empty() && hasOnTap()) gatherText(*this, text);
  return text;
}

void View::setModal(bool modal) {
  if (flag(Modal) == modal) return;
  if (auto* a = app()) {
    if (modal)
      a->modals_.push_back(this);
    else
      std::erase(a->modals_, this);
  }
  setFlag(Modal, modal, Change::Accessibility);
}

}  // namespace ui
