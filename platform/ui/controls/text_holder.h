// TextHolder: a view with a text of its own, plain or with attributes over one TextLook.
// Base of labels, buttons and text inputs. Conditions as for View.
#pragma once

#include "platform/ui/tree/view.h"
#include "platform/ui/values/text_look.h"

namespace ui {

class TextHolder : public View {
 public:
  TextHolder* textHolder() override { return this; }

  const std::string& text() const { return rich_ ? rich_->text() : text_; }
  void setText(std::string text);
  // Null while the text is plain.
  const AttributedText* attributedText() const { return rich_.get(); }
  void setAttributedText(AttributedText text);

  const TextLook& look() const { return look_; }
  const Font& font() const { return look_.font; }
  void setFont(const Font& font);
  Color textColor() const { return look_.color.value_or(ownTextColor()); }
  void setTextColor(std::optional<Color> color);
  TextAlign alignment() const { return look_.alignment; }
  void setAlignment(TextAlign alignment);

 protected:
  TextHolder() = default;
  explicit TextHolder(TextAlign alignment) { look_.alignment = alignment; }
  virtual void textReplaced() {}
  // Where no colour was set.
  virtual Color ownTextColor() const { return kBlack; }
  // The room that the text takes; none while there is no application to measure it.
  std::optional<Size> measured(double maxWidth, int maxLines) const;

 private:
  void setLook(const TextLook& look);

  std::string text_;
  std::unique_ptr<AttributedText> rich_;
  TextLook look_;
};

}  // namespace ui
