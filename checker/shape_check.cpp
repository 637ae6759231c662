#include "checker/shape_check.h"

#include <chrono>

#include "checker/text_width.h"

namespace check {

namespace {

const Words kAnObject{"un oggetto tra graffe { }", "an object in braces { }"};

bool digits(const std::string& text, std::size_t from, std::size_t count, int& out) {
  if (text.size() < from + count) return false;
  out = 0;
  for (std::size_t i = from; i < from + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    out = out * 10 + (text[i] - '0');
  }
  return true;
}

bool realDay(const Day& d) {
  return std::chrono::year_month_day(std::chrono::year(d.year),
                                     std::chrono::month(static_cast<unsigned>(d.month)),
                                     std::chrono::day(static_cast<unsigned>(d.day)))
      .ok();
}

bool isIsoDate(const std::string& text) {
  Day d;
  return digits(text, 0, 4, d.year) && digits(text, 5, 2, d.month) && digits(text, 8, 2, d.day) &&
         realDay(d);
}

bool isColor(const std::string& text) {
  return text.size() == 7 && text[0] == '#' &&
         text.find_first_not_of("0123456789abcdefABCDEF", 1) == text.npos;
}

bool isPath(const std::string& text) {
  return text.starts_with('/') && !text.starts_with("//") &&
         text.find_first_of(" \t\r\n\"<>\\") == text.npos;
}

std::string plain(double n) {
  const auto whole = static_cast<long long>(n);
  return std::to_string(whole);
}

Words expectedOf(const Field& field) {
  switch (field.kind) {
    case Kind::Text:
      return field.mayBeEmpty ? Words{"un testo, anche vuoto", "a text, empty perhaps"}
                              : Words{"un testo tra virgolette", "a text in quotes"};
    case Kind::Plain:
      return {"un testo o un numero", "a text or a number"};
    case Kind::Number:
      return {"un numero intero da " + plain(field.low) + " a " + plain(field.high) +
                  ", senza virgolette",
              "a whole number from " + plain(field.low) + " to " + plain(field.high) +
                  ", without quotes"};
    case Kind::Latitude:
      return {"la latitudine in gradi, come 45.2379, senza virgolette e con il punto",
              "the latitude in degrees, as 45.2379, without quotes and with a point"};
    case Kind::Longitude:
      return {"la longitudine in gradi, come 10.0409, senza virgolette e con il punto",
              "the longitude in degrees, as 10.0409, without quotes and with a point"};
    case Kind::Color:
      return {"un colore come #F2C230", "a colour as #F2C230"};
    case Kind::Date:
      return {"una data come 01/09/2026", "a date as 01/09/2026"};
    case Kind::IsoDate:
      return {"un testo che comincia con la data, come 2026-09-01",
              "a text that begins with the date, as 2026-09-01"};
    case Kind::Web:
      return {"un indirizzo che comincia con https://", "an address that begins with https://"};
    case Kind::Document:
      return {"un indirizzo che comincia con https://, o con / se è un documento del paese",
              "an address that begins with https://, or with / for a document of the town"};
    case Kind::Map:
      return kAnObject;
    case Kind::List:
      return kAList;
  }
  return {};
}

bool inRange(const Json& value, double low, double high) {
  return value.IsNumber() && value.GetDouble() >= low && value.GetDouble() <= high;
}

bool sound(const Field& field, const Json& value) {
  const auto text = [&] {
    return value.IsString() ? std::string(value.GetString(), value.GetStringLength())
                            : std::string();
  };
  constexpr double kPole = 90, kMeridian = 180;
  switch (field.kind) {
    case Kind::Text:
      return value.IsString() && (field.mayBeEmpty || value.GetStringLength() > 0);
    case Kind::Plain:
      return value.IsString() || value.IsNumber();
    case Kind::Number:
      return inRange(value, field.low, field.high) &&
             value.GetDouble() == static_cast<double>(static_cast<long long>(value.GetDouble()));
    case Kind::Latitude:
      return inRange(value, -kPole, kPole);
    case Kind::Longitude:
      return inRange(value, -kMeridian, kMeridian);
    case Kind::Color:
      return isColor(text());
    case Kind::Date: {
      Day day;
      return readDate(text(), day);
    }
    case Kind::IsoDate:
      return isIsoDate(text());
    case Kind::Web:
      return isWeb(text());
    case Kind::Document:
      return isWeb(text()) || isPath(text());
    case Kind::Map:
      return value.IsObject();
    case Kind::List:
      return value.IsArray();
  }
  return false;
}

class Walk {
 public:
  Walk(const std::string& document, Findings& findings)
      : document_(document), findings_(findings) {}

  void list(const Json& value, const Shape& shape, const std::string& within) {
    int number = 0;
    for (const Json& each : value.GetArray())
      record(each, shape, named(each, shape, ++number, within));
  }

  // A record that is none costs itself; within one, a field that is wrong hides none behind it.
  void record(const Json& value, const Shape& shape, const std::string& name) {
    if (!value.IsObject()) {
      add(name, "", describe(&value), kAnObject,
          {shape.what.it + " non compare", shape.what.en + " does not show"});
      return;
    }
    for (const Field& field : shape.fields) {
      if (field.name == "*")
        for (const auto& each : value.GetObject())
          one(field, each.name.GetString(), &each.value, name);
      else
        one(field, field.name, member(value, field.name), name);
    }
  }

 private:
  static std::string named(const Json& value, const Shape& shape, int number,
                           const std::string& within) {
    std::string name =
        within.empty() ? std::to_string(number) : within + " › " + std::to_string(number);
    const auto known = shape.known.empty() ? std::string() : textOf(value, shape.known);
    return known.empty() ? name : name + " (" + known + ")";
  }

  void one(const Field& field, const std::string& name, const Json* value,
           const std::string& record) {
    if (!value && !field.required) return;
    if (!value || !sound(field, *value)) {
      add(record, name, describe(value), expectedOf(field), field.citizen);
      return;
    }
    if (field.box && value->IsString() &&
        !fits({value->GetString(), value->GetStringLength()}, *field.box)) {
      const auto lines = std::to_string(field.box->lines);
      add(record, name, describe(value),
          {"un testo più breve: su un telefono stretto ha " + lines + " righe",
           "a shorter text: on a narrow phone it has " + lines + " lines"},
          {"il testo si legge tagliato", "the text is cut"});
    }
    if (!field.inner) return;
    const auto within = record.empty() ? name : record + " › " + name;
    if (field.kind == Kind::List)
      list(*value, *field.inner, within);
    else
      this->record(*value, *field.inner, within);
  }

  void add(const std::string& record, const std::string& field, Words found, Words expected,
           Words citizen) {
    findings_.push_back(
        {document_, record, field, std::move(found), std::move(expected), std::move(citizen)});
  }

  const std::string& document_;
  Findings& findings_;
};

}  // namespace

const Words kAList{"un elenco tra quadre [ ]", "a list in brackets [ ]"};

bool isWeb(const std::string& text) {
  for (const char* scheme : {"http://", "https://"})
    if (text.starts_with(scheme) && text.size() > std::string_view(scheme).size() &&
        text.find_first_of(" \t\r\n\"<>") == text.npos)
      return true;
  return false;
}

bool readDate(const std::string& text, Day& out) {
  return text.size() == 10 && digits(text, 0, 2, out.day) && digits(text, 3, 2, out.month) &&
         digits(text, 6, 4, out.year) && realDay(out);
}

void checkShape(const std::string& document, const Json& value, bool list, const Shape& shape,
                Findings& findings) {
  if (list && !value.IsArray()) {
    findings.push_back({document,
                        "",
                        "",
                        describe(&value),
                        kAList,
                        {"la pagina resta vuota", "the page stays empty"}});
    return;
  }
  Walk walk(document, findings);
  if (list)
    walk.list(value, shape, "");
  else
    walk.record(value, shape, "");
}

}  // namespace check
