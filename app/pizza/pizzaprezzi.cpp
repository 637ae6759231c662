// The pizzerias of the town with today's hours and offer.
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/shell/main.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/cs_builder.h"

namespace varlo {

using deployment::documents;

namespace {

constexpr float kTypeSize = 13, kTitleSize = 20, kTextSize = 15;
constexpr int kSpans = 3;

// A row's text, piece by piece: each with a font and an alignment of its own.
class Row {
 public:
  Row() { text_.Initialize(); }
  Row& line() {
    text_.Append(KesCommon::CRLF);
    return *this;
  }
  Row& left(const KesFont& font, const Text& piece) { return add(font, "ALIGN_LEFT", piece); }
  Row& centred(const KesFont& font, const Text& piece) { return add(font, "ALIGN_CENTER", piece); }
  const KesCSBuilder& text() const { return text_; }

 private:
  Row& add(const KesFont& font, const char* alignment, const Text& piece) {
    text_.Font(font).Alignment(alignment).Append(piece).PopAll();
    return *this;
  }
  KesCSBuilder text_;
};

KesFont bold(float size) { return KesFont::CreateNewBold(size); }
KesFont plain(float size) { return KesFont::CreateNew(size); }

// Up to three spans a day: "mon_1_open", "mon_1_close", …
void addHours(Row& row, const KesMap& hours, const Text& day) {
  row.line().line().centred(bold(kTextSize), "Orario di apertura");
  bool found = false;
  for (int n = 1; n <= kSpans; ++n) {
    const Text span = day + "_" + std::to_string(n);
    const Text open = textOf(hours, (span + "_open").view());
    const Text close = textOf(hours, (span + "_close").view());
    if (open.empty() || close.empty()) continue;
    found = true;
    row.line().centred(plain(kTextSize), "Dalle " + open + " alle " + close);
  }
  if (!found) row.line().centred(plain(kTextSize), "OGGI CHIUSO");
}

KesCSBuilder rowOf(const KesMap& shop, const Text& day) {
  Row row;
  row.left(bold(kTypeSize), "   " + textOf(shop, "Type") + KesCommon::CRLF);
  row.centred(bold(kTitleSize), nameOf(shop, "Title"));
  if (shop.ContainsKey("location"))
    if (const Text street = textOf(mapOf(shop, "location"), "street"); !street.empty())
      row.line().centred(plain(kTextSize), street);
  if (shop.ContainsKey("hours")) addHours(row, mapOf(shop, "hours"), day);
  if (shop.ContainsKey("offer"))
    if (const Text offer = textOf(mapOf(shop, "offer"), day.view()); !offer.empty()) {
      row.line().line().centred(bold(kTextSize), "Offerte del Giorno");
      row.line().centred(plain(kTextSize), offer);
    }
  return row.text();
}

}  // namespace

Resumable<> kes_main::_pizzaprezzi_caricapizzerielista() {
  const auto list = showList("PizzaPrezzi");
  const auto progress = _hd.progress("Caricamento dati in corso...");
  const auto job = co_await fetch(documents("/InfoVarlo/pizzaprezzi/master/menu.json"));
  if (!job->_success) co_return noConnection();
  const Text day = _getstringdayfb(DateTime().GetDayOfWeek(DateTime().Now()));
  eachRecord(maps(job), [&](const KesMap& shop) { list->_addtextitemcs(rowOf(shop, day), shop); });
  allShown(list);
}

}  // namespace varlo
