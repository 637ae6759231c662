#include "platform/qt/qt_loop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QQuickWindow>
#include <algorithm>

#include "platform/ui/application.h"

namespace qt {

namespace {

// How long tasks run before input and frames get their turn.
constexpr qint64 kShare = 8;
// A condition may come true without an event of ours.
constexpr int kLookAgain = 20;

}  // namespace

class QtLoop::Drain final : public QObject {
 public:
  explicit Drain(platform::Platform& platform) : platform_(platform) {
    due_.setSingleShot(true);
    due_.setTimerType(Qt::PreciseTimer);
    connect(&due_, &QTimer::timeout, this, [this] { run(); });
  }

  // From any thread.
  void wake() {
    if (!posted_.exchange(true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  bool event(QEvent* e) override {
    if (e->type() != QEvent::User) return QObject::event(e);
    run();
    return true;
  }

 private:
  void run() {
    posted_ = false;
    auto& queue = platform_.mainQueue();
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < kShare)
      if (!queue.runOne()) break;
    if (queue.hasDueTask()) return wake();
    if (const auto next = queue.nextDue()) {
      const auto wait = std::clamp<std::int64_t>(*next - platform_.clock().monotonic(), 0, 1 << 30);
      due_.start(static_cast<int>(wait));
    }
  }

  platform::Platform& platform_;
  QTimer due_;
  std::atomic<bool> posted_{false};
};

QtLoop::QtLoop(platform::Platform& platform, QtScreen& screen)
    : platform_(platform), screen_(screen), drain_(std::make_unique<Drain>(platform)) {
  platform_.mainQueue().setWaker([drain = drain_.get()] { drain->wake(); });
  drain_->wake();
}

QtLoop::~QtLoop() { platform_.mainQueue().setWaker({}); }

int QtLoop::exec() {
  screen_.onClosed = [this] { quit(); };
  screen_.show();
  return QCoreApplication::exec();
}

void QtLoop::quit(int status) { QCoreApplication::exit(status); }

bool QtLoop::until(const std::function<bool()>& condition, std::int64_t timeout) {
  if (condition()) return true;
  QElapsedTimer time;
  time.start();
  QTimer look;  // wakes the loop: a condition is asked after each turn of it
  look.start(kLookAgain);
  while (time.elapsed() < timeout) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (condition()) return true;
  }
  return false;
}

void QtLoop::pass(std::int64_t milliseconds) {
  bool over = false;
  QTimer::singleShot(static_cast<int>(milliseconds), Qt::PreciseTimer, drain_.get(),
                     [&over] { over = true; });
  until([&over] { return over; }, milliseconds + 1000);
}

bool QtLoop::settle(const std::function<bool()>& isBusy, std::int64_t timeout) {
  return until(
      [&] {
        auto& queue = platform_.mainQueue();
        auto* app = ui::Application::current();
        return !queue.hasDueTask() && !queue.nextDue() && (!app || app->idle()) && screen_.idle() &&
               (!isBusy || !isBusy());
      },
      timeout);
}

bool QtLoop::grab(const std::string& path, std::int64_t timeout) {
  until([&] { return screen_.idle(); }, timeout);
  // One more frame, with what the pages have drawn by now.
  bool swapped = false;
  const auto wait = QObject::connect(
      &screen_.window(), &QQuickWindow::frameSwapped, drain_.get(), [&swapped] { swapped = true; },
      Qt::QueuedConnection);
  screen_.window().update();
  until([&] { return swapped; }, timeout);
  QObject::disconnect(wait);
  return screen_.grab(path);
}

}  // namespace qt
