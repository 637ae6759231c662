#include "runtime/views/base/text_wrapper.h"

namespace kes {

ui::TextAlign textAlign(std::int32_t number) {
  return number >= 0 && number <= 3 ? static_cast<ui::TextAlign>(number) : ui::TextAlign::Left;
}

void buildText(ui::TextHolder& holder, const Dictionary& properties) {
  if (const auto color = props::buildColor(properties, "textColor")) holder.setTextColor(*color);
  const auto font = KesFont::fromDesignerMap(properties, "font");
  if (font.IsInitialized()) holder.setFont(font.font());
  holder.setText(props::shownText(properties).str());
}

}  // namespace kes
