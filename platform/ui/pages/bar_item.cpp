#include "platform/ui/pages/bar_item.h"

#include <array>

#include "platform/ui/pages/bar_view.h"
#include "platform/ui/values/branding.h"

namespace ui {

namespace {

// In the icon face, by the platform's numbers; those without one show their name.
constexpr std::array<const char*, 23> kIcons{
    "",       "",       "",       "",       "\uE145", "",       "",       "\uE150",
    "\uE15E", "\uE80D", "\uE2C7", "\uE866", "\uE8B6", "\uE5D5", "\uE5CD", "\uE412",
    "\uE872", "\uE037", "\uE034", "\uE020", "\uE01F", "\uE166", "\uE15A"};

// Beyond the end: no item of the system.
std::size_t indexOf(int number) {
  return number >= 0 && number < static_cast<int>(kIcons.size()) ? static_cast<std::size_t>(number)
                                                                 : kIcons.size();
}

constexpr const char* kMenuIcon = "\uE5D2";

}  // namespace

Ref<BarButtonItem> BarButtonItem::system(int number) {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::System, number));
  if (const auto i = indexOf(number); i < kIcons.size()) {
    item->name_ = words().barButtons[i];
    if (!*kIcons[i]) item->title_ = item->name_;
  }
  return item;
}

Ref<BarButtonItem> BarButtonItem::text(std::string text) {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::Text, -1));
  item->title_ = std::move(text);
  return item;
}

Ref<BarButtonItem> BarButtonItem::image(Image image) {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::Image, -1));
  item->image_ = std::move(image);
  return item;
}

Ref<BarButtonItem> BarButtonItem::custom(Ref<View> view) {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::Custom, -1));
  item->custom_ = std::move(view);
  return item;
}

Ref<BarButtonItem> BarButtonItem::drawer() {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::Drawer, -1));
  item->name_ = words().menu;
  return item;
}

std::string BarButtonItem::icon() const {
  if (kind_ == Kind::Drawer) return kMenuIcon;
  const auto i = kind_ == Kind::System ? indexOf(number_) : kIcons.size();
  return i < kIcons.size() ? kIcons[i] : "";
}

void BarButtonItem::setStyle(int style) {
  style_ = style;
  changed();
}

void BarButtonItem::setEnabled(bool enabled) {
  enabled_ = enabled;
  changed();
}

void BarButtonItem::setTint(std::optional<Color> tint) {
  tint_ = tint;
  changed();
}

void BarButtonItem::setTitleFont(std::optional<Font> font) {
  font_ = font;
  changed();
}

std::string BarButtonItem::accessibleName() const {
  return name_.empty() ? spokenText(title_) : name_;
}

void BarButtonItem::setAccessibleName(std::string name) {
  name_ = std::move(name);
  changed();
}

void BarButtonItem::press() {
  if (!enabled_) return;
  Ref<BarButtonItem> pin(this);
  if (const auto hook = onPress) hook(*this);
}

void BarButtonItem::changed() {
  if (const auto bar = shownBy_.lock()) static_cast<BarView&>(*bar).itemChanged();
}

}  // namespace ui
