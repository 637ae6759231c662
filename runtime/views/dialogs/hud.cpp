#include "runtime/views/dialogs/hud.h"

#include "platform/ui/application.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

constexpr std::int64_t kLongToast = 3000, kShortToast = 1500;

ui::Hud* hudOnScreen() {
  auto* app = ui::Application::current();
  return app && app->keyWindow() ? &app->hud() : nullptr;
}

}  // namespace

iHUD::iHUD() : shown_(platform::makeShared<Shown>()) {}

iHUD iHUD::fromBoxed(const Value& v) {
  const auto hud = v.as<iHUD>();
  return hud ? *hud : iHUD();
}

void iHUD::ToastMessageShow(const Value& message, bool isLong) {
  if (auto* hud = hudOnScreen()) hud->toast(textForm(message), isLong ? kLongToast : kShortToast);
}

void iHUD::ProgressDialogShow(const Value& message) { shown_->show(message); }
void iHUD::ProgressDialogHide() { shown_->hide(); }

iHUD::Progress iHUD::progress(const Value& message) {
  shown_->show(message);
  return Progress(shown_);
}

void iHUD::Shown::show(const Value& message) {
  auto* hud = hudOnScreen();
  if (!hud) return;
  hud->showProgress(textForm(message));
  overlay = WeakRef<ui::View>(hud->progressView());
}

void iHUD::Shown::hide() {
  const auto view = overlay.lock();
  overlay = {};
  auto* app = ui::Application::current();
  // Another HUD's overlay is not this one's to hide.
  if (view && app && app->hud().progressView() == view.get()) app->hud().hideProgress();
}

void iHUD::Progress::setText(const Value& message) {
  if (shown_) shown_->show(message);
}

iHUD::Progress::Progress(Ref<Shown> shown) : shown_(std::move(shown)) { ++shown_->guards; }

void iHUD::Progress::hide() {
  if (const auto shown = std::exchange(shown_, nullptr); shown && --shown->guards == 0)
    shown->hide();
}

}  // namespace kes
