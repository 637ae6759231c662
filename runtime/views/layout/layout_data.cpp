#include "runtime/views/layout/layout_data.h"

#include "platform/ui/controls/button.h"
#include "platform/ui/controls/label.h"
#include "platform/ui/controls/text_input.h"
#include "runtime/views/base/text_form.h"

namespace kes {

Ref<ui::View> KesLayoutData::find(std::string_view name) const {
  const auto found = viewsMap.find(std::string(name));
  return found == viewsMap.end() ? nullptr : found->second.view.lock();
}

KesViewWrapper KesLayoutData::get(std::string_view name) const {
  KesViewWrapper wrapper;
  wrapper.setObject(find(Text(name).ToLowerCase()));
  return wrapper;
}

void KesLayoutData::setText(std::string_view name, const Value& text) {
  ui::View& view = get(name).view();
  if (auto* button = dynamic_cast<ui::Button*>(&view))
    button->setTitle(textForm(text));
  else if (auto* label = dynamic_cast<ui::Label*>(&view))
    label->setText(textForm(text));
  else if (auto* input = dynamic_cast<ui::TextInput*>(&view))
    input->setText(textForm(text));
}

void KesLayoutData::setTextSize(std::string_view name, double size) {
  ui::View& view = get(name).view();
  if (const auto font = textFont(view)) setTextFont(view, font->withSize(size));
}

double KesLayoutData::getTextSize(std::string_view name) const {
  const auto font = textFont(get(name).view());
  return font ? font->size() : 0;
}

std::optional<ui::Font> textFont(const ui::View& view) {
  if (auto* button = dynamic_cast<const ui::Button*>(&view)) return button->font();
  if (auto* label = dynamic_cast<const ui::Label*>(&view)) return label->font();
  if (auto* input = dynamic_cast<const ui::TextInput*>(&view)) return input->font();
  return std::nullopt;
}

void setTextFont(ui::View& view, const ui::Font& font) {
  if (auto* button = dynamic_cast<ui::Button*>(&view))
    button->setFont(font);
  else if (auto* label = dynamic_cast<ui::Label*>(&view))
    label->setFont(font);
  else if (auto* input = dynamic_cast<ui::TextInput*>(&view))
    input->setFont(font);
}

}  // namespace kes
