#include "platform/ui/overlays/dialog.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/application.h"
#include "platform/ui/controls/image_view.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/tree/layout_view.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr double kPadding = 16, kGap = 12, kInnerMargin = 8;

Ref<Label> cardLabel(const std::string& text, const Font& font, Color color) {
  auto label = makeShared<Label>();
  label->setText(text);
  label->setFont(font);
  label->setTextColor(color);
  label->setAlignment(TextAlign::Center);
  label->setMaxLines(0);
  return label;
}

}  // namespace

void Dialog::present() {
  auto* app = Application::current();
  auto* window = app ? app->keyWindow() : nullptr;
  if (presented_ || !window) return;
  presented_ = true;
  build();
  app->dialogs_.emplace_back(this);
  layer_->setFrame(window->bounds());
  window->overlay().addSubview(layer_);
  if (auto* toast = app->hud().toastView()) toast->bringToFront();
  app->screen().announce(title.empty() ? message : title);
  takeFocus();
  app->input().ignoreTaps(*layer_, style::kTapPause);
  layer_->setAlpha(0);
  app->animator().alpha(*layer_, 1, {style::kFade});
}

void Dialog::build() {
  const Color accent = circle.value_or(looks().accent);
  auto layer = makeShared<LayoutView>();
  layer->setModal(true);
  scrim_ = makeShared<View>();
  scrim_->setBackground(style::kScrim);
  scrim_->setRole(Role::None);
  scrim_->setOnTap([weak = WeakRef<Dialog>(this)](View&) {
    if (const auto self = weak.lock()) self->cancel();
  });
  card_ = makeShared<View>();
  card_->setBackground(style::kCard);
  card_->setBorder({0, kClear, style::kCardRadius});
  card_->setShadow({kBlack, {0, 4}, 0.3, 12});
  card_->setRole(role);
  card_->setAccessibleName(title.empty() ? message : title);
  layer->addSubview(scrim_);
  layer->addSubview(card_);
  if (circle || spinner) {
    circleView_ = makeShared<View>();
    circleView_->setFrame({0, 0, style::kDialogCircle, style::kDialogCircle});
    circleView_->setBackground(accent);
    circleView_->setBorder({3, style::kCard, style::kDialogCircle / 2});
    Ref<View> inside;
    if (spinner) {
      auto indicator = makeShared<ActivityIndicator>();
      indicator->setColor(looks().onAccent);
      indicator->setSpinning(true);
      inside = indicator;
    } else if (!iconImage.empty()) {
      auto picture = makeShared<ImageView>();
      picture->setImage(iconImage);
      picture->setContentMode(ContentMode::Fit);
      inside = picture;
    } else if (!icon.empty()) {
      inside = cardLabel(icon, style::iconFont(28), looks().onAccent);
    }
    if (inside) {
      inside->setFrame(circleView_->bounds().inset({12, 12, 12, 12}));
      circleView_->addSubview(inside);
    }
    card_->addSubview(circleView_);
  }
  if (!title.empty()) {
    titleLabel_ = cardLabel(title, Font::bold(18), style::kText);
    titleLabel_->setRole(Role::Heading);
    card_->addSubview(titleLabel_);
  }
  if (!message.empty()) {
    messageLabel_ = cardLabel(message, Font::system(15), style::kSecondaryText);
    card_->addSubview(messageLabel_);
  }
  if (content) card_->addSubview(content);
  for (const auto& spec : buttons_) {
    auto button = makeShared<Button>();
    button->setTitle(spec.text);
    button->setFont(Font::bold(16));
    button->setTextColor(looks().onAccent);
    button->setBackground(accent);
    button->setBorder({0, kClear, 6});
    button->setOnTap([weak = WeakRef<Dialog>(this), result = spec.result](View&) {
      if (const auto self = weak.lock()) self->dismiss(result);
    });
    card_->addSubview(button);
    buttonViews_.push_back(button);
  }
  layer->onLayout = [weak = WeakRef<Dialog>(this)](LayoutView&) {
    if (const auto self = weak.lock()) self->layOut();
  };
  layer_ = layer;
}

void Dialog::layOut() {
  const Size all = layer_->bounds().size();
  scrim_->setFrame(layer_->bounds());
  if (all == placedFor_) return;  // the caller may have moved the card
  placedFor_ = all;
  const double most = std::max(0.0, std::min(all.width - 2 * kInnerMargin, style::kCardMaxWidth));
  double width = std::min(most, all.width - 2 * style::kCardMargin);
  if (content) width = std::min(most, std::max(width, content->bounds().width + 2 * kGap));
  const double inner = std::max(0.0, width - 2 * kPadding);
  double y = kPadding;
  if (circleView_) {
    circleView_->setFrame({(width - style::kDialogCircle) / 2, -style::kDialogCircle / 2,
                           style::kDialogCircle, style::kDialogCircle});
    y += style::kDialogCircle / 2;
  }
  if (titleLabel_) {
    const double height = titleLabel_->sizeThatFits({inner, 0}).height;
    titleLabel_->setFrame({kPadding, y, inner, height});
    y += height + kGap;
  }
  const auto count = static_cast<double>(buttonViews_.size());
  const double rows = horizontalButtons ? std::min(count, 1.0) : count;
  const double least = style::kStatusBarHeight + (circleView_ ? style::kDialogCircle / 2 : 0);
  if (messageLabel_) {
    // As high as its text, but the buttons stay on the screen.
    const double height = messageLabel_->sizeThatFits({inner, 0}).height;
    const double below = kGap + (content ? content->bounds().height + kGap : 0) +
                         rows * (style::kTapSize + kGap) + kPadding - kGap;
    const double room = all.height - least - kInnerMargin - y - below;
    const double shown = std::clamp(room, std::min(height, style::kTapSize), height);
    placeMessage({kPadding, y, inner, shown}, height);
    y += shown + kGap;
  }
  if (content) {
    const Size s = content->bounds().size();
    content->setFrame({(width - s.width) / 2, y, s.width, s.height});
    y += s.height + kGap;
  }
  if (horizontalButtons && count > 0) {
    const double each = (inner - kGap * (count - 1)) / count;
    for (std::size_t i = 0; i < buttonViews_.size(); ++i)
      buttonViews_[i]->setFrame(
          {kPadding + static_cast<double>(i) * (each + kGap), y, each, style::kTapSize});
    y += style::kTapSize + kGap;
  } else {
    for (const auto& button : buttonViews_) {
      button->setFrame({kPadding, y, inner, style::kTapSize});
      y += style::kTapSize + kGap;
    }
  }
  y += kPadding - kGap;
  const double top = std::max(least, (all.height - y) / 2);
  card_->setFrame({std::floor((all.width - width) / 2), std::floor(top), width, y});
}

// A message that is higher than its room scrolls.
void Dialog::placeMessage(const Rect& room, double height) {
  if (height > room.height && !messageArea_) {
    messageArea_ = makeShared<ScrollView>();
    messageArea_->content().addSubview(messageLabel_);
    card_->insertSubview(messageArea_, 0);
  }
  messageLabel_->setFrame(messageArea_ ? Rect{0, 0, room.width, height} : room);
  if (!messageArea_) return;
  messageArea_->setFrame(room);
  messageArea_->setContentSize({room.width, height});
}

void Dialog::dismiss(int result) {
  if (!layer_) return;
  Ref<Dialog> pin(this);
  if (auto* app = Application::current()) std::erase(app->dialogs_, pin);
  const Ref<View> layer = std::exchange(layer_, nullptr);
  layer->setModal(false);
  layer->removeFromParent();
  if (content && content->parent() == card_.get()) content->removeFromParent();
  buttonViews_.clear();
  giveFocusBack();
  const auto done = std::exchange(onResult, {});
  if (done) done(result);
}

// A field that is to be filled in, else the first button.
void Dialog::takeFocus() {
  auto& app = *Application::current();
  former_ = WeakRef<View>(app.focus().view());
  if (content)
    for (const auto& view : focusOrder(*content))
      if (view->wantsKeyboard()) return app.input().focusOn(view.get());
  app.input().focusOn(buttonView(0));
}

void Dialog::giveFocusBack() {
  auto* app = Application::current();
  auto* window = app ? app->keyWindow() : nullptr;
  if (!window) return;
  auto* root = window->rootViewController();
  const auto former = former_.lock();
  app->input().focusOn(former && reachable(*former) ? former.get()
                       : root                       ? root->landmark()
                                                    : nullptr);
  // The second of two quick taps on a button was not meant for what lies under it.
  if (root) app->input().ignoreTaps(root->view(), style::kTapPause);
}

bool Dialog::cancel() {
  if (!cancelable || !layer_) return false;
  dismiss(cancelResult);
  return true;
}

View* Dialog::buttonView(std::size_t index) const {
  return index < buttonViews_.size() ? buttonViews_[index].get() : nullptr;
}

}  // namespace ui
