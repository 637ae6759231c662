#include "runtime/views/base/font.h"

#include <algorithm>

#include "platform/ui/application.h"
#include "runtime/core/kes.h"
#include "runtime/views/base/properties.h"

namespace kes {

namespace {

constexpr double kDefaultSize = 17, kLargestSize = 512;

double usable(double size) { return size > 0 ? std::min(size, kLargestSize) : kDefaultSize; }

}  // namespace

Text FontObject::description() const {
  return formatText("%@ %@", {KesFont::of(font).Name(), Kes::ObjectToString(font.size())});
}

bool FontObject::isEqual(const Value& other) const {
  const auto o = other.as<FontObject>();
  return o && o->font == font;
}

KesFont KesFont::of(const ui::Font& font) {
  KesFont f;
  f.wrap(platform::makeShared<FontObject>(font));
  return f;
}

KesFont KesFont::CreateNew2(std::string_view name, float size) {
  return of(name.empty() ? ui::Font::system(usable(size)) : ui::Font::named(name, usable(size)));
}

KesFont KesFont::fromDesignerMap(const Dictionary& view, std::string_view key, float scale) {
  const auto map = props::map(view, key);
  if (!map) return {};
  const Text name = props::text(*map, "fontName");
  const auto size = static_cast<float>(usable(props::number(*map, "fontSize") * scale));
  if (name.StartsWith("DEFAULT")) {
    if (name.EndsWith("Bold")) return CreateNewBold(size);
    if (name.EndsWith("Italic")) return CreateNewItalic(size);
    return CreateNew(size);
  }
  return CreateNew2(name, size);
}

Text KesFont::Name() const {
  switch (font().face()) {
    case ui::Font::Face::System:
      return "System";
    case ui::Font::Face::SystemBold:
      return "System-Bold";
    case ui::Font::Face::SystemItalic:
      return "System-Italic";
    case ui::Font::Face::Named:
      break;
  }
  return Text(font().family());
}

namespace {

ui::Size measured(std::string_view text, const KesFont& font) {
  auto* app = ui::Application::current();
  return app ? app->text().measure(text, font.font(), 0, 0) : ui::Size{};
}

}  // namespace

double MeasureWidth(std::string_view text, const KesFont& font) {
  return measured(text, font).width;
}
double MeasureHeight(std::string_view text, const KesFont& font) {
  return measured(text, font).height;
}

}  // namespace kes
