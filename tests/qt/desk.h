// A whole Qt side for one test, drawn into memory at two pixels a point: platform,
// screen, application, loop, hand, and a window with one empty page.
//
// Qt runs once for the whole program. Pictures go to the folder that VARLO_TEST_PICTURES
// names, for people to look at; nowhere if it isn't set.
#pragma once

#include <gmock/gmock.h>

#include <QColor>
#include <QImage>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/base/clock.h"
#include "platform/base/platform.h"
#include "platform/qt/qt_hand.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_screen.h"
#include "platform/ui/application.h"
#include "platform/ui/controls/label.h"

class Desk : public testing::Test {
 protected:
  static constexpr double kWidth = 375, kHeight = 667, kScale = 2;

  explicit Desk(double keyboard = 0);
  ~Desk() override;

  // The page's view, which fills the window.
  ui::View& page() { return window->rootViewController()->view(); }
  template <class View>
  ui::Ref<View> add(const ui::Rect& frame, ui::View* parent = nullptr) {
    auto view = ui::makeShared<View>();
    view->setFrame(frame);
    (parent ? *parent : page()).addSubview(view);
    return view;
  }
  ui::Ref<ui::Label> addText(const std::string& text, const ui::Rect& frame,
                             ui::View* parent = nullptr);

  // Lets everything come to rest; false when it doesn't.
  bool settle() { return loop.settle({}, 20000); }
  // The same, and the test ends where that never comes.
  void rest();
  // A finger or a key on what has come to rest, and all that it sets off. The hand itself
  // waits for nothing.
  void tap(ui::Point at) {
    whileAtRest([&] { hand.tap(at); });
  }
  void drag(ui::Point from, ui::Point to, std::int64_t milliseconds = 150) {
    whileAtRest([&] { hand.drag(from, to, milliseconds); });
  }
  void wheel(ui::Point at, double notches) {
    whileAtRest([&] { hand.wheel(at, notches); });
  }
  void press(ui::Key key) {
    whileAtRest([&] { hand.press(key); });
  }
  void type(const std::string& text) {
    whileAtRest([&] { hand.type(text); });
  }
  // What the window shows once it has come to rest, in pixels; kept as a picture under a
  // name, if one is given.
  QImage picture(const std::string& name = {});
  QImage pictureNow(const std::string& name = {});
  // A PNG file all of one red, in the test's folder.
  std::string redPicture(int width, int height);
  static QColor at(const QImage& image, double x, double y);  // points
  // The smallest rectangle (points) around what isn't white in a part of a picture.
  static ui::Rect ink(const QImage& image, const ui::Rect& area);

  std::filesystem::path folder;
  std::vector<std::string> opened;
  platform::SystemClock clock;
  platform::Platform platform;
  platform::PlatformScope scope;
  qt::QtScreen screen;
  ui::Application app;
  qt::QtLoop loop;
  qt::QtHand hand;
  ui::Ref<ui::Window> window;

 private:
  template <class Act>
  void whileAtRest(Act act) {
    rest();
    act();
    rest();
  }
};
