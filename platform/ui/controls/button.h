// A push button with a title, an image or both. A press highlights it while the
// finger is down; a tap runs the tap hook. Main thread.
#pragma once

#include "platform/ui/tree/view.h"
#include "platform/ui/values/image.h"
#include "platform/ui/values/rich_text.h"

namespace ui {

class Button : public View {
 public:
  std::string_view className() const override { return "UIButton"; }

  const std::string& title() const { return rich_ ? rich_->text() : title_; }
  void setTitle(std::string title);
  const AttributedText* attributedTitle() const { return rich_.get(); }
  void setAttributedTitle(AttributedText title);

  int style() const { return style_; }  // the designer's number; 0 is a plain one
  void setStyle(int style);
  Font font() const { return font_; }
  void setFont(const Font& font);
  // Where no text colour is set the tint is used.
  Color textColor() const { return color_.value_or(tint()); }
  void setTextColor(std::optional<Color> color);
  Color pressedTextColor() const;
  void setPressedTextColor(std::optional<Color> color);
  TextAlign alignment() const { return alignment_; }
  void setAlignment(TextAlign alignment);

  const Image& image() const { return image_; }
  void setImage(Image image);
  const Image& backgroundImage() const { return background_; }
  const Image& pressedBackgroundImage() const { return pressedBackground_; }
  void setBackgroundImages(Image normal, Image pressed);

  Size sizeThatFits(Size limit) const override;
  std::string displayText() const override { return title(); }
  bool takesTap() const override { return true; }

 protected:
  Role defaultRole() const override { return Role::Button; }

 private:
  std::string title_;
  std::unique_ptr<AttributedText> rich_;
  Font font_;
  std::optional<Color> color_, pressedColor_;
  Image image_, background_, pressedBackground_;
  int style_ = 0;
  TextAlign alignment_ = TextAlign::Center;
};

}  // namespace ui
