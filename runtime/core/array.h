// KesArray: the language's fixed arrays, of bytes or of objects, with one or more
// dimensions.
//
// Held by Ref; sharing it shares its elements. The Fast accessors test the index and
// throw "Out of bounds. Index=%d Length=%d"; the plain ones take one index for each
// dimension and throw the same for a position outside the array. Negative dimensions and
// more elements than 32 bits count throw as well. Main thread, but a finished array may be
// handed to another one.
#pragma once

#include <initializer_list>
#include <vector>

#include "runtime/core/array_store.h"

namespace kes {

class KesArray final : public Object {
 public:
  std::string_view className() const override { return "KesArray"; }

  static Ref<KesArray> initBytes(std::vector<std::int32_t> dimensions);
  // Elements start as the given value (0 or nil for what the language's type asks).
  static Ref<KesArray> initObjects(std::vector<std::int32_t> dimensions, Value initial = {});
  static Ref<KesArray> initObjectsWithData(std::vector<Value> items);
  static Ref<KesArray> initBytesWithData(std::vector<std::uint8_t> bytes);

  bool isBytes() const { return isBytes_; }
  std::int32_t Length() const {
    return static_cast<std::int32_t>(isBytes_ ? bytes_.size() : objectsData().size());
  }
  const std::vector<std::int32_t>& dimensions() const { return dimensions_; }
  std::int32_t normalizedIndex(std::span<const std::int32_t> indices) const;

  Value getObject(std::initializer_list<std::int32_t> indices) const;
  void setObject(std::initializer_list<std::int32_t> indices, Value v);
  // FastN reads what is held as a number, 0 for nil; the 2 forms take two dimensions.
  Value getObjectFast(std::int32_t i) const;
  Value getObjectFastN(std::int32_t i) const;
  void setObjectFast(std::int32_t i, Value v);
  void setObjectFastN(std::int32_t i, Value v);
  Value getObject2FastN(std::int32_t i, std::int32_t j) const;
  void setObject2FastN(std::int32_t i, std::int32_t j, Value v);
  std::uint8_t getByteFast(std::int32_t i) const;
  void setByteFast(std::int32_t i, std::uint8_t v);

  std::vector<std::uint8_t>& bytesData() { return bytes_; }
  const std::vector<std::uint8_t>& bytesData() const { return bytes_; }
  // The objects as stored, nil as the null object.
  std::vector<Value>& objectsData();
  const std::vector<Value>& objectsData() const;
  // The array that holds the objects, to be shared with lists; null for bytes.
  const Ref<ArrayStore>& store() const { return store_; }

  Text description() const override;

 private:
  void setDimensions(std::vector<std::int32_t> dimensions);
  void calcRanks();
  void check(std::int64_t i) const;

  bool isBytes_ = false;
  std::vector<std::int32_t> dimensions_;
  std::vector<std::int32_t> ranks_;  // stride of each dimension
  std::vector<std::uint8_t> bytes_;
  Ref<ArrayStore> store_;
};

}  // namespace kes
