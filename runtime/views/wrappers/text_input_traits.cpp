#include "runtime/views/wrappers/text_input_traits.h"

#include "runtime/views/base/properties.h"

namespace kes {

Ref<ui::View> KesTextInputTraitsWrapper::makeView() const {
  return platform::makeShared<ui::TextField>();
}

ui::TextInputTraits KesTextInputTraitsWrapper::traitsOf(const Dictionary& properties) {
  ui::TextInputTraits traits;
  traits.autocorrection = props::integer(properties, "autocorrection");
  traits.autocapitalization = props::integer(properties, "autocapitalization");
  traits.spellcheck = props::integer(properties, "spellcheck");
  traits.keyboardType = props::integer(properties, "keyboardType");
  traits.keyboardAppearance = props::integer(properties, "keyboardAppearance");
  traits.returnKey = props::integer(properties, "returnKey");
  traits.password = props::flag(properties, "passwordMode");
  return traits;
}

template <class F>
void KesTextInputTraitsWrapper::change(F apply) {
  auto traits = self().traits();
  apply(traits);
  self().setTraits(traits);
}

void KesTextInputTraitsWrapper::setKeyboardType(std::int32_t type) {
  change([=](auto& t) { t.keyboardType = type; });
}
void KesTextInputTraitsWrapper::setReturnKey(std::int32_t key) {
  change([=](auto& t) { t.returnKey = key; });
}
void KesTextInputTraitsWrapper::setAutocorrect(std::int32_t mode) {
  change([=](auto& t) { t.autocorrection = mode; });
}
void KesTextInputTraitsWrapper::setAutocapitalize(std::int32_t mode) {
  change([=](auto& t) { t.autocapitalization = mode; });
}
void KesTextInputTraitsWrapper::setPasswordMode(bool password) {
  change([=](auto& t) { t.password = password; });
}

}  // namespace kes
