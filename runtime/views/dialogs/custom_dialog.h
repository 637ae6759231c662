// iCustomDialog: a dialog with a panel of the application's and up to three buttons.
//
// A plain copyable member, used again for each dialog. The end of the dialog is the
// event "dialog_result:" with the result, its sender the object that ShowAsync gives:
//
//   auto result = co_await waitFor<std::int32_t>("dialog_result:", _dialog.ShowAsync(…));
//
// Reached by name too: field "alertView", and its field "view". Main thread.
// ShowAsync throws "Object was not initialized (%@)" before Initialize.
#pragma once

#include "runtime/core/class_table.h"
#include "runtime/core/kes.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace ui {
class Dialog;
}

namespace kes {

class KesBitmap;

// One dialog: held by whoever made it and, while it is on the screen, by the screen.
class AlertView final : public Object {
 public:
  AlertView();
  ~AlertView() override;
  std::string_view className() const override { return "SCLAlertView"; }
  static void describe(ClassBuilder<AlertView>& c);

  Ref<ui::View> view;  // the card, once shown
  std::int32_t result = 0;
  Ref<ui::Dialog> waiting;        // until it is shown
  WeakRef<ui::Dialog> presented;  // from then on
};

class iCustomDialog final : public Object, public ByValue {
 public:
  static constexpr std::int32_t RESULT_POSITIVE = -1, RESULT_NEGATIVE = -2, RESULT_CANCEL = -3;
  static constexpr std::int32_t STYLE_SUCCESS = 0, STYLE_ERROR = 1, STYLE_NOTICE = 2,
                                STYLE_WARNING = 3, STYLE_INFO = 4, STYLE_EDIT = 5,
                                STYLE_WAITING = 6, STYLE_QUESTION = 7, STYLE_CUSTOM = 8;

  std::string_view className() const override { return "iCustomDialog"; }
  static iCustomDialog fromBoxed(const Value& v);
  static void describe(ClassBuilder<iCustomDialog>& c);

  void Initialize(const KesViewWrapper& panel);
  bool IsInitialized() const { return static_cast<bool>(alertView); }
  // Empty texts make no button. The icon may be an empty bitmap. A tap outside dismisses
  // a cancelable dialog with RESULT_CANCEL.
  Value ShowAsync(const Ref<Kes>& bi, const Value& title, const Value& positive,
                  const Value& cancel, const Value& negative, const KesBitmap& icon,
                  bool cancelable);
  Value ShowAsync(const Ref<Kes>& bi, const Value& title, const Value& positive,
                  const Value& cancel, const Value& negative, bool cancelable);
  void CloseDialog(std::int32_t result);
  std::int32_t Result() const { return alertView ? alertView->result : RESULT_CANCEL; }

  std::int32_t Style = STYLE_INFO;
  std::int32_t CustomColor = 0;
  Value CustomIcon;  // a KesBitmap
  Ref<AlertView> alertView;
};

}  // namespace kes
