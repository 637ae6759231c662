// Qt in this process: what its environment and attributes have to say before it starts,
// its messages in the platform's log, and its application object.
//
// At most one at a time, made on the main thread before the first QtScreen and kept
// until after the last; a QtScreen makes one of its own where there is none. A
// PlatformScope must be in force. Without a display the constructor throws
// std::runtime_error (ask displayAvailable() first).
#pragma once

#include <memory>
#include <string>

class QGuiApplication;

namespace qt {

class QtProcess {
 public:
  struct Options {
    double scale = 0;        // pixels a point; 0: as the display says
    bool offscreen = false;  // draw into memory, by the software renderer
  };

  // Whether a window can be opened from here: a display server answers, or the
  // environment names a Qt platform that needs none.
  static bool displayAvailable();
  static bool running();

  explicit QtProcess(const Options& options);
  ~QtProcess();
  QtProcess(const QtProcess&) = delete;
  QtProcess& operator=(const QtProcess&) = delete;

 private:
  std::unique_ptr<QGuiApplication> application_;
  bool choseFonts_ = false;
};

}  // namespace qt
