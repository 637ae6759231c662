#include "platform/qt/qt_screen.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <stdexcept>

#include "platform/base/platform.h"
#include "platform/qt/access/accessible_tree.h"
#include "platform/qt/desktop.h"
#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/image_store.h"
#include "platform/qt/drawing/qt_text_engine.h"
#include "platform/qt/focus_ring.h"
#include "platform/qt/input_router.h"
#include "platform/qt/items/qml_parts.h"
#include "platform/qt/keyboard_strip.h"
#include "platform/qt/mirror.h"
#include "platform/qt/notifier.h"
#include "platform/qt/phone_window.h"
#include "platform/qt/press_veil.h"
#include "platform/ui/application.h"
#include "platform/ui/values/branding.h"

namespace qt {

namespace {

// An exception must not pass through the toolkit: it goes to whoever hears of the main
// queue's faults.
void guarded(const std::function<void()>& act) {
  try {
    act();
  } catch (...) {
    platform::current().mainQueue().post(
        [fault = std::current_exception()] { std::rethrow_exception(fault); });
  }
}

}  // namespace

struct QtScreen::Parts : QObject {
  Parts(QtScreen& screen, Options o)
      : owner(screen),
        options(std::move(o)),
        process(QtProcess::running() ? nullptr : std::make_unique<QtProcess>(options.process)),
        text(options.textScale > 0 ? options.textScale : desktopTextScale()),
        stage{qml, images, false, [this] { changed(); }, guarded},
        root(window.contentItem()),
        mirror(stage, root),
        ring(&root),
        veil(&root),
        strip(qml, &root),
        accessible(stage, window, mirror),
        router(stage, mirror) {}

  void setUp();
  void changed();
  void makeFrame();
  void afterFrame();
  void frameShown();
  void refocus();
  bool watch(QEvent& event);
  bool software() const {
    return window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
  }

  QtScreen& owner;
  Options options;
  std::unique_ptr<QtProcess> process;
  QtTextEngine text;
  QmlParts qml;
  ImageStore images;
  Stage stage;
  PhoneWindow window;
  RootItem root;
  Mirror mirror;
  FocusRing ring;
  PressVeil veil;
  KeyboardStrip strip;
  AccessibleTree accessible;
  InputRouter router;
  Notifier notifier;
  QTimer unseen;  // frames while the window doesn't draw
  QTimer pace;    // frames of animations where nothing else sets the pace
  QElapsedTimer frameClock;
  bool pending = false;  // a frame is due
  bool again = false;    // …and another after it
  bool making = false;
  bool resigned = false;  // the window lost the user's attention
};

void QtScreen::Parts::setUp() {
  // Minimised or behind others: it comes to the front as it was.
  notifier.onActivated = [this] {
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.raise();
    window.requestActivate();
  };
  const auto& size = options.size;
  stage.position = options.position;
  stage.asksWhere = options.asksWhere;
  window.setTitle(QString::fromStdString(ui::words().application));
  window.setColor(toQColor(ui::style::kPage));
  window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  if (options.resizable) {
    window.setMinimumSize({240, 320});
  } else {
    window.setMinimumSize(window.size());
    window.setMaximumSize(window.size());
  }
  window.filter = [this](QEvent& event) { return watch(event); };
  root.setSize(QSizeF(window.size()));
  root.setActiveFocusOnTab(true);
  root.makeFrame = [this] { makeFrame(); };
  root.focusReturned = [](bool forward) {
    if (auto* app = ui::Application::current())
      guarded([&] { app->key(forward ? ui::Key::Tab : ui::Key::BackTab); });
  };
  connect(&window, &QQuickWindow::afterAnimating, this, [this] { afterFrame(); });
  connect(
      &window, &QQuickWindow::frameSwapped, this, [this] { frameShown(); }, Qt::QueuedConnection);
  const auto resized = [this] {
    root.setSize(QSizeF(window.width(), window.height()));
    if (auto* app = ui::Application::current()) guarded([&] { app->screenChanged(); });
  };
  connect(&window, &QWindow::widthChanged, this, resized);
  connect(&window, &QWindow::heightChanged, this, resized);
  connect(&window, &QWindow::screenChanged, this, resized);
  connect(&window, &QQuickWindow::activeFocusItemChanged, this, [this] { refocus(); });
  unseen.setSingleShot(true);
  unseen.setInterval(50);
  connect(&unseen, &QTimer::timeout, this, [this] {
    if (!window.isExposed()) makeFrame();
  });
  pace.setSingleShot(true);
  pace.setTimerType(Qt::PreciseTimer);
  connect(&pace, &QTimer::timeout, this, [this] { root.polish(); });
}

// The life of a frame. A view that changes tells the application, which tells the screen
// once: changed() notes that a frame is `pending` and asks for a polish, which the window
// does just before it draws. There makeFrame() runs the timers and the layout pass, and the
// mirror brings the items in line; the scene is then synchronised, drawn and swapped
// (frameShown()). What changes while the frame is `making` wants `again` one more, asked
// for when the items are handed over (afterFrame()): at once where the display sets the
// pace, by the timer `pace` where the software renderer would draw frames one after the
// other. A window that isn't exposed draws nothing, so that the timer `unseen` makes its
// frames: the tree goes on, only without pixels.
//
// Something is to be shown anew: at the window's next drawing, or the frame after the
// one that is being made.
void QtScreen::Parts::changed() {
  if (making) {
    again = true;
    return;
  }
  pending = true;
  root.polish();
  if (!window.isExposed() && !unseen.isActive()) unseen.start();
}

void QtScreen::Parts::makeFrame() {
  auto* app = ui::Application::current();
  if (!app || making) return;
  making = true;
  pending = false;
  frameClock.start();
  guarded([&] { app->frame(); });
  mirror.update(*app);
  refocus();
  ring.follow(mirror, app->focus().byKeyboard() ? app->focus().view() : nullptr);
  veil.follow(mirror, app->input().pressed());
  strip.show(options.keyboard > 0 ? app->focus().keyboardHeight() : 0);
  accessible.changed();
  making = false;
  if (again && !window.isExposed()) {
    again = false;
    changed();
  }
}

void QtScreen::Parts::afterFrame() {
  if (!again) return;
  again = false;
  pending = true;
  // With no display to wait for, frames would follow each other at once.
  const qint64 spent = frameClock.isValid() ? frameClock.elapsed() : ui::style::kFrame;
  if (software())
    pace.start(static_cast<int>(std::max<qint64>(0, ui::style::kFrame - spent)));
  else
    root.polish();
}

void QtScreen::Parts::frameShown() {
  if (!stage.firstFrameShown && mirror.shownItems() > 0) {
    stage.firstFrameShown = true;
    if (owner.onFirstFrame) owner.onFirstFrame();
    // What waited for it.
    if (auto* app = ui::Application::current())
      for (const auto& w : app->windows())
        if (!w->hidden()) changed();
  }
  if (owner.onIdleChanged && owner.idle()) owner.onIdleChanged();
}

// The toolkit's keyboard focus follows the view tree's.
void QtScreen::Parts::refocus() {
  auto* app = ui::Application::current();
  auto* focused = app ? app->focus().view() : nullptr;
  auto* item = focused ? mirror.itemOf(*focused) : nullptr;
  QQuickItem* wanted = item ? item->keyboardItem() : nullptr;
  if (!wanted) wanted = &root;
  if (!wanted->hasFocus() && !wanted->hasActiveFocus())
    wanted->forceActiveFocus(Qt::OtherFocusReason);
}

bool QtScreen::Parts::watch(QEvent& event) {
  auto* app = ui::Application::current();
  if (!app) return false;
  switch (event.type()) {
    case QEvent::Close:
      if (owner.onClosed) owner.onClosed();
      return false;
    case QEvent::WindowStateChange:
      if (window.windowStates() & Qt::WindowMinimized)
        guarded([&] { app->enterBackground(); });
      else
        guarded([&] { app->activate(); });
      return false;
    case QEvent::FocusOut:
      if (app->state() == ui::Application::State::Active) {
        resigned = true;
        guarded([&] { app->resignActive(); });
      }
      return false;
    case QEvent::FocusIn:
      if (std::exchange(resigned, false)) guarded([&] { app->activate(); });
      return false;
    case QEvent::KeyPress:
      // Whatever has the keyboard, an editor or a page: this leaves.
      if (static_cast<QKeyEvent&>(event).matches(QKeySequence::Quit)) {
        window.close();
        return true;
      }
      return router.handle(event);
    default:
      return !strip.takes(event) && router.handle(event);
  }
}

QtScreen::QtScreen(Options options) {
  if (!QtProcess::running() && !options.process.offscreen && !QtProcess::displayAvailable())
    throw std::runtime_error("no display: start it in a graphical session");
  parts_ = std::make_unique<Parts>(*this, std::move(options));
  parts_->setUp();
}

QtScreen::~QtScreen() { parts_->window.filter = nullptr; }

ui::TextEngine& QtScreen::textEngine() { return parts_->text; }
void QtScreen::show() { parts_->window.show(); }
bool QtScreen::firstFrameShown() const { return parts_->stage.firstFrameShown; }

bool QtScreen::idle() const { return !parts_->pending && !parts_->again && !parts_->mirror.busy(); }

bool QtScreen::grab(const std::string& path) {
  const QImage image = parts_->window.grabWindow();
  return !image.isNull() && image.save(QString::fromStdString(path), "PNG");
}

std::size_t QtScreen::shownViews() const { return parts_->mirror.shownItems(); }
QQuickWindow& QtScreen::window() { return parts_->window; }

ui::Rect QtScreen::bounds() const {
  return {0, 0, static_cast<double>(parts_->window.width()),
          static_cast<double>(parts_->window.height())};
}

double QtScreen::scale() const { return parts_->window.effectiveDevicePixelRatio(); }
double QtScreen::keyboardHeight() const { return parts_->options.keyboard; }
double QtScreen::statusBarHeight() const { return parts_->options.statusBar; }
void QtScreen::treeChanged() { parts_->changed(); }
void QtScreen::nextFrame() { parts_->changed(); }

void QtScreen::requestTick(std::int64_t milliseconds) {
  const auto wait = std::clamp<std::int64_t>(milliseconds, 0, 1 << 30);
  QTimer::singleShot(static_cast<int>(wait), Qt::PreciseTimer, parts_.get(), [] {
    if (auto* app = ui::Application::current()) guarded([&] { app->tick(); });
  });
}

bool QtScreen::openUrl(const std::string& url) {
  if (parts_->options.opener) return parts_->options.opener(url);
  return QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
}

void QtScreen::notify(const ui::Notification& notification) { parts_->notifier.show(notification); }

void QtScreen::focusChanged(ui::View*, bool) {
  parts_->refocus();
  parts_->accessible.focusMoved();
}

void QtScreen::announce(const std::string& text) { parts_->accessible.announce(text); }

}  // namespace qt
