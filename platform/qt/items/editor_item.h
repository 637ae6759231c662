// A text field or text view: the toolkit's editor over the view's text. What the user
// types goes to TextInput::userEdited(); what the program sets is shown. Keyboard focus
// follows the view's.
#pragma once

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/text_input.h"

namespace qt {

class RichPage;

class EditorItem final : public ViewItem {
  Q_OBJECT
 public:
  EditorItem(Stage& stage, ui::View& view);
  ~EditorItem() override;

  bool keepsState() const override { return true; }
  bool takesTouches() const override { return true; }
  QQuickItem* keyboardItem() override { return input_; }
  QObject* accessibleInside() override;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  BoxLook lookOf(const ui::View& view, ui::Color background) const override;

 private Q_SLOTS:
  void edited(const QString& text);
  void accepted();
  void linkClicked(const QString& url);
  void focusMoved();

 private:
  void syncField(ui::TextField& field);
  void syncPage(ui::TextView& page);

  std::unique_ptr<QQuickItem> editor_;
  std::unique_ptr<RichPage> rich_;  // in place of the editor's own drawing
  QQuickItem* input_ = nullptr;
};

}  // namespace qt
