#include "platform/ui/controls/text_input.h"

#include <cmath>

#include "platform/ui/application.h"

namespace ui {

void TextInput::setTraits(const TextInputTraits& traits) {
  if (traits == traits_) return;
  traits_ = traits;
  markChanged(Change::Content);
}

void TextInput::userEdited(std::string now) {
  if (!editable() || now == text()) return;
  Ref<View> pin(this);
  const std::string former = text();
  setText(std::move(now));
  if (const auto hook = onTextChanged) hook(former, text());
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

Size TextView::sizeThatFits(Size limit) const {
  const auto s = measured(limit.width > 0 ? std::max(1.0, limit.width - 10) : 0, 0);
  if (!s) return bounds().size();
  return {limit.width > 0 ? limit.width : s->width + 10, s->height + 16};
}

}  // namespace ui
