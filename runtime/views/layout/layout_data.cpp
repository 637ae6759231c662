#include "runtime/views/layout/layout_data.h"

#include "platform/ui/controls/text_holder.h"
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
  if (auto* holder = get(name).view().textHolder()) holder->setText(textForm(text));
}

void KesLayoutData::setTextSize(std::string_view name, double size) {
  if (auto* holder = get(name).view().textHolder()) holder->setFont(holder->font().withSize(size));
}

double KesLayoutData::getTextSize(std::string_view name) const {
  const auto* holder = get(name).view().textHolder();
  return holder ? holder->font().size() : 0;
}

}  // namespace kes
