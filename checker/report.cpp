#include "checker/report.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace check {

namespace {

const std::string& in(Language language, const Words& words) {
  return language == Language::Italian ? words.it : words.en;
}

// What a document says is written to a terminal and into JSON: no control characters, which
// would move the cursor, and no bytes that are no UTF-8.
std::string clean(const std::string& text) {
  rapidjson::StringBuffer out;
  rapidjson::MemoryStream bytes(text.data(), text.size());
  while (bytes.Tell() < text.size()) {
    unsigned c = 0;
    const auto begin = bytes.Tell();
    const bool valid = rapidjson::UTF8<>::Decode(bytes, &c) && bytes.Tell() <= text.size();
    if (!valid) bytes.src_ = bytes.begin_ + begin + 1;
    constexpr unsigned kReplacement = 0xFFFD;
    const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    rapidjson::UTF8<>::Encode(out, valid ? control ? ' ' : c : kReplacement);
  }
  return {out.GetString(), out.GetSize()};
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
    if (f.document != document) text += (text.empty() ? "" : "\n") + clean(f.document) + "\n";
    document = f.document;
    text += "  ";
    if (!f.record.empty()) text += "record " + clean(f.record) + ", ";
    if (!f.field.empty()) text += (italian ? "campo " : "field ") + clean(f.field) + ": ";
    text += clean(in(language, f.found)) + "\n";
    text += (italian ? "    ci vuole: " : "    wanted: ") + in(language, f.expected) + "\n";
    text += (italian ? "    il cittadino: " : "    a citizen: ") + clean(in(language, f.citizen));
    text += "\n";
  }
  return text + (text.empty() ? "" : "\n") + tally(report, language);
}

std::string reportJson(const TownReport& report, Language language) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> json(buffer);
  const auto text = [&](const char* key, const std::string& said) {
    const std::string value = clean(said);
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
