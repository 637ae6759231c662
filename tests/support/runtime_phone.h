// RuntimePhone: a headless phone with a window and the runtime's views, for tests of what
// stands on them. EventNotes: a class module that writes down the events it hears.
//
// The test's target links runtime_views itself. Main thread.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>

#include "runtime/core/language/module.h"
#include "runtime/data/register_data.h"
#include "runtime/views/app/services.h"
#include "runtime/views/layout/layout_builder.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/register_views.h"
#include "tests/support/headless_phone.h"

namespace kes {

using Trace = std::vector<std::string>;

// A page or view of its own, as a program makes one.
template <class W>
W fresh(const Ref<Kes>& bi = nullptr, const char* prefix = "") {
  W made;
  made.Initialize(bi, prefix);
  return made;
}

// A word as a template's argument.
template <std::size_t N>
struct Word {
  constexpr Word(const char (&word)[N]) { std::copy_n(word, N, text); }
  char text[N];
};

// To be derived from: a sub note<"touch", int, double> of the describing class writes
// "touch 0,5" into the trace. `answer` is what an event that asks gets.
template <class Base>
class NotesOf : public Base {
 public:
  template <Word word, class... A>
  void note(A... parameters) {
    write(word.text, {Kes::ObjectToString(parameters).str()...});
  }
  template <Word word, class... A>
  Value ask(A... parameters) {
    note<word>(parameters...);
    return answer;
  }

  Trace trace;
  Value answer;

 private:
  void write(std::string line, std::initializer_list<std::string> parameters) {
    const char* before = " ";
    for (const auto& p : parameters) line += std::exchange(before, ",") + p;
    trace.push_back(std::move(line));
  }
};

class EventNotes : public NotesOf<KesClass> {
 public:
  void _initialize(int) { initializeClassModule(); }
};

struct RuntimePhone : testing_support::WindowPhone {
  explicit RuntimePhone(ui::Size size = {320, 568}, double textScale = 1)
      : WindowPhone({.size = size, .textScale = textScale}) {
    registerData();
    registerViews();
    lendServices();
    KesLayoutBuilder::state() = {};
  }
  // A page without bars, fitted to the window.
  KesPage showPage(const Ref<Kes>& bi, const char* prefix) {
    const auto page = fresh<KesPage>(bi, prefix);
    window->setRootViewController(page.native());
    pump.drain();
    return page;
  }
  // What it has heard by now, since it was last asked.
  Trace heardBy(EventNotes& listener) {
    pump.drain();
    return std::exchange(listener.trace, {});
  }
};

}  // namespace kes
