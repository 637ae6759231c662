#include "app/scuola/modscuola.h"

#include <algorithm>
#include <cmath>

#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/kit/text_height.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"

namespace varlo {

using deployment::documents;

namespace {

constexpr int kDaysBefore = 7, kDaysInAll = 15;
// The week before today always holds so many school days: today's page, or at the weekend
// Monday's, comes behind them.
constexpr int kSchoolDaysBefore = 5;
constexpr int kWeeksOfRotation = 4;
constexpr int kSunday = 1, kSaturday = 7;

constexpr double kMargin = 16, kGap = 12;  // beside and between the texts of a day

}  // namespace

void kes_modscuola::describe(ClassBuilder<kes_modscuola>& c) {
  c.name("kes_modscuola");
  c.sub<&kes_modscuola::_jobdone>("jobdone");
  c.sub<&kes_modscuola::_home_resize>("home_resize");
  c.sub<&kes_modscuola::_day_resize>("day_resize");
  c.sub<&kes_modscuola::_scview_scrollchanged>("scview_scrollchanged");
  c.sub<&kes_modscuola::_before_click>("before_click");
  c.sub<&kes_modscuola::_after_click>("after_click");
  c.field<&kes_modscuola::_scview>("scview");
  c.field<&kes_modscuola::_before>("before");
  c.field<&kes_modscuola::_after>("after");
  c.field<&kes_modscuola::_scday>("scday");
  c.field<&kes_modscuola::_lbltile>("lbltile");
  c.field<&kes_modscuola::_lblvalue>("lblvalue");
  c.field<&kes_modscuola::_lblnote>("lblnote");
}

void kes_modscuola::_process_globals() { _main = Ref(&kes_main::instance()); }

Resumable<> kes_modscuola::_start(Text link) {
  KesPage page;
  page.Initialize(bi(), "Home");
  page.RootPanel().LoadLayout("layscview", bi());
  _home = page;
  _before.setAccessibleName("Giorno precedente");
  _after.setAccessibleName("Giorno successivo");
  _main->_navcontrol.ShowPage(page);
  _panels.Initialize();
  days_.clear();
  _iwidth = page.RootPanel().Width();
  _iheight = page.RootPanel().Height();
  const auto progress = _hd.progress("Caricamento dati in corso...");
  const auto job = co_await fetch(documents("/InfoVarlo/menuscuola/master/" + link + ".json"));
  // Another school may have been opened meanwhile: the page and its days are that one's.
  if (!job->_success || _home.nativeOrNull() != page.nativeOrNull()) co_return;
  const KesMap document = mapOf(job);
  page.setTitle(textOf(document, "name"));

  const auto first = DateTime().Add(DateTime().Now(), 0, 0, -kDaysBefore);
  for (int n = 0; n < kDaysInAll; ++n) {
    const auto day = DateTime().Add(first, 0, 0, n);
    const int weekday = DateTime().GetDayOfWeek(day);
    if (weekday == kSunday || weekday == kSaturday) continue;
    const KesPanelWrapper panel = loadDay(document, day);
    _panels.Add(panel);
    _scview.Panel().AddView(panel, 0, 0, _iwidth, _iheight);
  }
  placeDays(kSchoolDaysBefore);
}

KesPanelWrapper kes_modscuola::loadDay(const KesMap& document, std::int64_t d) {
  KesPanelWrapper panel;
  panel.Initialize(bi(), "day");
  panel.setWidth(_iwidth);
  panel.setHeight(_iheight);
  panel.LoadLayout("laymenuscuola", bi());
  _lbltile.setText(_main->_dateutils->_getdayofweekname(d) + " " +
                   std::to_string(DateTime().GetDayOfMonth(d)) + " " +
                   _main->_dateutils->_getmonthname(d));
  _lblvalue.setText(_menuscuola_recuperamenugiorno(document, d));
  _lblnote.setText(_menuscuola_recuperamenunote(document, d));
  for (const auto* label : {&_lblvalue, &_lblnote}) _scday.Panel().AddView(*label, 0, 0, 0, 0);
  days_.push_back({panel, _scday, _lblvalue, _lblnote});
  days_.back().layOut();
  return panel;
}

void kes_modscuola::Day::layOut() {
  const double width = page.Width(), room = page.Height(), inner = width - 2 * kMargin;
  for (auto* label : {&meal, &note}) label->setWidth(inner);
  const double mealHeight = wordsHeight(meal), noteHeight = wordsHeight(note);
  const double height = std::max(room, mealHeight + noteHeight + 3 * kGap);
  const double noteTop = height - kGap - noteHeight;
  const double mealTop = std::max(kGap, std::round((noteTop - mealHeight) / 2));
  meal.SetLayoutAnimated(0, 0, kMargin, mealTop, inner, mealHeight);
  note.SetLayoutAnimated(0, 0, kMargin, noteTop, inner, noteHeight);
  page.setContentWidth(width);
  page.setContentHeight(height);
}

// --- What is for lunch.

std::int64_t kes_modscuola::_datetolong(const Text& date) {
  const auto part = [&](int begin, int end) {
    return static_cast<std::int32_t>(Kes::ObjectToNumber(date.SubString2(begin, end)).asInt64());
  };
  return _main->_dateutils->_setdate(part(6, 10), part(3, 5), part(0, 2));
}

// `d` has a time of day and the last day begins at midnight: the day that "valid_to" names
// is outside.
bool kes_modscuola::holds(const KesMap& period, std::int64_t d) {
  return d >= _datetolong(nameOf(period, "valid_from")) &&
         d <= _datetolong(nameOf(period, "valid_to"));
}

// Nil where the period's rotation has no such week or day. Weeks count from the anchor
// itself, whatever day of the week it is; before it there are none.
Value kes_modscuola::mealOf(const KesMap& period, std::int64_t d) {
  const auto start = _datetolong(nameOf(period, "date_start"));
  const double days = _main->_dateutils->_periodbetweenindays(start, d)->Days;
  int week = static_cast<int>(days / 7 + 1);
  if (week > kWeeksOfRotation) {
    week -= kWeeksOfRotation * (week / kWeeksOfRotation);
    if (week == 0) week = kWeeksOfRotation;
  }
  const Text weekKey = "week_" + std::to_string(week);
  if (!period.ContainsKey(weekKey)) return {};
  const Text dayKey = "day_" + std::to_string(DateTime().GetDayOfWeek(d) - 1);
  const KesMap meals = mapOf(period, weekKey);
  if (meals.Get(dayKey).isNilOrNull()) return {};
  return textOf(meals, dayKey).Replace("|", KesCommon::CRLF);
}

Text kes_modscuola::_menuscuola_recuperamenugiorno(const KesMap& document, std::int64_t d) {
  Value meal;
  for (const Record& period : maps("menu", document.Get("menu"))) {
    period.attempt([&] {
      if (holds(period, d)) meal = mealOf(period, d);
    });
    if (!meal.isNil()) return Kes::ObjectToString(meal);
  }
  return "NON CARICATO";
}

Text kes_modscuola::_menuscuola_recuperamenunote(const KesMap& document, std::int64_t d) {
  Text note;
  bool found = false;
  for (const Record& period : maps("menu", document.Get("menu"))) {
    period.attempt([&] {
      if (!holds(period, d)) return;
      note = textOf(period, "note");
      found = true;
    });
    if (found) break;
  }
  return note;
}

// --- The pages of the days.

void kes_modscuola::placeDays(double day) {
  _scview.setContentHeight(_iheight);
  _scview.setContentWidth(_iwidth * _panels.Size());
  double left = 0;
  for (const Value& v : _panels) {
    auto panel = KesPanelWrapper::fromBoxed(v);
    panel.SetLayoutAnimated(0, 1, left, 0, _iwidth, _iheight);
    left += _iwidth;
  }
  _scview.setScrollOffsetX(_iwidth * day);
  showWhereItGoes();
}

// The same day stays on the screen when the phone is turned.
void kes_modscuola::_home_resize(double width, double height) {
  const double day = shownDay();
  _iwidth = width;
  _iheight = height;
  if (_panels.IsInitialized() && _panels.Size() > 0) placeDays(day);
}

double kes_modscuola::shownDay() const {
  return _iwidth > 0 && _scview.IsInitialized() ? std::round(_scview.ScrollOffsetX() / _iwidth) : 0;
}

// Its layout has placed it for the new size.
void kes_modscuola::_day_resize(double, double) {
  const Ref<ui::View> sender = KesPanelWrapper::fromBoxed(c().Sender(bi())).nativeOrNull();
  for (Day& day : days_)
    if (day.panel.nativeOrNull() == sender) day.layOut();
}

void kes_modscuola::_scview_scrollchanged(double, double) { showWhereItGoes(); }

void kes_modscuola::showWhereItGoes() {
  const double day = shownDay();
  _before.setVisible(day > 0);
  _after.setVisible(day < _panels.Size() - 1);
}

// Days that a finger would have to swipe towards are reached by a tap or a key too.
void kes_modscuola::turn(int days) { _scview.ScrollTo(_iwidth * (shownDay() + days), 0, true); }
void kes_modscuola::_before_click() { turn(-1); }
void kes_modscuola::_after_click() { turn(1); }

}  // namespace varlo
