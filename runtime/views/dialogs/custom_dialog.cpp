#include "runtime/views/dialogs/custom_dialog.h"

#include "platform/ui/application.h"
#include "platform/ui/overlays/dialog.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/views/base/image_source.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

constexpr auto kDefaultColor = static_cast<std::int32_t>(0xFF2866BF);

// A character of the icon face for each style that brings its own symbol.
const char* symbolOf(std::int32_t style) {
  switch (style) {
    case iCustomDialog::STYLE_SUCCESS:
      return "\uE876";  // check mark
    case iCustomDialog::STYLE_ERROR:
      return "\uE5CD";  // cross
    case iCustomDialog::STYLE_WARNING:
      return "\uE002";  // triangle
    case iCustomDialog::STYLE_EDIT:
      return "\uE254";  // pencil
    case iCustomDialog::STYLE_QUESTION:
      return "\uE887";  // question mark
    case iCustomDialog::STYLE_NOTICE:
    case iCustomDialog::STYLE_INFO:
      return "\uE88E";  // the letter i
    default:
      return "";
  }
}

void present(AlertView& alert) {
  const auto dialog = std::exchange(alert.waiting, nullptr);
  if (!dialog) return;  // shown before
  alert.presented = dialog;
  dialog->onResult = [alert = Ref<AlertView>(&alert)](int result) {
    alert->result = result;
    KesObjectWrapper::raiseUIEvent(*alert, "_result:", {static_cast<std::int32_t>(result)});
  };
  dialog->present();
  alert.view = Ref<ui::View>(dialog->view());
}

}  // namespace

AlertView::AlertView() = default;

AlertView::~AlertView() = default;

void AlertView::describe(ClassBuilder<AlertView>& c) {
  c.name("SCLAlertView");
  c.storedField<&AlertView::view>("view");
}

void iCustomDialog::describe(ClassBuilder<iCustomDialog>& c) {
  c.name("iCustomDialog");
  c.storedField<&iCustomDialog::alertView>("alertView");
}

iCustomDialog iCustomDialog::fromBoxed(const Value& v) {
  const auto dialog = v.as<iCustomDialog>();
  return dialog ? *dialog : iCustomDialog();
}

void iCustomDialog::Initialize(const KesViewWrapper& panel) {
  alertView = platform::makeShared<AlertView>();
  alertView->result = RESULT_CANCEL;
  alertView->waiting = platform::makeShared<ui::Dialog>();
  alertView->waiting->content = Ref<ui::View>(&panel.view());
  CustomColor = kDefaultColor;
  Style = STYLE_INFO;
  CustomIcon = KesBitmap();
}

Value iCustomDialog::ShowAsync(const Ref<Kes>& bi, const Value& title, const Value& positive,
                               const Value& cancel, const Value& negative, const KesBitmap& icon,
                               bool cancelable) {
  if (icon.IsInitialized()) CustomIcon = icon;
  return ShowAsync(bi, title, positive, cancel, negative, cancelable);
}

Value iCustomDialog::ShowAsync(const Ref<Kes>& bi, const Value& title, const Value& positive,
                               const Value& cancel, const Value& negative, bool cancelable) {
  if (!alertView)
    throw KesException(formatText("Object was not initialized (%@)", {"SCLAlertView"}));
  if (const auto dialog = alertView->waiting) {
    KesObjectWrapper::setBIAndEventName(*alertView, bi, "dialog");
    dialog->title = textForm(title);
    const std::pair<const Value&, std::int32_t> buttons[] = {
        {positive, RESULT_POSITIVE}, {negative, RESULT_NEGATIVE}, {cancel, RESULT_CANCEL}};
    for (const auto& [text, result] : buttons)
      if (const std::string t = text.isNilOrNull() ? "" : textForm(text); !t.empty())
        dialog->addButton(t, result);
    dialog->cancelable = cancelable;
    dialog->cancelResult = RESULT_CANCEL;
    dialog->spinner = Style == STYLE_WAITING;
    dialog->icon = symbolOf(Style);
    dialog->iconImage = imageOf(KesBitmap::fromBoxed(CustomIcon));
    dialog->accent = ColorToUIColor(CustomColor);
    dialog->circle = Style != STYLE_CUSTOM || !dialog->iconImage.empty();
    present(*alertView);
  }
  return alertView;
}

void iCustomDialog::CloseDialog(std::int32_t result) {
  if (!alertView) return;
  alertView->result = result;
  if (const auto dialog = alertView->presented.lock()) dialog->dismiss(result);
}

}  // namespace kes
