// ValueWriter: a tree of values as bytes, uncompressed.
//
// A temporary of one call, on one thread; the tree must not change meanwhile. Walks with
// a stack of its own, so nesting costs heap and no thread's stack. Throws KesException
// "Cannot serialize: %@" for what the format cannot hold, and one named "Unknown number
// type" for a number of a kind that it has no tag for.
#pragma once

#include <memory>
#include <vector>

#include "runtime/core/dictionary.h"

namespace kes {

class KesArray;

class ValueWriter {
 public:
  std::vector<std::uint8_t> write(const Value& root);

 private:
  // A container whose items are being written: a row of values, or of entries.
  struct Level {
    const Value* item = nullptr;
    const Value* itemEnd = nullptr;
    const Dictionary::Entry* entry = nullptr;
    const Dictionary::Entry* entryEnd = nullptr;
    bool keyWritten = false;
    std::size_t customRun = 0;  // custom types directly inside each other, up to here
    std::unique_ptr<Dictionary::Entries> collected;  // a custom type's fields
  };

  void writeValue(const Value& v);
  void writeNumber(const Value& v);
  void writeText(std::string_view utf8);
  void writeObject(Shared& object);
  void openItems(std::uint8_t tag, const std::vector<Value>& items);
  void openEntries(std::span<const Dictionary::Entry> entries);
  void openCustomType(Shared& object);
  void writeCount(std::size_t n);
  Level& push();

  std::uint8_t* room(std::size_t n) {
    if (n > blockSize_ - blockUsed_) newBlock(n);
    auto* at = block_ + blockUsed_;
    blockUsed_ += n;
    return at;
  }
  void newBlock(std::size_t atLeast);
  std::vector<std::uint8_t> joined();
  template <class T>
  void put(std::uint8_t tag, T v);

  // What is written lies in blocks that never move, and is put together once.
  struct Block {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t used;
  };
  std::vector<Block> full_;  // and, last, the one in use, whose count is below
  std::uint8_t* block_ = nullptr;
  std::size_t blockSize_ = 0;
  std::size_t blockUsed_ = 0;
  std::size_t fullSize_ = 0;
  std::vector<Level> levels_;
};

// Whether an object can be a custom type: it answers IsInitialized.
bool answersIsInitialized(const Shared& object);

}  // namespace kes
