// ArrayStore: the platform's array that lists share. Immutable ones make a list
// read-only. Held by Ref, used on one thread at a time. Positions out of range throw
// KesException named "NSRangeException"; changes to an immutable one, one named
// "NSInvalidArgumentException".
#pragma once

#include <vector>

#include "runtime/core/object.h"
#include "runtime/core/slab.h"

namespace kes {

class ArrayStore final : public Object, public detail::SlabMade {
 public:
  explicit ArrayStore(std::vector<Value> items = {}, bool immutable = false)
      : items_(std::move(items)), immutable_(immutable) {}
  ~ArrayStore() override;  // frees nested containers without recursing

  std::string_view className() const override { return immutable_ ? "NSArray" : "NSMutableArray"; }
  bool isImmutable() const { return immutable_; }

  std::size_t size() const { return items_.size(); }
  const Value& at(std::int64_t i) const;
  void checkPosition(std::int64_t i, std::size_t limit) const;  // 0 <= i < limit
  std::vector<Value>& mutableItems();                           // throws on an immutable one
  const std::vector<Value>& items() const { return items_; }

  Text description() const override;
  bool isEqual(const Value& other) const override;
  std::size_t hash() const override { return items_.size(); }

 private:
  std::vector<Value> items_;
  bool immutable_;
};

}  // namespace kes
