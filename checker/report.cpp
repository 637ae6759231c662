#include "checker/report.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace check {

namespace {

const std::string& in(Language language, const Words& words) {
  return language == Language::Italian ? words.it : words.en;
}

std::string tally(const TownReport& report, Language language) {
  const auto n = std::to_string(report.documents), m = std::to_string(report.findings.size());
  const auto k = std::to_string(report.unasked);
  const bool italian = language == Language::Italian;
  std::string text = n + (italian ? " documenti letti, " : " documents read, ");
  if (report.findings.empty())
    text += italian ? "tutto in ordine." : "all well.";
  else
    text += m + (italian ? " cose da correggere." : " things to mend.");
  if (report.unasked > 0)
    text += italian ? " Indirizzi di esempio, non interrogati: " + k + "."
                    : " Addresses of examples, not asked: " + k + ".";
  return text + "\n";
}

}  // namespace

std::string reportText(const TownReport& report, Language language) {
  const bool italian = language == Language::Italian;
  std::string text, document;
  for (const Finding& f : report.findings) {
    if (f.document != document) text += (text.empty() ? "" : "\n") + f.document + "\n";
    document = f.document;
    text += "  ";
    if (!f.record.empty()) text += (italian ? "record " : "record ") + f.record + ", ";
    if (!f.field.empty()) text += (italian ? "campo " : "field ") + f.field + ": ";
    text += in(language, f.found) + "\n";
    text += (italian ? "    ci vuole: " : "    wanted: ") + in(language, f.expected) + "\n";
    text += (italian ? "    il cittadino: " : "    a citizen: ") + in(language, f.citizen) + "\n";
  }
  return text + (text.empty() ? "" : "\n") + tally(report, language);
}

std::string reportJson(const TownReport& report, Language language) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> json(buffer);
  const auto text = [&](const char* key, const std::string& value) {
    json.Key(key);
    json.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  };
  json.StartObject();
  json.Key("documents");
  json.Int(report.documents);
  json.Key("findings");
  json.StartArray();
  for (const Finding& f : report.findings) {
    json.StartObject();
    text("document", f.document);
    text("record", f.record);
    text("field", f.field);
    text("found", in(language, f.found));
    text("expected", in(language, f.expected));
    text("citizen", in(language, f.citizen));
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

}  // namespace check
