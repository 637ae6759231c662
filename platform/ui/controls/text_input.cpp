#include "platform/ui/controls/text_input.h"

#include <cmath>

#include "platform/ui/application.h"

namespace ui {

void TextInput::setText(std::string text) {
  textReplaced();
  if (text == text_) return;
  text_ = std::move(text);
  markChanged(Change::Content);
}

void TextInput::setFont(const Font& font) {
  if (font == font_) return;
  font_ = font;
  markChanged(Change::Content);
}

void TextInput::setTextColor(Color color) {
  if (color == color_) return;
  color_ = color;
  markChanged(Change::Content);
}

void TextInput::setAlignment(TextAlign alignment) {
  if (alignment == alignment_) return;
  alignment_ = alignment;
  markChanged(Change::Content);
}

void TextInput::setTraits(const TextInputTraits& traits) {
  if (traits == traits_) return;
  traits_ = traits;
  markChanged(Change::Content);
}

void TextInput::userEdited(std::string now) {
  if (!editable() || now == text_) return;
  Ref<View> pin(this);
  const std::string former = text_;
  setText(std::move(now));
  if (const auto hook = onTextChanged) hook(former, text_);
}

void TextInput::tap(Point at) {
  Ref<View> pin(this);
  requestFocus();
  View::tap(at);
}

KeyUse TextInput::keyPressed(Key key) {
  switch (key) {
    case Key::Enter:
    case Key::Space:
    case Key::Up:
    case Key::Down:
    case Key::Left:
    case Key::Right:
    case Key::Home:
    case Key::End:
      return KeyUse::Editor;
    default:
      return KeyUse::None;
  }
}

bool TextInput::typed(std::string_view utf8) {
  if (!editable()) return false;
  userTyped(utf8);
  return true;
}

void TextInput::focusChanged(bool focused) {
  if (const auto hook = focused ? onBeginEdit : onEndEdit) hook();
}

void TextField::setHint(std::string hint) {
  if (hint == hint_) return;
  hint_ = std::move(hint);
  markChanged(Change::Content | Change::Accessibility);
}

void TextField::setShowsClearButton(bool shows) {
  if (shows == clearButton_) return;
  clearButton_ = shows;
  markChanged(Change::Content);
}

void TextField::setBorderStyle(int style) {
  if (style == borderStyle_) return;
  borderStyle_ = style;
  markChanged(Change::Appearance);
}

void TextField::setShrinksToFit(bool shrinks) {
  if (shrinks == shrinks_) return;
  shrinks_ = shrinks;
  markChanged(Change::Content);
}

// Up and Down mean nothing within one line: they lead to its neighbours.
KeyUse TextField::keyPressed(Key key) {
  if (key == Key::Up || key == Key::Down) return KeyUse::None;
  if (key != Key::Enter) return TextInput::keyPressed(key);
  userPressedEnter();
  return KeyUse::Used;
}

void TextField::userPressedEnter() {
  if (!editable()) return;
  Ref<View> pin(this);
  if (const auto hook = onEnterPressed)
    hook();
  else
    resignFocus();
}

Size TextField::sizeThatFits(Size) const {
  auto* app = Application::current();
  if (!app) return bounds().size();
  const Size s = app->text().measure(text().empty() ? hint_ : text(), font(), 0, 1);
  return {s.width + 16, std::ceil(app->text().lineHeight(font())) + 12};
}

void TextView::setEditable(bool editable) {
  if (editable == editable_) return;
  editable_ = editable;
  if (!editable) resignFocus();
  markChanged(Change::State | Change::Accessibility);
}

void TextView::setAttributedText(AttributedText text) {
  setText(text.text());
  rich_ = std::make_unique<AttributedText>(std::move(text));
  markChanged(Change::Content);
}

Size TextView::sizeThatFits(Size limit) const {
  auto* app = Application::current();
  if (!app) return bounds().size();
  const double width = limit.width > 0 ? std::max(1.0, limit.width - 10) : 0;
  const Size s = rich_ ? app->text().measure(*rich_, font(), width, 0)
                       : app->text().measure(text(), font(), width, 0);
  return {limit.width > 0 ? limit.width : s.width + 10, s.height + 16};
}

}  // namespace ui
