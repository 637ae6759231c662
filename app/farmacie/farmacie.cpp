// Pharmacy on duty: the turns of yesterday and today, joined from two documents. No row
// is hidden at any hour; each tells its own hours and the citizen reads them.
#include "app/infocitta/cinfocitta.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/cs_builder.h"

namespace varlo {

using deployment::documents;

namespace {

constexpr const char* kUntilMorning = "Farmacia di turno fino alle ore 8.30";
constexpr const char* kRoundTheClock =
    "Farmacia di turno dalle 8.30 fino alle ore 8.30 del giorno successivo";
constexpr const char* kDaytime = "Farmacia di turno dalle ore 8.30-12.30 - 15.30-19.30";

// The records whose texts can be read.
template <class... Key>
KesList readable(const Fetched& document, Key... texts) {
  KesList list;
  list.Initialize();
  eachRecord(maps(document), [&](const KesMap& record) {
    (textOf(record, texts), ...);
    list.Add(record);
  });
  return list;
}

// One row, with the entity that a tap on it opens.
void addPharmacy(kes_main& app, const Ref<kes_customlistview>& list, const KesMap& pharmacy,
                 const Text& label) {
  const Text name = textOf(pharmacy, "Farmacia") + " - " + textOf(pharmacy, "Citta");
  const Text phone = textOf(pharmacy, "Telefono");
  const Text address = textOf(pharmacy, "Indirizzo") + ", " + textOf(pharmacy, "Citta");
  const KesFont small = KesFont::CreateNew(12), large = KesFont::CreateNew(20);
  const char* const line = KesCommon::CRLF;

  KesCSBuilder text;
  text.Initialize();
  text.Font(small).Append(label).Append(line).Pop();
  text.Font(large).Append(name).Append(line).Append(line).Pop();
  text.Font(small).Append("Telefono: ").Append(phone).Append(line).Pop();
  text.Font(small).Append("Indirizzo: ").Append(address).Pop();

  auto entity = make<kes_cinfocitta>(app.bi(), name);
  entity->_aggiungitelefono("Telefono", phone, "");
  entity->_aggiungiindirizzo("Indirizzo", address, "", pharmacy.Get("Latitudine"),
                             pharmacy.Get("Longitudine"));
  list->_addtextitemcs(text, entity->_entity);
}

}  // namespace

Resumable<> kes_main::_farmacie_farmaciaaperta() {
  const auto list = showList("Farmacie di turno");
  const auto progress = _hd.progress("Caricamento dati in corso...");

  KesList pharmacies;
  pharmacies.Initialize();
  auto job = co_await fetch(documents("/InfoVarlo/farmacie/master/farmacie.json"));
  const bool known = job->_success;
  if (known) pharmacies = readable(job, "Farmacia", "Citta", "Telefono", "Indirizzo");

  job = co_await fetchAgain(std::move(job), documents("/InfoVarlo/farmacie/master/turni.json"));
  if (!job->_success) co_return;
  const KesList days = readable(job, "Turno1", "Turno2");
  const auto show = [&](const KesMap& day, const char* turn, const char* label) {
    const Value found = _farmacie_recuperadatifarmacia(pharmacies, textOf(day, turn));
    if (!found.isNil()) addPharmacy(*this, list, KesMap::fromBoxed(found), label);
  };

  const auto yesterday = _dateutils->_addperiod(DateTime().Now(), Period::ofDays(-1));
  const auto before =
      co_await waitFor<KesMap>("complete:", _farmacie_recuperafarmacia(yesterday, days));
  if (before.IsInitialized()) show(before, "Turno1", kUntilMorning);

  const auto today =
      co_await waitFor<KesMap>("complete:", _farmacie_recuperafarmacia(DateTime().Now(), days));
  if (today.IsInitialized()) {
    show(today, "Turno1", kRoundTheClock);
    if (textOf(today, "Turno2") != "") show(today, "Turno2", kDaytime);
  }
  if (known) allShown(list);
}

// The entry of the day on which the instant falls, or Null. Numbers compare as numbers:
// a quoted day is never found.
Resumable<Value> kes_main::_farmacie_recuperafarmacia(std::int64_t ticks, KesList days) {
  const Value day = DateTime().GetDayOfMonth(ticks);
  const Value month = DateTime().GetMonth(ticks);
  const Value year = DateTime().GetYear(ticks);
  for (const Value& entry : days) {
    const auto turns = KesMap::fromBoxed(entry);
    if (turns.Get("Giorno") == day && turns.Get("Mese") == month && turns.Get("Anno") == year)
      co_return entry;
  }
  co_return c().Null();
}

Value kes_main::_farmacie_recuperadatifarmacia(const KesList& pharmacies, const Text& key) {
  for (const Value& entry : pharmacies)
    if (KesMap::fromBoxed(entry).Get("Chiave") == Value(key)) return entry;
  return c().Null();
}

Text kes_main::_farmacie_inseriscidati(const KesMap& pharmacy, const Text& label) {
  addPharmacy(*this, _clv, pharmacy, label);
  return "";
}

}  // namespace varlo
