// What the tests of the view tree share: a phone with one window, and views placed in it.
#pragma once

#include <gmock/gmock.h>

#include "platform/ui/controls/button.h"
#include "platform/ui/controls/label.h"
#include "tests/support/headless_phone.h"

namespace ui {

struct Phone : testing_support::WindowPhone {
  Phone() = default;
  explicit Phone(double textScale) : WindowPhone({.textScale = textScale}) {}

  // A page whose view fills the window, with no bars.
  Ref<ViewController> plainPage() {
    auto page = makeShared<ViewController>();
    window->setRootViewController(page);
    pump.drain();
    return page;
  }
};

// A phone that shows one plain page.
struct PageTest : testing::Test {
  Phone phone;
  Ref<ViewController> controller = phone.plainPage();
  View& page = controller->view();
};

template <class T = View>
Ref<T> place(View& parent, const Rect& frame, std::string name = {}) {
  auto view = makeShared<T>();
  view->setFrame(frame);
  if (!name.empty()) view->setName(std::move(name));
  parent.addSubview(view);
  return view;
}

inline Ref<Label> placeText(View& parent, const Rect& frame, std::string text) {
  auto label = place<Label>(parent, frame);
  label->setText(std::move(text));
  return label;
}

}  // namespace ui
