#include "runtime/core/array_store.h"

#include "runtime/core/container_walk.h"

namespace kes {

ArrayStore::~ArrayStore() { ContainerReaper::free(std::move(items_)); }

const Value& ArrayStore::at(std::int64_t i) const {
  checkPosition(i, size());
  return items_[static_cast<std::size_t>(i)];
}

void ArrayStore::checkPosition(std::int64_t i, std::size_t limit) const {
  if (i < 0 || static_cast<std::uint64_t>(i) >= limit)
    throw KesException("NSRangeException", formatText("Index %@ is outside an array of size %@",
                                                      {std::to_string(i), std::to_string(size())}));
}

std::vector<Value>& ArrayStore::mutableItems() {
  if (immutable_)
    throw KesException("NSInvalidArgumentException", "An immutable array cannot be changed");
  return items_;
}

Text ArrayStore::description() const {
  const detail::PrintScope scope(this);
  if (!scope.going()) return detail::PrintScope::kEllipsis;
  std::string out = "[";
  for (const auto& v : items_) {
    if (out.size() > 1) out += ", ";
    out += v.description().view();
  }
  return out + "]";
}

bool ArrayStore::isEqual(const Value& other) const {
  return detail::deepEqual(Value(Ref<const ArrayStore>(this)), other);
}

}  // namespace kes
