// What the line remembers in the phone's store: who this installation is, the messages that
// came and were not seen to yet, and the names of those that came before.
//
// Made by a line, with a file of its own; an empty path keeps all in memory. A message is
// on the disk before the service hears that it came, so neither a kill nor an empty battery
// loses it. A file that cannot be read is put aside and a new one begun. Any thread. Throws
// std::runtime_error where nothing can be stored.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace push {

class Journal {
 public:
  struct Entry {
    std::int64_t number;
    std::string json;
  };

  explicit Journal(const std::string& path);
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // 22 letters and digits, drawn once; any broker takes a name of that length.
  const std::string& identity() const { return identity_; }

  // False for a name that is among the last few thousand: it came before. The other name, if
  // any, counts as having come as well.
  bool keep(std::string_view name, std::string_view json, std::string_view otherName = {});
  // Those with a greater number that were not seen to, oldest first.
  std::vector<Entry> waitingAfter(std::int64_t number);
  // Notes that it is about to be told; false when it was told too often to no avail.
  bool tell(std::int64_t number);
  void seenTo(std::int64_t number);
  // Names that begin with these letters may come anew.
  void forget(std::string_view beginning);

 private:
  class Statement;
  void open(const std::string& path);
  void run(const char* sql);

  mutable std::mutex mutex_;
  sqlite3* database_ = nullptr;
  std::string identity_;
};

}  // namespace push
