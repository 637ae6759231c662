// KesTextInputTraitsWrapper: what the keyboard is told about a field: correction,
// capitals, kind of keyboard, password. Over a text field or a text view; conditions as
// for KesViewWrapper.
#pragma once

#include "platform/ui/controls/text_input.h"
#include "runtime/views/base/control_wrapper.h"

namespace kes {

class KesTextInputTraitsWrapper
    : public ViewWrapper<KesTextInputTraitsWrapper, ui::TextInput, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UITextInputTraits";
  static constexpr std::string_view kName = "KesTextInputTraitsWrapper";
  static constexpr std::int32_t TYPE_DEFAULT = 0, TYPE_NUMBERS_AND_PUNCTUATIONS = 2, TYPE_URL = 3,
                                TYPE_NUMBER_PAD = 4, TYPE_PHONE_PAD = 5, TYPE_EMAIL_ADDRESS = 7,
                                TYPE_DECIMAL_PAD = 8;

  Ref<ui::View> makeView() const override;
  // Reads the traits only: the members that have them build the rest.
  static ui::TextInputTraits traitsOf(const Dictionary& properties);

  std::int32_t KeyboardType() const { return self().traits().keyboardType; }
  void setKeyboardType(std::int32_t type);
  std::int32_t ReturnKey() const { return self().traits().returnKey; }
  void setReturnKey(std::int32_t key);
  std::int32_t Autocorrect() const { return self().traits().autocorrection; }
  void setAutocorrect(std::int32_t mode);
  std::int32_t Autocapitalize() const { return self().traits().autocapitalization; }
  void setAutocapitalize(std::int32_t mode);
  bool PasswordMode() const { return self().traits().password; }
  void setPasswordMode(bool password);

 private:
  template <class F>
  void change(F apply);
};

}  // namespace kes
