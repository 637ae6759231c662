// One entry of a navigation bar or toolbar: what it shows, how it is called aloud and
// what a press does. Shared between the page that owns it and the bar that shows it.
// Main thread. Nothing here throws but what the hook throws.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/ui/tree/view.h"
#include "platform/ui/values/font.h"
#include "platform/ui/values/image.h"

namespace ui {

class BarButtonItem : public platform::Shared {
 public:
  enum class Kind { System, Text, Image, Custom, Drawer };

  // The platform's system items by number; 5 is a flexible space.
  static constexpr int kFlexibleSpace = 5;
  static Ref<BarButtonItem> system(int number);
  static Ref<BarButtonItem> text(std::string text);
  static Ref<BarButtonItem> image(Image image);
  static Ref<BarButtonItem> custom(Ref<View> view);
  static Ref<BarButtonItem> drawer();  // the "three lines" that open a menu

  std::string_view className() const override { return "UIBarButtonItem"; }
  Kind kind() const { return kind_; }
  int systemNumber() const { return number_; }  // -1 unless a system item
  bool flexibleSpace() const { return kind_ == Kind::System && number_ == kFlexibleSpace; }
  const std::string& title() const { return title_; }
  const Image& image() const { return image_; }
  View* customView() const { return custom_.get(); }
  // The icon face's character for system and drawer items, else empty.
  std::string icon() const;

  int style() const { return style_; }  // 0 plain, 2 done; not the item's number
  void setStyle(int style);
  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);
  std::optional<Color> tint() const { return tint_; }
  void setTint(std::optional<Color> tint);
  std::optional<Font> titleFont() const { return font_; }
  void setTitleFont(std::optional<Font> font);
  // As set, else the title or the name of the system item in the program's words.
  std::string accessibleName() const;
  void setAccessibleName(std::string name);

  std::function<void(BarButtonItem&)> onPress;
  void press();  // does nothing while disabled

 private:
  friend class BarView;
  BarButtonItem(Kind kind, int number) : kind_(kind), number_(number) {}
  void changed();

  Kind kind_;
  int number_ = -1;
  int style_ = 0;
  bool enabled_ = true;
  std::string title_, name_;
  Image image_;
  Ref<View> custom_;
  std::optional<Color> tint_;
  std::optional<Font> font_;
  WeakRef<View> shownBy_;  // told to lay its bar out again
};

using BarItems = std::vector<Ref<BarButtonItem>>;

}  // namespace ui
