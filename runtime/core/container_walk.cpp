#include "runtime/core/container_walk.h"

#include <set>

#include "runtime/core/array.h"
#include "runtime/core/map.h"
#include "runtime/core/wrapper.h"

namespace kes {

// The list lives on the stack of the outermost container to die, so that it is there
// whenever one dies, in static destruction as well.
struct ContainerReaper::Pending {
  std::vector<std::vector<Value>> items;
  std::vector<Dictionary::Entries> entries;
};

thread_local ContainerReaper::Pending* ContainerReaper::pending_ = nullptr;

template <class Held>
void ContainerReaper::reap(std::vector<Held> Pending::*kind, Held held) noexcept {
  if (held.empty()) return;
  if (pending_) {
    (pending_->*kind).push_back(std::move(held));
    return;
  }
  Pending pending;
  pending_ = &pending;
  held.clear();
  const auto freeLast = [](auto& list) {
    const auto last = std::move(list.back());
    list.pop_back();
  };
  while (!pending.items.empty() || !pending.entries.empty()) {
    if (!pending.items.empty())
      freeLast(pending.items);
    else
      freeLast(pending.entries);
  }
  pending_ = nullptr;
}

void ContainerReaper::free(std::vector<Value> items) noexcept {
  reap(&Pending::items, std::move(items));
}

void ContainerReaper::free(Dictionary::Entries entries) noexcept {
  reap(&Pending::entries, std::move(entries));
}

namespace detail {

namespace {

// The container that a value is or wraps, or the value itself.
Value core(const Value& v) {
  if (const auto map = v.as<KesMap>())
    return Value(Ref<Dictionary>(const_cast<Dictionary*>(map->table())));
  if (const auto wrapper = v.as<KesObjectWrapper>()) return wrapper->objectOrNull();
  return v;
}

using Pairs = std::vector<std::pair<Value, Value>>;

bool matchItems(const std::vector<Value>& a, const std::vector<Value>& b, Pairs& later) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].isObject() && b[i].isObject())
      later.emplace_back(a[i], b[i]);
    else if (!a[i].isEqual(b[i]))
      return false;
  }
  return true;
}

bool matchEntries(const Dictionary& a, const Dictionary& b, Pairs& later) {
  if (a.size() != b.size()) return false;
  for (const auto& [key, value] : a.entries()) {
    const Value* other = b.find(key);
    if (!other) return false;
    if (value.isObject() && other->isObject())
      later.emplace_back(value, *other);
    else if (!value.isEqual(*other))
      return false;
  }
  return true;
}

}  // namespace

bool deepEqual(const Value& first, const Value& second) {
  // Containers that hold themselves would be compared for ever: after so many pairs each
  // is looked at once.
  constexpr std::size_t kPlain = 10'000;
  std::size_t compared = 0;
  std::set<std::pair<const void*, const void*>> seen;
  Pairs pairs{{first, second}};
  while (!pairs.empty()) {
    const Value a = core(pairs.back().first), b = core(pairs.back().second);
    pairs.pop_back();
    if (a.object() && a.object() == b.object()) continue;
    if (++compared > kPlain && a.object() && b.object() &&
        !seen.emplace(a.object(), b.object()).second)
      continue;
    if (const auto x = a.as<ArrayStore>()) {
      const auto y = b.as<ArrayStore>();
      if (!y || !matchItems(x->items(), y->items(), pairs)) return false;
    } else if (const auto x = a.as<Dictionary>()) {
      const auto y = b.as<Dictionary>();
      if (!y || !matchEntries(*x, *y, pairs)) return false;
    } else if (!a.isEqual(b)) {
      return false;
    }
  }
  return true;
}

namespace {
constexpr int kMostDepth = 32;
constexpr int kMostObjects = 100'000;
thread_local PrintScope* innermost = nullptr;
}  // namespace

PrintScope::PrintScope(const void* object) noexcept : object_(object), outer_(innermost) {
  if (outer_) {
    depth_ = outer_->depth_ + 1;
    budget_ = outer_->budget_;
  } else {
    ownBudget_ = kMostObjects;
    budget_ = &ownBudget_;
  }
  going_ = depth_ < kMostDepth && --*budget_ > 0;
  for (const auto* scope = outer_; scope && going_; scope = scope->outer_)
    going_ = scope->object_ != object;
  innermost = this;
}

PrintScope::~PrintScope() { innermost = outer_; }

}  // namespace detail

}  // namespace kes
