// A push button with a title, an image or both. A press highlights it while the
// finger is down; a tap runs the tap hook. Main thread.
#pragma once

#include "platform/ui/controls/text_holder.h"
#include "platform/ui/values/image.h"

namespace ui {

class Button : public TextHolder {
 public:
  Button() : TextHolder(TextAlign::Center) {}
  std::string_view className() const override { return "UIButton"; }

  const std::string& title() const { return text(); }
  void setTitle(std::string title) { setText(std::move(title)); }

  int style() const { return style_; }  // the designer's number; 0 is a plain one
  void setStyle(int style);
  Color pressedTextColor() const;
  void setPressedTextColor(std::optional<Color> color);

  const Image& image() const { return image_; }
  void setImage(Image image);
  const Image& backgroundImage() const { return background_; }
  const Image& pressedBackgroundImage() const { return pressedBackground_; }
  void setBackgroundImages(Image normal, Image pressed);

  Size sizeThatFits(Size limit) const override;
  std::string displayText() const override { return title(); }
  bool takesTap() const override { return true; }
  bool holdsPress() const override { return true; }

 protected:
  Role defaultRole() const override { return Role::Button; }
  Color ownTextColor() const override { return tint(); }

 private:
  std::optional<Color> pressedColor_;
  Image image_, background_, pressedBackground_;
  int style_ = 0;
};

}  // namespace ui
