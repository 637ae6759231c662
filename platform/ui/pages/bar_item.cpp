#include "platform/ui/pages/bar_item.h"

#include <array>

#include "platform/ui/pages/bar_view.h"

namespace ui {

namespace {

struct SystemItem {
  const char* icon;  // in the icon face; empty: shown as a text
  const char* name;
};

// By the platform's numbers; 5 and 6 show nothing.
constexpr std::array<SystemItem, 23> kSystem{{
    {"", "Fine"},
    {"", "Annulla"},
    {"", "Modifica"},
    {"", "Salva"},
    {"\uE145", "Aggiungi"},
    {"", ""},
    {"", ""},
    {"\uE150", "Scrivi"},
    {"\uE15E", "Rispondi"},
    {"\uE80D", "Condividi"},
    {"\uE2C7", "Organizza"},
    {"\uE866", "Segnalibri"},
    {"\uE8B6", "Cerca"},
    {"\uE5D5", "Aggiorna"},
    {"\uE5CD", "Interrompi"},
    {"\uE412", "Fotocamera"},
    {"\uE872", "Elimina"},
    {"\uE037", "Riproduci"},
    {"\uE034", "Pausa"},
    {"\uE020", "Riavvolgi"},
    {"\uE01F", "Avanti veloce"},
    {"\uE166", "Annulla operazione"},
    {"\uE15A", "Ripeti operazione"},
}};

const SystemItem& systemItem(int number) {
  static constexpr SystemItem kNone{"", ""};
  return number >= 0 && number < static_cast<int>(kSystem.size())
             ? kSystem[static_cast<std::size_t>(number)]
             : kNone;
}

constexpr const char* kMenuIcon = "\uE5D2";

}  // namespace

Ref<BarButtonItem> BarButtonItem::system(int number) {
  Ref<BarButtonItem> item(new BarButtonItem(Kind::System, number));
  const auto& known = systemItem(number);
  if (!*known.icon) item->title_ = known.name;
  item->name_ = known.name;
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
  item->name_ = "Menu";
  return item;
}

std::string BarButtonItem::icon() const {
  return kind_ == Kind::Drawer ? kMenuIcon : kind_ == Kind::System ? systemItem(number_).icon : "";
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
