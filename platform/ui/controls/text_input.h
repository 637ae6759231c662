// Editable text: one line (TextField) or many (TextView).
//
// The text lives here; the screen's own editor shows it and reports edits through
// userEdited(). Only what the user does raises the hooks; setText() doesn't. Being
// focused is being edited. Main thread.
#pragma once

#include "platform/ui/controls/text_holder.h"

namespace ui {

// The platform's numbers, kept as the designer gives them.
struct TextInputTraits {
  int autocorrection = 0, autocapitalization = 2, spellcheck = 0;
  int keyboardType = 0, keyboardAppearance = 0, returnKey = 0;
  bool password = false;
  bool operator==(const TextInputTraits&) const = default;
};

class TextInput : public TextHolder {
 public:
  const TextInputTraits& traits() const { return traits_; }
  void setTraits(const TextInputTraits& traits);
  virtual bool editable() const { return enabled(); }

  std::function<void(const std::string& former, const std::string& now)> onTextChanged;
  std::function<void()> onBeginEdit, onEndEdit;

  // What the user did: the whole text after an edit; text typed at the end.
  void userEdited(std::string now);
  void userTyped(std::string_view utf8) { userEdited(text() + std::string(utf8)); }

  // A password is not read out.
  std::string displayText() const override { return traits_.password ? "" : text(); }
  std::string accessibleValue() const override { return displayText(); }
  bool takesTap() const override { return editable(); }
  void tap(Point at) override;
  KeyUse keyPressed(Key key) override;
  bool typed(std::string_view utf8) override;
  bool wantsKeyboard() const override { return editable(); }

 protected:
  void focusChanged(bool focused) override;
  using TextHolder::setAttributedText;  // not for what is being edited

 private:
  TextInputTraits traits_;
};

class TextField : public TextInput {
 public:
  std::string_view className() const override { return "UITextField"; }
  const std::string& hint() const { return hint_; }
  void setHint(std::string hint);
  bool showsClearButton() const { return clearButton_; }
  void setShowsClearButton(bool shows);
  int borderStyle() const { return borderStyle_; }  // 0 none, 1 line, 2 bezel, 3 rounded
  void setBorderStyle(int style);
  bool shrinksToFit() const { return shrinks_; }
  void setShrinksToFit(bool shrinks);

  std::function<void()> onEnterPressed;
  void userPressedEnter();  // raises the hook; without one the field gives the focus up
  KeyUse keyPressed(Key key) override;
  Size sizeThatFits(Size limit) const override;

 protected:
  Role defaultRole() const override { return Role::TextField; }
  std::string derivedName() const override { return hint_; }

 private:
  std::string hint_;
  int borderStyle_ = 0;
  bool clearButton_ = false;
  bool shrinks_ = false;
};

class TextView : public TextInput {
 public:
  TextView() { setClipsToBounds(true); }
  std::string_view className() const override { return "UITextView"; }
  bool editable() const override { return editable_ && enabled(); }
  void setEditable(bool editable);
  using TextInput::setAttributedText;  // an edit makes the text plain again

  std::function<void(const std::string& url)> onLinkClick;
  Size sizeThatFits(Size limit) const override;
  // What can be edited is a value, what can only be read is the name: never both.
  std::string accessibleValue() const override {
    return editable_ ? TextInput::accessibleValue() : std::string();
  }

 protected:
  std::string derivedName() const override {
    return editable_ ? std::string() : TextInput::derivedName();
  }
  Role defaultRole() const override { return editable_ ? Role::TextArea : Role::StaticText; }

 private:
  bool editable_ = true;
};

}  // namespace ui
