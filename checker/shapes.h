// The shapes of the town's documents: which they are, what fields their records have, what
// each field holds, and what a citizen loses where it does not. The one place that knows
// them; docs/town.md is written for people.
//
// Constant tables, made at the first call. Any thread.
#pragma once

#include <string>
#include <vector>

#include "checker/finding.h"

namespace check {

enum class Kind {
  Text,      // a text
  Plain,     // a text or a number, shown as it stands
  Number,    // a number, between low and high
  Latitude,  // a number, or a text that is one where the field says so
  Longitude,
  Color,     // "#" and six hexadecimal digits
  Date,      // two digits, two digits, four digits: day, month, year
  IsoDate,   // begins with year-month-day
  Web,       // an address that begins with http:// or https://
  Document,  // such an address, or a path on the host of the documents
  Map,
  List,  // of maps
};

// The place where a text is shown, on the narrowest phone (320 points wide).
struct Box {
  double width;  // points
  double size;   // of its letters, points
  int lines;
};

struct Shape;

struct Field {
  std::string name;
  Kind kind;
  bool required;
  Words citizen;                 // what the citizen sees where it is missing or wrong
  const Shape* inner = nullptr;  // of Map and List
  const Box* box = nullptr;
  double low = 0, high = 0;
  bool mayBeEmpty = true;  // "" counts as there
};

struct Shape {
  Words what;         // one of its records: "la farmacia"
  std::string known;  // the field by which a report names a record
  std::vector<Field> fields;
};

struct DocumentShape {
  std::string path;  // on the host of the static documents
  bool list;         // of records, else one record
  const Shape* shape;
  Words without;  // what the citizen sees where it can't be read
};

// Those that stand under a path of their own.
const std::vector<DocumentShape>& documents();
// Those whose path another document tells: "Link" or "URL" of its records.
const Shape& entity();
const Shape& schoolMenu();
// Records of the services.
const Shape& newsItem();
const Shape& newsletterIssue();
const Shape& act();
const Shape& event();

inline constexpr const char* kPharmacies = "/InfoVarlo/farmacie/master/farmacie.json";
inline constexpr const char* kTurns = "/InfoVarlo/farmacie/master/turni.json";
inline constexpr const char* kDirectory = "/InfoVarlo/infocitta/master/";
inline constexpr const char* kCategories = "/InfoVarlo/infocitta/master/menu.json";
inline constexpr const char* kStreets = "/InfoVarlo/raccoltarifiuti/master/zone.json";
inline constexpr const char* kWaste = "/InfoVarlo/raccoltarifiuti/master/config.json";
inline constexpr const char* kSchoolFolder = "/InfoVarlo/menuscuola/master/";
inline constexpr const char* kSchools = "/InfoVarlo/menuscuola/master/scuole.json";
inline constexpr const char* kMaps = "/InfoVarlo/mappe/master/mappe.json";
inline constexpr const char* kHome = "/InfoVarlo/config/master/home_ios.html";
inline constexpr const char* kAbout = "/InfoVarlo/config/master/about.html";
inline constexpr const char* kClubs = "/InfoVarlo/config/master/sport.json";
inline constexpr const char* kRestaurants = "/InfoVarlo/config/master/menudelgiorno.json";
inline constexpr const char* kVersion = "/InfoVarlo/config/master/version_ios";

}  // namespace check
