// kes_modscuola: the lunch menus of one school, a page a day for the school days around
// today. A school's document holds rotations of four weeks, each with the dates between
// which it is valid. One instance; main thread.
#pragma once

#include <vector>

#include "app/kit/feature.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace varlo {

class kes_main;

class kes_modscuola final : public Feature<kes_modscuola> {
 public:
  static void describe(ClassBuilder<kes_modscuola>& c);
  void _process_globals() override;

  Resumable<> _start(Text link);
  // What a school has on a day, and what its menu notes; of the first period that holds the
  // day. `d` carries the time of day.
  Text _menuscuola_recuperamenugiorno(const KesMap& document, std::int64_t d);
  Text _menuscuola_recuperamenunote(const KesMap& document, std::int64_t d);
  // Day, month and year by their places in the text: "15/09/2026".
  std::int64_t _datetolong(const Text& date);

  // What the views raise.
  void _home_resize(double width, double height);
  void _day_resize(double width, double height);  // of the panel that sends it
  void _scview_scrollchanged(double x, double y);
  void _before_click();
  void _after_click();

  Ref<kes_main> _main;
  KesPage _home;
  KesList _panels;  // the days, one panel each
  double _iwidth = 0, _iheight = 0;
  KesScrollView _scview;
  KesButtonWrapper _before, _after;  // lead to the day before and after
  // Of the day that was loaded last.
  KesScrollView _scday;
  KesLabelWrapper _lbltile, _lblvalue, _lblnote;

 private:
  // What is below the line of a day's panel: the meal in the middle, the note at the bottom,
  // or one below the other where a low phone or large letters leave no room for both.
  struct Day {
    KesPanelWrapper panel;
    KesScrollView page;
    KesLabelWrapper meal, note;
    void layOut();
  };
  KesPanelWrapper loadDay(const KesMap& document, std::int64_t d);
  bool holds(const KesMap& period, std::int64_t d);
  Value mealOf(const KesMap& period, std::int64_t d);
  void placeDays(double day);
  double shownDay() const;
  void turn(int days);
  void showWhereItGoes();

  std::vector<Day> days_;  // as _panels
};

}  // namespace varlo
