#include "platform/ui/values/font.h"

#include <set>

namespace ui {

Font Font::named(std::string_view family, double size) {
  static std::set<std::string, std::less<>> families;
  auto it = families.find(family);
  if (it == families.end()) it = families.emplace(family).first;
  return Font(Face::Named, &*it, size);
}

}  // namespace ui
