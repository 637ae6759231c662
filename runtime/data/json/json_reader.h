// JsonReader: one pass over a JSON text, straight into the system's containers.
//
// Strict: what the grammar does not allow, text that is not UTF-8 and numbers beyond a double
// are refused with a JsonError; the escape of half a surrogate pair is read as U+FFFD. It neither
// copies the text nor reads beyond it, and keeps its own stack: depth is limited by memory only.
// One reader reads one text once. Any thread.
#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "runtime/core/dictionary.h"

namespace kes {

struct JsonError {
  const char* reason;
  std::size_t position;  // in bytes
};

class JsonReader {
 public:
  explicit JsonReader(std::string_view utf8);
  ~JsonReader();
  JsonReader(const JsonReader&) = delete;
  JsonReader& operator=(const JsonReader&) = delete;

  // A KesMap or an ArrayStore, by what the document has at its top.
  Value read();

 private:
  using Cell = detail::Cell;
  struct Frame {
    std::uint32_t base;  // where its cells begin on the stack
    bool isObject;
  };

  [[noreturn]] void fail(const char* reason, const char* at) const;
  void push(const Cell& c);
  void grow();
  void findEnds();
  bool open();
  bool step();
  void close();
  void readName();
  void readScalar();
  void skipSpace();
  void readString(Cell& out, bool isKey);
  void readEscaped(Cell& out, const char* begin, bool isKey);
  const char* scanPlain(const char* p, unsigned& high) const;
  char32_t readHex(const char* p) const;
  void makeText(Cell& out, std::string_view bytes, bool mayBeWide, bool isKey);
  void makeLong(Cell& out, std::string_view bytes, std::uint32_t units);
  void internKey(Cell& out, std::string_view bytes, std::uint32_t units);
  void readNumber(Cell& out);
  void readDouble(Cell& out, const char* begin);
  void expectWord(std::string_view word);
  void closeObject(std::uint32_t base);
  void closeArray(std::uint32_t base);
  bool keysDiffer(const Cell* entries, std::size_t count);

  const char* const begin_;
  const char* end_;
  const char* p_;

  std::vector<Frame> frames_;
  std::unique_ptr<Cell[]> stack_;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 0;
  std::string scratch_;  // a text with its escapes resolved

  // Long keys, each kept once for the whole document.
  static constexpr std::size_t kKeySlots = 512;
  std::vector<Cell> keys_;
  std::size_t keyCount_ = 0;
  bool keysShared_ = true;

  // Runs of keys that were found to differ: records of one kind are checked once.
  static constexpr std::size_t kShapes = 8;
  std::vector<Cell> shapes_[kShapes];
};

}  // namespace kes
