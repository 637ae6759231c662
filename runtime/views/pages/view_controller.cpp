#include "runtime/views/pages/view_controller.h"

#include <algorithm>

#include "platform/ui/application.h"
#include "platform/ui/pages/navigation_controller.h"
#include "platform/ui/values/style.h"
#include "runtime/views/base/device.h"

namespace kes {

namespace {

// The shorter side, whichever way the phone is held.
std::int32_t statusBarHeight() {
  const ui::Rect bar = device::statusBarFrame();
  return static_cast<std::int32_t>(std::min(bar.width, bar.height));
}

}  // namespace

// --- The main view.

KesMainView::KesMainView(KesViewController& controller) : parent_(&controller) {
  setBackground(ui::style::kPage);
  KesPanelWrapper panel;
  panel.Initialize(KesObjectWrapper::getBI(controller), KesObjectWrapper::getEventName(controller));
  holder_ = panel.native();
  addSubview(holder_);
  holder_->setClipsToBounds(false);
  statusBarSize_ = statusBarHeight();
}

void KesMainView::layoutSubviews() {
  View::layoutSubviews();
  placeHolder();
}

// Not left to the layout pass alone: a sub that has just shown its page goes on at once
// and builds by the root panel's size. The panel tells of it after the pass, as ever.
void KesMainView::sizeChanged() {
  if (holder_) placeHolder();
}

void KesMainView::placeHolder() {
  statusBarSize_ = statusBarHeight();
  const auto* controller = parent_.peek();
  if (const auto* nav = controller ? controller->navigationController() : nullptr;
      nav && !nav->navigationBarHidden())
    statusBarSize_ = 0;
  // Compared with the whole height: with a status bar above, every pass goes on.
  if (statusBarSize_ == currentStatusBarSize_ && currentSize_ == bounds().size()) return;
  currentStatusBarSize_ = statusBarSize_;
  currentSize_ = {bounds().width, bounds().height - statusBarSize_};
  holder_->setBounds({0, 0, currentSize_.width, currentSize_.height});
  holder_->setCenter({currentSize_.width / 2, currentSize_.height / 2 + statusBarSize_});
}

// --- The controller.

KesViewController::KesViewController(const Ref<Kes>& bi, const Text& eventName) {
  KesObjectWrapper::setBIAndEventName(*this, bi, eventName);
  mainView_ = platform::makeShared<KesMainView>(*this);
  view();
}

KesViewController::~KesViewController() { stopObserving(); }

bool KesViewController::visible() const {
  const auto* attached = KesObjectWrapper::peekMap(*this);
  return attached && attached->get("visible").asBool();
}

void KesViewController::viewWillAppear(bool animated) {
  ViewController::viewWillAppear(animated);
  KesObjectWrapper::getMap(*this).set("visible", 1);
  KesObjectWrapper::raiseUIEvent(*this, "_appear", {});
  auto* app = ui::Application::current();
  if (!app || !KesObjectWrapper::hasMethod(*this, "_keyboardstatechanged:")) return;
  stopObserving();
  keyboardObserver_ = app->focus().addKeyboardObserver(
      [weak = WeakRef<KesViewController>(this)](bool shown, double height) {
        const auto page = weak.lock();
        if (!page) return;
        const Value param = shown ? Value(height) : Value(0);
        KesObjectWrapper::raiseEvent(*page, "_keyboardstatechanged:", std::span(&param, 1));
      });
}

void KesViewController::viewWillDisappear(bool animated) {
  ViewController::viewWillDisappear(animated);
  KesObjectWrapper::getMap(*this).set("visible", 0);
  KesObjectWrapper::raiseEvent(*this, "_disappear", {});
  stopObserving();
}

void KesViewController::stopObserving() {
  if (!keyboardObserver_) return;
  if (auto* app = ui::Application::current())
    app->focus().removeKeyboardObserver(keyboardObserver_);
  keyboardObserver_ = 0;
}

void KesViewController::toolbarClick(ui::BarButtonItem& item) {
  const auto* attached = KesObjectWrapper::peekMap(item);
  KesObjectWrapper::raiseUIEvent(
      *this, "_barbuttonclick:", {attached ? nilToNull(attached->tag) : Value::null()});
}

void KesViewController::setBarAction(const ui::BarItems& items) {
  for (const auto& item : items) {
    if (!item || item->onPress) continue;
    item->onPress = [weak = WeakRef<KesViewController>(this)](ui::BarButtonItem& pressed) {
      if (const auto page = weak.lock()) page->toolbarClick(pressed);
    };
  }
}

}  // namespace kes
