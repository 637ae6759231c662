#include "checker/json.h"

#include <rapidjson/error/en.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace check {

namespace {

constexpr std::size_t kLongestQuote = 60;

// Cut between characters, not within one.
std::string shortened(const std::string& text) {
  if (text.size() <= kLongestQuote) return text;
  std::size_t end = kLongestQuote;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + "…";
}

std::string written(double n) {
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, n);
  return {text, end};
}

}  // namespace

bool parseJson(const std::string& text, rapidjson::Document& out, Words& fault) {
  constexpr unsigned kFlags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
  out.Parse<kFlags>(text.data(), text.size());
  if (!out.HasParseError()) return true;
  const auto at = std::min(out.GetErrorOffset(), text.size());
  const auto begin = text.begin();
  const auto line = 1 + std::count(begin, begin + static_cast<std::ptrdiff_t>(at), '\n');
  const auto before = text.rfind('\n', at == 0 ? 0 : at - 1);
  const auto column = at - (before == text.npos ? 0 : before + 1) + 1;
  const std::string where = std::to_string(line) + ", ";
  fault = {"non è JSON valido dalla riga " + where + "colonna " + std::to_string(column),
           "it is no valid JSON from line " + where + "column " + std::to_string(column)};
  return false;
}

Words describe(const Json* value) {
  if (!value) return {"manca", "it is missing"};
  switch (value->GetType()) {
    case rapidjson::kNullType:
      return {"è null", "it is null"};
    case rapidjson::kTrueType:
    case rapidjson::kFalseType:
      return {"è un valore vero/falso", "it is a Boolean"};
    case rapidjson::kNumberType:
      return {"è il numero " + written(value->GetDouble()),
              "it is the number " + written(value->GetDouble())};
    case rapidjson::kStringType: {
      const std::string text = shortened({value->GetString(), value->GetStringLength()});
      if (text.empty()) return {"è un testo vuoto", "it is an empty text"};
      return {"è il testo «" + text + "»", "it is the text \"" + text + "\""};
    }
    case rapidjson::kArrayType:
      return {"è un elenco", "it is a list"};
    case rapidjson::kObjectType:
      return {"è un oggetto", "it is an object"};
  }
  return {};
}

bool readNumber(const Json& value, double& out) {
  if (value.IsNumber()) {
    out = value.GetDouble();
    return true;
  }
  if (!value.IsString()) return false;
  const char* end = value.GetString() + value.GetStringLength();
  const auto [at, error] = std::from_chars(value.GetString(), end, out);
  return error == std::errc() && at == end && std::isfinite(out);
}

const Json* member(const Json& object, const std::string& name) {
  if (!object.IsObject()) return nullptr;
  const auto found = object.FindMember(Json(rapidjson::StringRef(name.data(), name.size())));
  return found == object.MemberEnd() ? nullptr : &found->value;
}

std::string textOf(const Json& object, const std::string& name) {
  const Json* value = member(object, name);
  if (!value) return {};
  if (value->IsString()) return {value->GetString(), value->GetStringLength()};
  return value->IsNumber() ? written(value->GetDouble()) : std::string();
}

}  // namespace check
