// ValueReader: bytes back to a tree of values.
//
// A temporary of one call, on one thread, over bytes that the caller keeps. The bytes may
// come from anywhere: memory grows with the bytes that are really there and not with the
// counts they name, and nesting costs heap and no thread's stack. Missing bytes of a
// number or at the end of a text count as zeros; what asks for more than the data could
// ever hold throws like data that ends in place of a tag. Throws KesException "Unknown
// type in readObject: %d", "Error decoding data as string." for text that is no UTF-8, and
// "Serialized value too large" for what would take more than kMostMemory.
#pragma once

#include <span>
#include <vector>

#include "runtime/core/dictionary.h"
#include "runtime/data/serialized/serialized_format.h"

namespace kes {

class ValueReader {
 public:
  explicit ValueReader(std::span<const std::uint8_t> bytes,
                       std::size_t mostMemory = serialized::kMostMemory)
      : bytes_(bytes), reservable_(bytes.size()), mostMemory_(mostMemory) {}

  // Reads one value; what follows it is ignored.
  Value read();

 private:
  enum class Kind : std::uint8_t { List, ObjectArray, Map, CustomName, CustomType };
  // A container that waits for its items.
  struct Level {
    Kind kind;
    bool keyRead = false;
    std::int32_t left = 0;
    std::size_t objectKeys = 0;
    std::size_t customRun = 0;  // custom types directly inside each other, up to here
    std::vector<Value> items;
    Dictionary::Entries entries;
    Value name;  // of the custom type
  };

  // True when the value is complete, false when a container was opened.
  bool readValue(Value& out);
  bool open(Kind kind);
  std::size_t runOfCustomTypes() const;
  void readEntryCount(Level& level);
  void attach(Level& level, Value v);
  static Value close(Level& level);
  Value readText();
  Value readByteArray();
  std::int32_t readLength();  // of a payload; throws when the data could not hold it
  std::size_t reserve(std::int32_t count);
  void charge(std::size_t bytes);
  template <class T>
  T number();
  std::size_t rest() const { return bytes_.size() - at_; }

  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
  std::size_t reservable_;  // items that honest counts can still add up to
  const std::size_t mostMemory_;
  std::size_t memory_ = 0;    // about what the values take so far
  std::size_t keyLevel_ = 0;  // 1 + the outermost level that is reading a key, else 0
  std::vector<Level> levels_;
};

}  // namespace kes
