// KesFont: a font as the application holds one: a face and a size in points.
//
// A plain value over a shared, unchanging object. Main thread. Reading one that was never
// made throws "Object was not initialized (%@)".
#pragma once

#include "platform/ui/values/font.h"
#include "runtime/core/dictionary.h"
#include "runtime/core/wrapper.h"

namespace kes {

class FontObject final : public Object {
 public:
  explicit FontObject(const ui::Font& f) : font(f) {}
  std::string_view className() const override { return "UIFont"; }
  Text description() const override;
  bool isEqual(const Value& other) const override;

  const ui::Font font;
};

class KesFont final : public TypedWrapper<KesFont, FontObject> {
 public:
  static constexpr std::string_view kPlatformClass = "UIFont";
  std::string_view className() const override { return "KesFont"; }
  static KesFont of(const ui::Font& font);

  static KesFont CreateNew(float size) { return of(ui::Font::system(size)); }
  static KesFont CreateNewBold(float size) { return of(ui::Font::bold(size)); }
  static KesFont CreateNewItalic(float size) { return of(ui::Font::italic(size)); }
  static KesFont CreateNew2(std::string_view name, float size);
  static KesFont CreateFontAwesome(float size) { return CreateNew2("FontAwesome", size); }
  static KesFont CreateMaterialIcons(float size) { return CreateNew2("Material Icons", size); }

  // From a font map of a view's properties ("fontName", "fontSize"), the size times the
  // scale. Not initialised where there is none.
  static KesFont fromDesignerMap(const Dictionary& view, std::string_view key, float scale = 1);

  Text Name() const;
  double Size() const { return font().size(); }
  const ui::Font& font() const { return native()->font; }
};

// The space that a text takes in a font, in points.
double MeasureWidth(std::string_view text, const KesFont& font);
double MeasureHeight(std::string_view text, const KesFont& font);

}  // namespace kes
