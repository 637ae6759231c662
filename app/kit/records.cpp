#include "app/kit/records.h"

#include "app/kit/fields.h"
#include "runtime/data/json/json_parser.h"

namespace varlo {

namespace {

void logAt(const Text& place, std::string_view what) { KesCommon::Log(place + ": " + Text(what)); }

Value parsed(const Text& json) {
  KesJSONParser parser;
  parser.Initialize(json);
  return parser.NextObject();
}

}  // namespace

void Record::logFault(const std::exception& e) const {
  Kes::SetException(e);
  logAt(place_, e.what());
}

void Records::Iterator::settle() {
  for (; at_ < records_->size(); ++at_) {
    const Value item = records_->list_.Get(at_);
    const Text place = records_->place_ + ", record " + std::to_string(at_ + 1);
    if (isMap(item)) {
      record_ = Record(place, KesMap::fromBoxed(item));
      return;
    }
    logAt(place, "no map but " + std::string(kindOf(item)));
  }
}

Records maps(const Fetched& document) {
  return parsedMaps(document.document(), document->_getstring());
}

Records parsedMaps(const Text& place, const Text& json) { return maps(place, parsed(json)); }

Records maps(const Text& place, const Value& list) {
  if (!isList(list)) throw KesException(place + ": no list but " + Text(kindOf(list)));
  return {place, KesList::fromBoxed(list)};
}

Records maps(const Record& record, const char* key) {
  const Text separator = record.place().empty() ? "" : ", ";
  return maps(record.place() + separator + key, record.map().Get(key));
}

KesMap mapOf(const Fetched& document) {
  return parsedMap(document.document(), document->_getstring());
}

KesMap parsedMap(const Text& place, const Text& json) {
  const Value value = parsed(json);
  if (!isMap(value)) throw KesException(place + ": no map but " + Text(kindOf(value)));
  return KesMap::fromBoxed(value);
}

}  // namespace varlo
