// What the containers share so that nesting of any depth is safe: they are freed and
// compared without recursion, and printed only down to a depth. Any thread, each call on
// containers of its own.
#pragma once

#include <string>
#include <vector>

#include "runtime/core/array_store.h"
#include "runtime/core/dictionary.h"

namespace kes {

// Frees what dying containers held. Containers that end while others are being freed on
// the same thread are put off until those are done.
class ContainerReaper {
 public:
  static void free(std::vector<Value> items) noexcept;
  static void free(Dictionary::Entries entries) noexcept;

 private:
  struct Pending;
  static thread_local Pending* pending_;
  template <class Held>
  static void reap(std::vector<Held> Pending::*kind, Held held) noexcept;
};

namespace detail {

// Equality of two values, walking containers and the wrappers around them.
bool deepEqual(const Value& a, const Value& b);

// Marks an object as being printed on this thread. Where going() is false, an ellipsis
// stands for it: it lies too deep, contains itself, or too much was printed already.
class PrintScope {
 public:
  explicit PrintScope(const void* object) noexcept;
  ~PrintScope();
  PrintScope(const PrintScope&) = delete;
  PrintScope& operator=(const PrintScope&) = delete;
  bool going() const { return going_; }
  static constexpr const char* kEllipsis = "…";

 private:
  const void* object_;
  PrintScope* outer_;
  int depth_ = 0;
  int* budget_ = nullptr;
  int ownBudget_ = 0;
  bool going_ = true;
};

}  // namespace detail

}  // namespace kes
