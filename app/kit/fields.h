// Reading the fields of the town's documents, which may hold anything.
//
// The readers throw a KesException that names the field, for the guard around the record.
// Any thread.
#pragma once

#include "runtime/core/list.h"
#include "runtime/core/map.h"

namespace varlo {

using namespace kes;

bool isMap(const Value& v);
bool isList(const Value& v);
// What a value is, for the log: "null", "a text", "a number", "a list", "a map".
std::string_view kindOf(const Value& v);

// A text, a number or a Boolean as text; what a document leaves out, or gives as null,
// reads as nothing: a citizen has no use for the word. Throws for a list or a map.
Text textOf(const KesMap& map, std::string_view key);
// The same for what a row is known by: throws too where nothing can be read.
Text nameOf(const KesMap& map, std::string_view key);
// These throw where the field is missing or is something else. A number may be written as
// a text.
double numberOf(const KesMap& map, std::string_view key);
KesMap mapOf(const KesMap& map, std::string_view key);
KesList listOf(const KesMap& map, std::string_view key);

}  // namespace varlo
