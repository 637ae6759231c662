#include "platform/ui/pages/bar_view.h"

#include <cmath>
#include <sstream>

#include "platform/ui/application.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr const char* kBackIcon = "\uE5C4";

// Bars grow half as fast as text, of which they hold little, and never get lower.
double grown(double height) { return std::ceil((height + textHeight(height)) / 2); }

// A button with the least size that a finger hits.
Ref<Button> barButton() {
  auto button = makeShared<Button>();
  button->setFont(Font::system(style::kBarButtonSize));
  return button;
}

Font itemFont(const BarButtonItem& item) {
  if (!item.icon().empty()) return style::iconFont();
  const bool done = item.style() == 2;
  return item.titleFont().value_or(done ? Font::bold(style::kBarButtonSize)
                                        : Font::system(style::kBarButtonSize));
}

// Whether a title can be read in so much room: two lines at most, no word broken.
bool readable(const std::string& title, double room) {
  auto* app = Application::current();
  if (!app || title.empty()) return true;
  const Font font = Font::bold(style::kBarLongTitleSize);
  std::istringstream words(title);
  for (std::string word; words >> word;)
    if (app->text().measure(word, font, 0, 1).width > room) return false;
  return app->text().measure(title, font, room, 0).height <= 2 * app->text().lineHeight(font) + 1;
}

Ref<Label> barLabel(const Font& font) {
  auto label = makeShared<Label>();
  label->setFont(font);
  label->setTextColor(looks().onAccent);
  label->setAlignment(TextAlign::Center);
  return label;
}

}  // namespace

BarView::BarView(Kind kind) : kind_(kind) {
  const bool navigation = kind == Kind::Navigation;
  setBackground(navigation ? looks().accent : style::kToolbar);
  setTint(navigation ? looks().onAccent : looks().accent);
  setClipsToBounds(true);
  if (!navigation) return;
  prompt_ = barLabel(Font::system(13));
  title_ = barLabel(Font::bold(style::kBarTitleSize));
  title_->setRole(Role::Heading);
  back_ = barButton();
  back_->setTitle(kBackIcon);
  back_->setFont(style::iconFont());
  back_->setAccessibleName(words().back);
  back_->setOnTap([this](View&) {
    if (const auto hook = onBack) hook();
  });
  for (const Ref<View>& view : {Ref<View>(prompt_), Ref<View>(title_), Ref<View>(back_)}) {
    view->setHidden(true);
    addSubview(view);
  }
}

double BarView::heightFor(double statusBar) const {
  if (kind_ == Kind::Toolbar) return grown(style::kToolbarHeight);
  return statusBar + grown(style::kBarHeight) +
         (contents_.prompt.empty() ? 0 : grown(style::kPromptHeight));
}

void BarView::show(Contents contents) {
  contents_ = std::move(contents);
  if (kind_ == Kind::Navigation) {
    title_->setText(contents_.title);
    title_->setHidden(contents_.titleView || contents_.title.empty());
    prompt_->setText(contents_.prompt);
    prompt_->setHidden(contents_.prompt.empty());
    back_->setHidden(!contents_.backButton);
    if (titleView_ != contents_.titleView) {
      if (titleView_ && titleView_->parent() == this) titleView_->removeFromParent();
      titleView_ = contents_.titleView;
      if (titleView_) addSubview(titleView_);
    }
  }
  rebuildItems();
}

BarView::Slot BarView::slotFor(const Ref<BarButtonItem>& item) {
  Slot slot{item, nullptr};
  for (const auto* former : {&left_, &right_})
    for (const auto& s : *former)
      if (s.item == item) slot.view = s.view;
  item->shownBy_ = WeakRef<View>(this);
  if (item->flexibleSpace()) return slot;
  if (item->kind() == BarButtonItem::Kind::Custom) {
    slot.view = Ref<View>(item->customView());
    return slot;
  }
  Ref<Button> button = slot.view ? Ref<Button>(static_cast<Button*>(slot.view.get())) : barButton();
  const auto icon = item->icon();
  button->setTitle(icon.empty() ? item->title() : icon);
  button->setFont(itemFont(*item));
  button->setImage(item->image());
  button->setTextColor(item->tint());
  button->setEnabled(item->enabled());
  button->setAccessibleName(item->accessibleName());
  button->setOnTap([weak = WeakRef<BarButtonItem>(item)](View&) {
    if (const auto pressed = weak.lock()) pressed->press();
  });
  slot.view = button;
  return slot;
}

void BarView::rebuildItems() {
  std::vector<Slot> left, right;
  for (const auto& item : contents_.left)
    if (item) left.push_back(slotFor(item));
  for (const auto& item : contents_.right)
    if (item) right.push_back(slotFor(item));
  const auto shown = [&](const Ref<View>& view) {
    for (const auto* slots : {&left, &right})
      for (const auto& s : *slots)
        if (s.view == view) return true;
    return false;
  };
  for (const auto* former : {&left_, &right_})
    for (const auto& s : *former)
      if (s.view && s.view->parent() == this && !shown(s.view)) s.view->removeFromParent();
  for (const auto* slots : {&left, &right})
    for (const auto& s : *slots)
      if (s.view && s.view->parent() != this) addSubview(s.view);
  left_ = std::move(left);
  right_ = std::move(right);
  setNeedsLayout();
}

View* BarView::viewFor(const BarButtonItem& item) const {
  for (const auto* slots : {&left_, &right_})
    for (const auto& s : *slots)
      if (s.item.get() == &item) return s.view.get();
  return nullptr;
}

double BarView::itemWidth(const Slot& slot) const {
  if (!slot.view) return 0;
  if (slot.item->kind() == BarButtonItem::Kind::Custom) return slot.view->bounds().width;
  return std::max(style::kTapSize, slot.view->sizeThatFits({}).width);
}

void BarView::setItemSize(double share) {
  for (const auto* slots : {&left_, &right_})
    for (const auto& s : *slots) {
      if (!s.view || s.item->kind() == BarButtonItem::Kind::Custom || !s.item->icon().empty())
        continue;
      const Font font = itemFont(*s.item);
      static_cast<Button&>(*s.view).setFont(font.withSize(font.size() * share));
    }
}

void BarView::layoutSubviews() {
  const double width = bounds().width, margin = style::kBarMargin;
  double top = topInset, height = grown(style::kBarHeight);
  const auto put = [&](const Slot& slot, double x, double w) {
    const bool custom = slot.item->kind() == BarButtonItem::Kind::Custom;
    const double h = custom ? std::min(height, slot.view->bounds().height) : height;
    slot.view->setFrame({x, top + (height - h) / 2, w, h});
  };
  if (kind_ == Kind::Toolbar) {
    double taken = 0;
    int spaces = 0;
    for (const auto& s : left_) {
      taken += itemWidth(s);
      spaces += s.view ? 0 : 1;
    }
    const double gap = spaces ? std::max(0.0, width - 2 * margin - taken) / spaces : 0;
    double x = margin;
    for (const auto& s : left_) {
      const double w = s.view ? itemWidth(s) : gap;
      if (s.view) put(s, x, w);
      x += w;
    }
    return;
  }
  if (!contents_.prompt.empty()) {
    const double high = grown(style::kPromptHeight);
    prompt_->setFrame({margin, top, std::max(0.0, width - 2 * margin), high});
    top += high;
  }
  double from = margin, to = width - margin;
  const double plain = 1 / std::max(1.0, textScale());
  // Large letters: the words of the buttons give way to the title's, down to their plain size.
  for (double share = 1;; share = std::max(share - 0.25, plain)) {
    from = margin, to = width - margin;
    setItemSize(share);
    if (contents_.backButton) {
      const double side = grown(style::kTapSize);
      back_->setFrame({from, top, side, height});
      from += side;
    }
    for (const auto& s : left_) {
      const double w = itemWidth(s);
      if (s.view) put(s, from, w);
      from += w;
    }
    for (const auto& s : right_) {
      const double w = itemWidth(s);
      to -= w;
      if (s.view) put(s, to, w);
    }
    if (share <= plain || readable(title_->text(), to - from)) break;
  }
  // The title is centred on the bar where that leaves it enough room, else between the items.
  const double side = std::max(from, width - to);
  const Font font = Font::bold(style::kBarTitleSize);
  auto* app = Application::current();
  const double wanted = app ? app->text().measure(title_->text(), font, 0, 1).width : 0;
  const Rect room = wanted <= width - 2 * side ? Rect{side, top, width - 2 * side, height}
                                               : Rect{from, top, std::max(0.0, to - from), height};
  // One that is too long for a line takes two smaller ones.
  title_->setFont(wanted <= room.width ? font : Font::bold(style::kBarLongTitleSize));
  title_->setMaxLines(wanted <= room.width ? 1 : 2);
  title_->setFrame(room);
  if (titleView_) {
    const Size s = titleView_->bounds().size();
    titleView_->setFrame(Rect::centered(
        room.center(), {std::min(s.width, room.width), std::min(s.height, room.height)}));
  }
}

}  // namespace ui
