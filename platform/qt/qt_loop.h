// The main queue in Qt's event loop: tasks run as they are posted, delayed ones when
// they are due, input and frames in between.
//
// Owned by the program, made after the QtScreen; takes the queue's waker. exec() runs
// until the window is closed or quit() is called. The waiting calls are for scripts and
// tests, at the top of the main thread only: they run the loop until something holds,
// and answer false after the timeout. Milliseconds of real time.
#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "platform/base/platform.h"
#include "platform/qt/qt_screen.h"

namespace qt {

class QtLoop {
 public:
  QtLoop(platform::Platform& platform, QtScreen& screen);
  ~QtLoop();
  QtLoop(const QtLoop&) = delete;
  QtLoop& operator=(const QtLoop&) = delete;

  int exec();
  void quit(int status = 0);

  // Until the queue is empty (delayed tasks too), the screen and its animations are at
  // rest and isBusy() answers false; a toast may remain.
  bool settle(const std::function<bool()>& isBusy = {}, std::int64_t timeout = 30000);
  bool until(const std::function<bool()>& condition, std::int64_t timeout = 30000);
  void pass(std::int64_t milliseconds);
  // A picture of the window once the pages on it are loaded and drawn.
  bool grab(const std::string& path, std::int64_t timeout = 10000);

 private:
  class Drain;
  platform::Platform& platform_;
  QtScreen& screen_;
  std::unique_ptr<Drain> drain_;
};

}  // namespace qt
