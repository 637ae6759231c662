#include "townhost/spoil.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <string>

#include "townhost/trial_paths.h"

namespace town {
namespace {

using rapidjson::Value;

void takeOut(Value& value, const std::string& key) {
  if (value.IsObject()) {
    while (value.HasMember(key.c_str())) value.RemoveMember(key.c_str());
    for (auto& member : value.GetObject()) takeOut(member.value, key);
  } else if (value.IsArray()) {
    for (auto& item : value.GetArray()) takeOut(item, key);
  }
}

// A document that isn't JSON has no fields and stays as it is.
std::string without(const std::string& key, const std::string& json) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(json.data(), json.size());
  if (document.HasParseError()) return json;
  takeOut(document, key);
  rapidjson::StringBuffer out;
  rapidjson::Writer<rapidjson::StringBuffer> writer(out);
  document.Accept(writer);
  return {out.GetString(), out.GetSize()};
}

std::string otherShape(const std::string& json) {
  const auto first = json.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && json[first] == '[')
    return R"({"esito":"ok","elementi":{"0":[1,2,3]}})";
  return R"([[],"Varlo",7,null,{"":true}])";
}

}  // namespace

void spoil(Answer& answer, const Fault& fault) {
  switch (fault.kind) {
    case Fault::Kind::delay:
      return;
    case Fault::Kind::drop:
      answer.drop = true;
      return;
    case Fault::Kind::truncate:
      answer.sendOnly = static_cast<std::size_t>(std::max(0L, fault.amount));
      return;
    case Fault::Kind::status:
      answer = errorPage(static_cast<int>(fault.amount), fault.text);
      return;
    case Fault::Kind::wrongLength:
      answer.announceMore = fault.amount;
      return;
    case Fault::Kind::garbage:
      answer.body =
          fault.text.empty() ? std::string("\x1f\x8b{[\"\xff\xfe\0\xc3(", 10) : fault.text;
      return;
    case Fault::Kind::shape:
      answer.body = fault.text.empty() ? otherShape(answer.body) : fault.text;
      return;
    case Fault::Kind::missingField:
      answer.body = without(fault.text, answer.body);
      return;
    case Fault::Kind::redirect:
      answer = redirectTo(fault.text);
      return;
  }
}

}  // namespace town
