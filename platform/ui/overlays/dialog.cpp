#include "platform/ui/overlays/dialog.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/application.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/image_view.h"
#include "platform/ui/controls/indicators.h"
#include "platform/ui/controls/label.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/tree/layout_view.h"
#include "platform/ui/values/branding.h"
#include "platform/ui/values/style.h"

namespace ui {

namespace {

constexpr double kPadding = 16, kGap = 12, kInnerMargin = 8;
constexpr double kLeastBody = 32;    // of what scrolls over the buttons
constexpr double kButtonSlack = 12;  // of its own padding a button may give up

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

Dialog::Dialog() = default;

Dialog::~Dialog() = default;

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
  keyboardObserver_ =
      app->focus().addKeyboardObserver([weak = WeakRef<Dialog>(this)](bool, double) {
        if (const auto self = weak.lock(); self && self->layer_) self->layer_->setNeedsLayout();
      });
  takeFocus();
  app->input().ignoreTaps(*layer_, style::kTapPause);
  layer_->setAlpha(0);
  app->animator().alpha(*layer_, 1, {style::kFade});
}

void Dialog::build() {
  const Color tone = accent.value_or(looks().accent);
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
  if (circle) {
    circleView_ = makeShared<View>();
    circleView_->setFrame({0, 0, style::kDialogCircle, style::kDialogCircle});
    circleView_->setBackground(tone);
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
    // The way out is quieter than what is asked.
    const bool quiet = spec.result == cancelResult && buttons_.size() > 1;
    button->setTextColor(quiet ? tone : looks().onAccent);
    button->setBackground(quiet ? kClear : tone);
    button->setBorder(quiet ? Border{1, tone, 6} : Border{0, kClear, 6});
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
  auto* app = Application::current();
  const double keyboard = app ? app->focus().keyboardHeight() : 0;
  const Size all{layer_->bounds().width, std::max(0.0, layer_->bounds().height - keyboard)};
  scrim_->setFrame(layer_->bounds());
  if (all == placedFor_) return;  // the caller may have moved the card
  placedFor_ = all;
  const double most = std::max(0.0, std::min(all.width - 2 * kInnerMargin, style::kCardMaxWidth));
  double width = std::min(most, all.width - 2 * style::kCardMargin);
  if (content) width = std::min(most, std::max(width, content->bounds().width + 2 * kGap));
  const double above = circleView_ ? style::kDialogCircle / 2 : 0;
  if (circleView_)
    circleView_->setFrame(
        {(width - style::kDialogCircle) / 2, -above, style::kDialogCircle, style::kDialogCircle});

  // The buttons stay on the screen: what is over them scrolls where it is too high.
  const double least = style::kStatusBarHeight + above, top = kPadding + above;
  const double room = all.height - least - kInnerMargin - top - kPadding;
  const auto parts = bodyParts(width);
  double body = parts.empty() ? 0 : -kGap, widest = width;
  for (const auto& part : parts) {
    body += part.size.height + kGap;
    widest = std::max(widest, part.size.width);
  }
  const double inner = std::max(0.0, width - 2 * kPadding), buttons = buttonsHeight(inner);
  const double gap = body > 0 && buttons > 0 ? kGap : 0;
  // So many buttons that nothing would be left to read scroll along.
  const bool allScrolls = buttons + gap + kLeastBody > room;
  const bool scrolls = body + gap + buttons > room || widest > width;
  const double shown = !scrolls ? body : allScrolls ? room : room - gap - buttons;
  View& holder = scrolls ? area() : *card_;
  double y = scrolls ? 0 : top;
  const auto put = [](View& view, View& parent, const Rect& frame) {
    if (view.parent() != &parent) parent.addSubview(Ref<View>(&view));
    view.setFrame(frame);
  };
  for (const auto& part : parts) {
    put(*part.view, holder,
        {std::max(0.0, (width - part.size.width) / 2), y, part.size.width, part.size.height});
    y += part.size.height + kGap;
  }
  y += parts.empty() ? 0 : gap - kGap;
  if (!allScrolls && scrolls) y = top + shown + gap;
  placeButtons(scrolls && allScrolls ? holder : *card_, {kPadding, y}, inner, put);
  const double height = top + shown + (scrolls && allScrolls ? 0 : gap + buttons) + kPadding;
  if (area_) {
    area_->setHidden(!scrolls);
    area_->setFrame({0, top, width, std::max(0.0, shown)});
    area_->setContentSize({widest, allScrolls ? body + gap + buttons : body});
  }
  const double from = std::max(least, (all.height - height) / 2);
  card_->setFrame({std::floor((all.width - width) / 2), std::floor(from), width, height});
}

std::vector<Dialog::Part> Dialog::bodyParts(double width) const {
  const double inner = std::max(0.0, width - 2 * kPadding);
  std::vector<Part> parts;
  for (const auto& label : {titleLabel_, messageLabel_})
    if (label) parts.push_back({label.get(), {inner, label->sizeThatFits({inner, 0}).height}});
  if (content) parts.push_back({content.get(), content->bounds().size()});
  return parts;
}

View& Dialog::area() {
  if (!area_) {
    area_ = makeShared<ScrollView>();
    area_->setMoreFade(style::kCard);
    card_->insertSubview(area_, 0);
  }
  return area_->content();
}

// Side by side where each title has room, else one over the other.
bool Dialog::stacked(double inner) const {
  if (!horizontalButtons) return true;
  const auto count = static_cast<double>(buttonViews_.size());
  const double each = (inner - kGap * (count - 1)) / count;
  return std::any_of(buttonViews_.begin(), buttonViews_.end(), [each](const auto& button) {
    return button->sizeThatFits({}).width > each + kButtonSlack;
  });
}

double Dialog::buttonsHeight(double inner) const {
  const auto count = buttonViews_.size();
  const double rows = static_cast<double>(count == 0 || stacked(inner) ? count : 1);
  return rows > 0 ? rows * (style::kTapSize + kGap) - kGap : 0;
}

void Dialog::placeButtons(View& holder, Point at, double inner, const Put& put) const {
  const auto count = static_cast<double>(buttonViews_.size());
  const bool stack = count > 0 && stacked(inner);
  const double each = stack || count < 1 ? inner : (inner - kGap * (count - 1)) / count;
  for (const auto& button : buttonViews_) {
    put(*button, holder, {at.x, at.y, each, style::kTapSize});
    (stack ? at.y : at.x) += (stack ? style::kTapSize : each) + kGap;
  }
}

void Dialog::dismiss(int result) {
  if (!layer_) return;
  Ref<Dialog> pin(this);
  if (auto* app = Application::current()) std::erase(app->dialogs_, pin);
  const Ref<View> layer = std::exchange(layer_, nullptr);
  layer->setModal(false);
  layer->removeFromParent();
  if (content && content->isDescendantOf(*card_)) content->removeFromParent();
  if (auto* app = Application::current())
    app->focus().removeKeyboardObserver(std::exchange(keyboardObserver_, 0));
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
