// KesList: a view of an array. Copies, and lists made from each other, share one store.
//
// Nil cannot stand in an array: it is kept as the null object and comes back as nil. A
// list over an immutable array is read-only. Every operation throws "Object was not
// initialized (%@)" before Initialize; bad positions throw the array's range exception.
// Main thread.
#pragma once

#include "runtime/core/array_store.h"
#include "runtime/core/wrapper.h"

namespace kes {

class KesList final : public TypedWrapper<KesList, ArrayStore> {
 public:
  static constexpr std::string_view kPlatformClass = "NSArray";
  std::string_view className() const override { return "KesList"; }
  // From a value that a document or an event gave: a list, an array or a KesArray.
  static KesList fromBoxed(const Value& v);
  static KesList of(std::vector<Value> items);

  void Initialize();
  void Initialize2(const KesList& other) { setObject(other.objectOrNull()); }
  bool IsReadOnly() const { return store().isImmutable(); }

  std::int32_t Size() const { return static_cast<std::int32_t>(store().size()); }
  Value Get(std::int64_t i) const { return nullToNil(store().at(i)); }
  void Add(Value v);
  void AddAll(const KesList& list);
  void AddAllAt(std::int64_t index, const KesList& list);
  void InsertAt(std::int64_t i, Value v);
  void RemoveAt(std::int64_t i);
  void Set(std::int64_t i, Value v);
  void Clear();
  std::int32_t IndexOf(const Value& v) const;

  void Sort(bool ascending) { sort(ascending, false); }
  void SortCaseInsensitive(bool ascending) { sort(ascending, true); }
  // Records by a field's name, without or with its underscore.
  void SortType(std::string_view field, bool ascending) { sortList(field, ascending, false); }
  void SortTypeCaseInsensitive(std::string_view field, bool ascending) {
    sortList(field, ascending, true);
  }

  // for (const Value& v : list): the values as stored, nil as the null object.
  auto begin() const { return store().items().begin(); }
  auto end() const { return store().items().end(); }

 private:
  const ArrayStore& store() const { return *static_cast<const ArrayStore*>(object().object()); }
  std::vector<Value>& items();
  void sort(bool ascending, bool caseInsensitive);
  void sortList(std::string_view field, bool ascending, bool caseInsensitive);
};

}  // namespace kes
