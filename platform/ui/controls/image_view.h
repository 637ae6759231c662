// Shows an image. Main thread. Takes no touches until told to (setUserInteraction).
#pragma once

#include "platform/ui/tree/view.h"
#include "platform/ui/values/image.h"

namespace ui {

// Numbered as the designer does.
enum class ContentMode : std::uint8_t {
  Fill = 0,
  Fit = 1,
  FillKeepingAspect = 2,
  Redraw = 3,
  Center = 4,
  Top = 5,
  Bottom = 6,
  Left = 7,
  Right = 8,
  TopLeft = 9,
  TopRight = 10,
  BottomLeft = 11,
  BottomRight = 12,
};

class ImageView : public View {
 public:
  ImageView() { setUserInteraction(false); }
  std::string_view className() const override { return "UIImageView"; }

  const Image& image() const { return image_; }
  void setImage(Image image);
  ContentMode contentMode() const { return mode_; }
  void setContentMode(ContentMode mode);
  Size sizeThatFits(Size limit) const override;  // the image's natural size

 protected:
  Role defaultRole() const override;  // an image only when it has a name

 private:
  Image image_;
  ContentMode mode_ = ContentMode::Fill;
};

}  // namespace ui
