// Dictionary: the table behind a KesMap: any value to any value.
//
// Entries lie in one block in the order in which they came; small tables are searched
// in line (short texts in larger ones too, for they compare as two numbers), others through
// an index made on demand. No caller may depend on the order. Held by Ref, used on one thread at a
// time.
#pragma once

#include <memory>
#include <vector>

#include "runtime/core/object.h"
#include "runtime/core/slab.h"

namespace kes {

class Dictionary final : public Object, public detail::SlabMade {
 public:
  struct Entry {
    Value key;
    Value value;
  };

  using Entries = std::vector<Entry, detail::SlabAllocator<Entry>>;

  Dictionary() = default;
  // Takes the entries over. Of equal keys the last wins.
  explicit Dictionary(Entries entries);
  // The same for entries whose keys are known to differ.
  struct Distinct {};
  Dictionary(Distinct, Entries entries) : entries_(std::move(entries)) {}
  ~Dictionary() override;  // frees nested containers without recursing

  std::string_view className() const override { return "NSDictionary"; }

  std::size_t size() const { return entries_.size(); }
  const Entries& entries() const { return entries_; }
  const Value* find(const Value& key) const;
  const Value* find(std::string_view key) const;  // a text key, without making a Value
  void put(Value key, Value value);
  bool remove(const Value& key);
  void clear();

  Text description() const override;
  bool isEqual(const Value& other) const override;
  std::size_t hash() const override { return entries_.size(); }

 private:
  static constexpr std::size_t kLinear = 12;
  static constexpr std::size_t kLinearShort = 40;  // for texts that lie in their cells
  static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);
  template <class Key>
  std::size_t locate(const Key& key) const;
  std::size_t locateCell(const detail::Cell& key) const;
  void buildIndex() const;
  void insertIndex(std::size_t entry) const;
  void removeIndex(std::size_t entry);

  Entries entries_;
  mutable std::vector<std::uint32_t> index_;  // open addressing, entry number + 1
};

}  // namespace kes
