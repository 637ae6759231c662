#include "runtime/core/array.h"

#include <algorithm>
#include <limits>

#include "runtime/core/kes.h"

namespace kes {

namespace {

[[noreturn]] void failBounds(std::int64_t i, std::int64_t length) {
  throw KesException(
      formatText("Out of bounds. Index=%@ Length=%@", {std::to_string(i), std::to_string(length)}));
}

std::size_t product(const std::vector<std::int32_t>& dimensions) {
  // Without the empty dimensions, so that the strides of the others are sound too.
  std::int64_t n = 1;
  bool empty = false;
  for (const auto d : dimensions) {
    if (d < 0) throw KesException("An array cannot have a negative dimension");
    empty = empty || d == 0;
    n *= std::max(d, 1);
    if (n > std::numeric_limits<std::int32_t>::max()) throw KesException("Array too large");
  }
  return empty ? 0 : static_cast<std::size_t>(n);
}

}  // namespace

Ref<KesArray> KesArray::initBytes(std::vector<std::int32_t> dimensions) {
  auto a = platform::makeShared<KesArray>();
  a->isBytes_ = true;
  a->bytes_.resize(product(dimensions));
  a->setDimensions(std::move(dimensions));
  return a;
}

Ref<KesArray> KesArray::initObjects(std::vector<std::int32_t> dimensions, Value initial) {
  auto a = platform::makeShared<KesArray>();
  const std::size_t n = product(dimensions);
  a->store_ =
      platform::makeShared<ArrayStore>(std::vector<Value>(n, nilToNull(std::move(initial))));
  a->setDimensions(std::move(dimensions));
  return a;
}

Ref<KesArray> KesArray::initObjectsWithData(std::vector<Value> items) {
  auto a = platform::makeShared<KesArray>();
  for (auto& v : items)
    if (v.isNil()) v = Value::null();
  a->setDimensions({static_cast<std::int32_t>(items.size())});
  a->store_ = platform::makeShared<ArrayStore>(std::move(items));
  return a;
}

Ref<KesArray> KesArray::initBytesWithData(std::vector<std::uint8_t> bytes) {
  auto a = platform::makeShared<KesArray>();
  a->isBytes_ = true;
  a->bytes_ = std::move(bytes);
  a->setDimensions({static_cast<std::int32_t>(a->bytes_.size())});
  return a;
}

void KesArray::setDimensions(std::vector<std::int32_t> dimensions) {
  dimensions_ = std::move(dimensions);
  calcRanks();
}

void KesArray::calcRanks() {
  ranks_.assign(dimensions_.size(), 1);
  for (std::size_t i = ranks_.size(); i-- > 1;) ranks_[i - 1] = ranks_[i] * dimensions_[i];
}

std::int32_t KesArray::normalizedIndex(std::span<const std::int32_t> indices) const {
  if (indices.size() != dimensions_.size()) failBounds(0, 0);
  // With one dimension the array itself tells its length: a list over it may have grown.
  if (indices.size() == 1) return indices[0];
  std::int32_t position = 0;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    if (indices[i] < 0 || indices[i] >= dimensions_[i]) failBounds(indices[i], dimensions_[i]);
    position += indices[i] * ranks_[i];
  }
  return position;
}

void KesArray::check(std::int64_t i) const {
  if (i < 0 || i >= Length()) failBounds(i, Length());
}

std::vector<Value>& KesArray::objectsData() {
  if (!store_) store_ = platform::makeShared<ArrayStore>();
  return store_->mutableItems();
}

const std::vector<Value>& KesArray::objectsData() const {
  static const std::vector<Value> none;
  return store_ ? store_->items() : none;
}

Value KesArray::getObject(std::initializer_list<std::int32_t> indices) const {
  return getObjectFast(normalizedIndex({indices.begin(), indices.size()}));
}

void KesArray::setObject(std::initializer_list<std::int32_t> indices, Value v) {
  setObjectFast(normalizedIndex({indices.begin(), indices.size()}), std::move(v));
}

Value KesArray::getObjectFast(std::int32_t i) const {
  check(i);
  if (isBytes_) return bytes_[static_cast<std::size_t>(i)];
  return nullToNil(store_->items()[static_cast<std::size_t>(i)]);
}

Value KesArray::getObjectFastN(std::int32_t i) const {
  Value v = getObjectFast(i);
  return v.isNil() ? Value(0) : v;
}

void KesArray::setObjectFast(std::int32_t i, Value v) {
  check(i);
  if (isBytes_)
    bytes_[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(Kes::ObjectToLongNumber(v));
  else
    store_->mutableItems()[static_cast<std::size_t>(i)] = nilToNull(std::move(v));
}

void KesArray::setObjectFastN(std::int32_t i, Value v) { setObjectFast(i, std::move(v)); }

Value KesArray::getObject2FastN(std::int32_t i, std::int32_t j) const {
  return getObjectFastN(normalizedIndex(std::initializer_list<std::int32_t>{i, j}));
}

void KesArray::setObject2FastN(std::int32_t i, std::int32_t j, Value v) {
  setObjectFastN(normalizedIndex(std::initializer_list<std::int32_t>{i, j}), std::move(v));
}

std::uint8_t KesArray::getByteFast(std::int32_t i) const {
  check(i);
  return isBytes_ ? bytes_[static_cast<std::size_t>(i)]
                  : static_cast<std::uint8_t>(getObjectFast(i).asInt64());
}

void KesArray::setByteFast(std::int32_t i, std::uint8_t v) { setObjectFast(i, v); }

Text KesArray::description() const {
  if (!isBytes_) return store_ ? store_->description() : Text("[]");
  return formatText("<%@ bytes>", {std::to_string(bytes_.size())});
}

}  // namespace kes
