// The checker's one door to its JSON library: reading without recursion, bounds for what
// may be read. Any thread.
#pragma once

#include <rapidjson/document.h>

#include <string>

#include "checker/finding.h"

namespace check {

using Json = rapidjson::Value;

// Null where the text is no JSON; then `fault` says where.
bool parseJson(const std::string& text, rapidjson::Document& out, Words& fault);

// What a value is, as a person would say it: "manca", "un numero (3)", "il testo «Via Roma»".
Words describe(const Json* value);
// A number, or a text that is one; false for all else.
bool readNumber(const Json& value, double& out);
const Json* member(const Json& object, const std::string& name);
std::string textOf(const Json& object, const std::string& name);

}  // namespace check
