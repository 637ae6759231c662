#include "townhost/pharmacy_turns.h"

#include <rapidjson/document.h>

#include <stdexcept>

#include "townhost/json_text.h"

namespace town {
namespace {

PharmacyTurn turnOf(CivilDay day, const std::vector<std::string>& keys) {
  const auto count = static_cast<long>(keys.size());
  const bool sunday = std::chrono::weekday(day) == std::chrono::Sunday;
  // Who opens on Saturday stays on for Sunday, so a week is six steps long.
  const long serial = day.time_since_epoch().count() + 3;  // whole weeks start on Monday
  const long week = serial >= 0 ? serial / 7 : (serial - 6) / 7;
  const long dayOfWeek = serial - week * 7;
  const long step = week * 6 + (sunday ? 5 : dayOfWeek);
  const long first = ((step % count) + count) % count;
  const long second = (first + count / 2) % count;
  return {day, keys[first], sunday ? "" : keys[second]};
}

}  // namespace

std::vector<PharmacyTurn> turnsAround(CivilDay day, int days,
                                      const std::vector<std::string>& keys) {
  if (keys.size() < 2) throw std::invalid_argument("a rota needs two pharmacies");
  std::vector<PharmacyTurn> turns;
  for (int i = -days; i <= days; ++i) turns.push_back(turnOf(day + std::chrono::days(i), keys));
  return turns;
}

std::string turnsDocument(const std::vector<PharmacyTurn>& turns) {
  JsonPage json;
  json.openList();
  for (const auto& turn : turns) {
    const std::chrono::year_month_day date(turn.day);
    json.open().number("Giorno", static_cast<unsigned>(date.day()));
    json.number("Mese", static_cast<unsigned>(date.month()));
    json.number("Anno", static_cast<int>(date.year()));
    json.text("Turno1", turn.roundTheClock).text("Turno2", turn.daytime).close();
  }
  return json.closeList().take();
}

std::vector<std::string> pharmacyKeys(std::string_view pharmaciesDocument) {
  rapidjson::Document list;
  list.Parse<rapidjson::kParseIterativeFlag>(pharmaciesDocument.data(), pharmaciesDocument.size());
  if (list.HasParseError() || !list.IsArray())
    throw std::invalid_argument("the pharmacies are not a JSON array");
  std::vector<std::string> keys;
  for (const auto& pharmacy : list.GetArray()) {
    if (!pharmacy.IsObject() || !pharmacy.HasMember("Chiave") || !pharmacy["Chiave"].IsString())
      throw std::invalid_argument("a pharmacy has no key");
    keys.emplace_back(pharmacy["Chiave"].GetString(), pharmacy["Chiave"].GetStringLength());
  }
  return keys;
}

}  // namespace town
