// The records of the town's documents, each behind a guard of its own: one that is bad
// costs its row at most, and a line in the log that says where it stands.
//
//   for (const KesMap& row : maps(job)) …                            // what is no map is left out
//   eachRecord(maps(job), [&](const KesMap& row) { … });             // and so is what throws
//   for (const Record& row : maps(job)) row.attempt([&] { … });      // where a wait stands between
//
// A line reads "farmacie.json, record 3: …"; records count from 1. Lists within a record
// are walked by maps(record, "Contacts") or maps(place, value). Main thread.
#pragma once

#include "app/kit/fetched.h"
#include "runtime/core/list.h"

namespace varlo {

class Record {
 public:
  Record() = default;
  Record(Text place, KesMap map) : place_(std::move(place)), map_(std::move(map)) {}

  const KesMap& map() const { return map_; }
  operator const KesMap&() const { return map_; }
  // Where it stands: "farmacie.json, record 3".
  const Text& place() const { return place_; }

  // Does what is to be done with the record. What that throws is logged, and the answer is
  // false. Never around a wait: a sub parks outside.
  template <class Work>
  bool attempt(Work work) const {
    try {
      work();
      return true;
    } catch (const std::exception& e) {
      logFault(e);
      return false;
    }
  }

 private:
  void logFault(const std::exception& e) const;

  Text place_;
  KesMap map_;
};

class Records {
 public:
  // `place` names the list in the log.
  Records(Text place, KesList list) : place_(std::move(place)), list_(std::move(list)) {}

  class Iterator {
   public:
    Iterator(const Records& records, std::int32_t at) : records_(&records), at_(at) { settle(); }
    const Record& operator*() const { return record_; }
    const Record* operator->() const { return &record_; }
    Iterator& operator++() {
      ++at_;
      settle();
      return *this;
    }
    bool operator==(const Iterator& o) const { return at_ == o.at_; }

   private:
    void settle();  // at the next map, or at the end

    const Records* records_;
    std::int32_t at_;
    Record record_;
  };
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, size()}; }

 private:
  std::int32_t size() const { return list_.IsInitialized() ? list_.Size() : 0; }

  Text place_;
  KesList list_;
};

// The records of a document that is a list. A text that is no JSON throws what the parser
// throws, another document "<name>: no list but …".
Records maps(const Fetched& document);
Records parsedMaps(const Text& place, const Text& json);
// Of a list within a document. What is no list throws.
Records maps(const Text& place, const Value& list);
Records maps(const Record& record, const char* key);
// The one object that a document is.
KesMap mapOf(const Fetched& document);
KesMap parsedMap(const Text& place, const Text& json);

template <class Read>
void eachRecord(const Records& records, Read read) {
  for (const Record& record : records) record.attempt([&] { read(record.map()); });
}

}  // namespace varlo
