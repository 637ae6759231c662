#include "app/infocitta/infocitta_entity.h"

#include <algorithm>

#include "app/infocitta/infocitta.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/text_height.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/views/dialogs/message_box.h"

namespace varlo {

namespace {

constexpr double kRowHeight = 80;
constexpr double kValueHeightWithoutNote = 60;
// Characters of the icon font.
constexpr std::int32_t kPhoneIcon = 57520, kMailIcon = 57534, kPlaceIcon = 58717,
                       kCalendarIcon = 59615;
constexpr const char* kBetweenSchedules = "    ";

// By the number of the format, 1 for Monday to 7 for Sunday.
const char* dayName(std::int64_t weekDay) {
  static constexpr const char* kNames[] = {"Lunedì",  "Martedì", "Mercoledì", "Giovedì",
                                           "Venerdì", "Sabato",  "Domenica"};
  return weekDay >= 1 && weekDay <= 7 ? kNames[weekDay - 1] : "";
}

Text hours(const KesMap& schedule) {
  return textOf(schedule, "StartTime") + " - " + textOf(schedule, "EndTime");
}

Text hoursOfDay(const Record& day) {
  Text line;
  eachRecord(maps(day, "Schedules"), [&](const KesMap& schedule) {
    line += (line.empty() ? "" : kBetweenSchedules) + hours(schedule);
  });
  return line;
}

// Today's hours, or else those of the next open day behind its name.
Text openingLine(const Records& weekDays, int today) {
  Text line;
  const auto walk = [&](int number, auto take) {
    for (const Record& day : weekDays)
      if (day.map().Get("WeekDay") == Value(number) && take(day)) break;
  };
  walk(today, [&](const Record& day) {
    day.attempt([&] { line += hoursOfDay(day); });
    return false;
  });
  for (int step = 0, next = today; line.empty() && step < 7; ++step) {
    next = next == 7 ? 1 : next + 1;
    walk(next, [&](const Record& day) {
      return day.attempt([&] { line = Text(dayName(next)) + "  " + hoursOfDay(day); });
    });
  }
  return line.empty() ? Text("NESSUN VALORE TROVATO") : line;
}

Text wholeWeek(const Records& weekDays) {
  Text week;
  for (const Record& day : weekDays)
    day.attempt([&] {
      Text lines = Text(dayName(day.map().Get("WeekDay").asInt64())) + "\n";
      eachRecord(maps(day, "Schedules"),
                 [&](const KesMap& schedule) { lines += hours(schedule) + "\n"; });
      week += lines;
    });
  return week;
}

}  // namespace

void kes_infocitta_entity::describe(ClassBuilder<kes_infocitta_entity>& c) {
  c.name("kes_infocitta_entity");
  c.sub<&kes_infocitta_entity::_clv_itemclick>("clv_itemclick");
  c.sub<&kes_infocitta_entity::_home_resize>("home_resize");
  c.sub<&kes_infocitta_entity::_msgbox_result>("msgbox_result");
  c.field<&kes_infocitta_entity::_clv>("clv");
  c.field<&kes_infocitta_entity::_item_title>("item_title");
  c.field<&kes_infocitta_entity::_item_value>("item_value");
  c.field<&kes_infocitta_entity::_item_note>("item_note");
  c.field<&kes_infocitta_entity::_item_image>("item_image");
}

void kes_infocitta_entity::_process_globals() { _main = Ref(&kes_main::instance()); }

void kes_infocitta_entity::_caricaentity(KesMap entity, const Text& document) {
  entity_ = entity;
  document_ = document;
  KesPage page;
  page.Initialize(bi(), "Home");
  page.RootPanel().LoadLayout("layclv", bi());
  page.setTitle(textOf(entity, "Name"));
  _main->_navcontrol.ShowPage(page);
  showSections();
}

// A broken section is logged and the others are shown all the same.
void kes_infocitta_entity::showSections() {
  width_ = _clv->_asview().Width();
  const auto section = [&](const char* key, auto load) {
    if (!entity_.ContainsKey(key)) return;
    const Record whole(document_, entity_);
    whole.attempt([&] { (this->*load)(maps(whole, key)); });
  };
  section("Contacts", &kes_infocitta_entity::_caricacontact);
  section("Adresses", &kes_infocitta_entity::_caricaaddress);
  section("Addresses", &kes_infocitta_entity::_caricaaddress);
  section("Calendar", &kes_infocitta_entity::_caricacalendar);
}

KesPanelWrapper kes_infocitta_entity::loadRow(const KesMap& map) {
  KesPanelWrapper panel;
  panel.Initialize(bi(), "");
  panel.setWidth(_clv->_asview().Width());
  panel.setHeight(textHeight(kRowHeight));
  panel.LoadLayout("lay_item", bi());
  const auto fill = [&](KesLabelWrapper& label, const char* key) {
    label.setText(textOf(map, key));
  };
  fill(_item_title, "Title");
  fill(_item_value, "Value");
  fill(_item_note, "Note");
  _item_image.setText("");
  return panel;
}

// A row has the layout's height as long as its words have room in it. Those of many
// schedules, or of a large screen, go one below the other in their one size, and the row
// becomes as high as they are.
void kes_infocitta_entity::fitRow(KesPanelWrapper panel) {
  const double value = wordsHeight(_item_value), note = wordsHeight(_item_note);
  if (value <= _item_value.Height() && note <= _item_note.Height()) return;
  const double gap = _item_title.Top();
  _item_value.setTop(gap + _item_title.Height());
  _item_value.setHeight(value);
  _item_note.setTop(_item_value.Top() + value + (note > 0 ? gap : 0));
  _item_note.setHeight(note);
  panel.setHeight(std::max(panel.Height(), _item_note.Top() + note + gap));
  _item_image.setHeight(panel.Height());
}

// The phone was turned: rows are made for the width they have.
void kes_infocitta_entity::_home_resize(double, double) {
  if (!_clv || _clv->_asview().Width() == width_) return;
  _clv->_clear();
  showSections();
}

void kes_infocitta_entity::addRow(const KesPanelWrapper& panel, const KesMap& map,
                                  const char* type) {
  fitRow(panel);
  KesMap row = _copymap(map);
  row.Put("TYPE", type);
  _clv->_add(panel, row);
}

void kes_infocitta_entity::_caricacontact(const Records& contacts) {
  eachRecord(contacts, [&](const KesMap& contact) {
    const auto panel = loadRow(contact);
    const Value type = contact.Get("Type");
    if (type == Value(0)) _item_image.setText(c().Chr(kPhoneIcon));
    if (type == Value(1)) _item_image.setText(c().Chr(kMailIcon));
    if (_item_value.Text() != "") addRow(panel, contact, "CONTACT");
  });
}

void kes_infocitta_entity::_caricaaddress(const Records& addresses) {
  eachRecord(addresses, [&](const KesMap& address) {
    const auto panel = loadRow(address);
    _item_image.setText(c().Chr(kPlaceIcon));
    addRow(panel, address, "ADDRESS");
  });
}

void kes_infocitta_entity::_caricacalendar(const Records& calendars) {
  const int sundayFirst = DateTime().GetDayOfWeek(DateTime().Now()) - 1;
  const int today = sundayFirst == 0 ? 7 : sundayFirst;
  for (const Record& calendar : calendars)
    calendar.attempt([&] {
      const auto panel = loadRow(calendar);
      _item_image.setText(c().Chr(kCalendarIcon));
      _item_value.setText(openingLine(maps(calendar, "WeekDays"), today));
      if (!calendar.map().ContainsKey("Note"))
        _item_value.setHeight(textHeight(kValueHeightWithoutNote));
      addRow(panel, calendar, "CALENDAR");
    });
}

KesMap kes_infocitta_entity::_copymap(const KesMap& map) { return _main->_copymap(map); }

Resumable<> kes_infocitta_entity::_clv_itemclick(int, Value value) {
  const auto row = KesMap::fromBoxed(value);
  const Text type = textOf(row, "TYPE");
  if (type == "CONTACT" && row.ContainsKey("Value")) {
    try {
      const Value kind = row.Get("Type");
      if (kind == Value(0)) _main->_app.OpenURL("tel:" + textOf(row, "Value"));
      if (kind == Value(1)) _main->_app.OpenURL("mailto:" + textOf(row, "Value"));
    } catch (const std::exception& e) {
      Kes::SetException(e);
      c().Log(e.what());
    }
  } else if (type == "ADDRESS" && textOf(row, "Latitude") != "" && textOf(row, "Longitude") != "") {
    _main->_app.OpenURL(
        deployment::mapsLink(textOf(row, "Latitude") + "," + textOf(row, "Longitude")));
  } else if (type == "CALENDAR") {
    const Value box = Msgbox2Async(bi(), wholeWeek(maps(Record(document_, row), "WeekDays")),
                                   textOf(row, "Title"), KesList::of({"Chiudi"}));
    co_await waitFor("msgbox_result:", box);
  }
}

}  // namespace varlo
