// A navigation bar or toolbar as ordinary views: title, prompt, back button and items
// are labels and buttons in the tree, so every screen shows, hits and names them the
// same way. Owned by a NavigationController. Main thread, points.
#pragma once

#include "platform/ui/controls/button.h"
#include "platform/ui/controls/label.h"
#include "platform/ui/pages/bar_item.h"

namespace ui {

class BarView : public View {
 public:
  enum class Kind { Navigation, Toolbar };

  explicit BarView(Kind kind);
  std::string_view className() const override {
    return kind_ == Kind::Navigation ? "UINavigationBar" : "UIToolbar";
  }
  struct Contents {
    std::string title, prompt;
    Ref<View> titleView;
    BarItems left, right;  // a toolbar shows left only, spread by its flexible spaces
    bool backButton = false;
  };
  // Replaces what is shown, building views only for what differs.
  void show(Contents contents);
  const Contents& contents() const { return contents_; }
  double heightFor(double statusBar) const;  // with the status bar's share and the prompt
  double topInset = 0;                       // the status bar's share
  std::function<void()> onBack;

  Label& titleLabel() { return *title_; }
  View& backButton() { return *back_; }
  // The view that stands for an item, or null.
  View* viewFor(const BarButtonItem& item) const;
  void itemChanged() { rebuildItems(); }

 protected:
  void layoutSubviews() override;

 private:
  struct Slot {
    Ref<BarButtonItem> item;
    Ref<View> view;  // null for a flexible space
  };
  void rebuildItems();
  Slot slotFor(const Ref<BarButtonItem>& item);
  double itemWidth(const Slot& slot) const;
  // The words of the buttons, by a share of the size that they are meant to have.
  void setItemSize(double share);

  Kind kind_;
  Contents contents_;
  Ref<Label> title_, prompt_;
  Ref<Button> back_;
  Ref<View> titleView_;
  std::vector<Slot> left_, right_;
};

}  // namespace ui
