#include "platform/ui/overlays/hud.h"

#include <algorithm>

#include "platform/ui/application.h"
#include "platform/ui/controls/indicators.h"
#include "platform/ui/controls/label.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr double kPadding = 16, kSpinner = 37;

class HudLayer final : public View {
 public:
  std::function<void(View&)> onLayout;

 protected:
  void layoutSubviews() override {
    if (onLayout) onLayout(*this);
  }
};

Ref<Label> hudLabel() {
  auto label = makeShared<Label>();
  label->setFont(Font::system(15));
  label->setTextColor(style::kOnHud);
  label->setAlignment(TextAlign::Center);
  label->setMaxLines(0);
  return label;
}

Ref<View> hudCard() {
  auto card = makeShared<View>();
  card->setBackground(style::kHud);
  card->setBorder({0, kClear, style::kCardRadius});
  return card;
}

// The size of the label's text in a layer of the given width.
Size fit(const Label& label, double width) {
  auto* app = Application::current();
  return label.text().empty()
             ? Size{}
             : app->text().measure(label.text(), label.font(), std::max(40.0, width), 0);
}

void appear(Application& app, const Ref<View>& layer, View& room) {
  layer->setFrame(room.bounds());
  room.addSubview(layer);
  layer->setAlpha(0);
  app.animator().alpha(*layer, 1, {style::kFade});
}

void leave(Application& app, const Ref<View>& layer) {
  layer->setModal(false);
  layer->setAccessibilityHidden(true);
  app.animator().alpha(*layer, 0, {style::kFade}, [weak = WeakRef<View>(layer)](bool) {
    if (const auto gone = weak.lock()) gone->removeFromParent();
  });
}

}  // namespace

Hud::Hud(Application& application) : app_(application) {}

Hud::~Hud() = default;

bool Hud::isLayer(const View& view) { return dynamic_cast<const HudLayer*>(&view) != nullptr; }

void Hud::showProgress(std::string label) {
  if (progress_) {
    progressLabel_->setText(std::move(label));
    progress_->setNeedsLayout();
    app_.screen().announce(progressLabel_->text());
    return;
  }
  auto layer = makeShared<HudLayer>();
  auto card = hudCard();
  auto spinner = makeShared<ActivityIndicator>();
  spinner->setStyle(0);
  spinner->setColor(style::kOnHud);
  spinner->setSpinning(true);
  progressLabel_ = hudLabel();
  progressLabel_->setText(std::move(label));
  card->addSubview(spinner);
  card->addSubview(progressLabel_);
  layer->addSubview(card);
  layer->setModal(true);
  layer->onLayout = [card, spinner, text = progressLabel_](View& self) {
    const Size s = fit(*text, self.bounds().width - 4 * kPadding);
    const Size whole{std::max(s.width, kSpinner * 2) + 2 * kPadding,
                     kSpinner + 2 * kPadding + (s.height > 0 ? s.height + kPadding / 2 : 0)};
    card->setFrame(Rect::centered(self.bounds().center(), whole));
    spinner->setFrame({(whole.width - kSpinner) / 2, kPadding, kSpinner, kSpinner});
    text->setFrame({kPadding, kPadding * 1.5 + kSpinner, whole.width - 2 * kPadding, s.height});
  };
  progress_ = layer;
  app_.screen().announce(progressLabel_->text());
  auto* window = app_.keyWindow();
  if (!window) return;
  auto* root = window->rootViewController();
  View* cover = root ? root->cover() : nullptr;
  appear(app_, progress_, cover ? *cover : window->overlay());
  if (toast_) toast_->bringToFront();
  if (const auto* focused = app_.focus().view(); focused && !reachable(*focused))
    app_.focus().lose();
}

void Hud::hideProgress() {
  if (!progress_) return;
  leave(app_, std::exchange(progress_, nullptr));
  progressLabel_ = nullptr;
  app_.screen().announce(words().loaded);
}

std::string Hud::progressText() const { return progressLabel_ ? progressLabel_->text() : ""; }

void Hud::toast(std::string text, std::int64_t milliseconds) {
  dismissToast();
  auto layer = makeShared<HudLayer>();
  layer->setUserInteraction(false);
  auto card = hudCard();
  toastLabel_ = hudLabel();
  toastLabel_->setText(std::move(text));
  toastLabel_->setRole(Role::Status);
  card->addSubview(toastLabel_);
  layer->addSubview(card);
  layer->onLayout = [card, text = toastLabel_](View& self) {
    const Size s = fit(*text, self.bounds().width - 4 * kPadding);
    const Size whole{s.width + 2 * kPadding, s.height + 1.5 * kPadding};
    card->setFrame(Rect::centered({self.bounds().center().x, self.bounds().height * 0.8}, whole));
    text->setFrame({kPadding, 0.75 * kPadding, s.width, s.height});
  };
  toast_ = layer;
  app_.screen().announce(toastLabel_->text());
  if (auto* window = app_.keyWindow()) appear(app_, toast_, window->overlay());
  toastTimer_ = app_.timers().start(milliseconds, [this] {
    toastTimer_ = 0;
    dismissToast();
  });
}

void Hud::dismissToast() {
  if (toastTimer_) app_.timers().stop(std::exchange(toastTimer_, 0));
  if (!toast_) return;
  leave(app_, std::exchange(toast_, nullptr));
  toastLabel_ = nullptr;
}

std::string Hud::toastText() const { return toastLabel_ ? toastLabel_->text() : ""; }

}  // namespace ui
