#include "runtime/core/map.h"

#include "runtime/core/container_walk.h"
#include "runtime/core/convert.h"
#include "runtime/core/list.h"

namespace kes {

namespace {
void needTable(const Dictionary* table) {
  if (!table) throw KesException("Object not initialized (Map)");
}
}  // namespace

KesMap KesMap::fromBoxed(const Value& v) {
  KesMap map;
  const Value inner = nullToNil(detail::unwrapped(v));
  if (inner.isNil()) return map;
  if (const auto other = inner.as<KesMap>())
    map = *other;
  else if (auto dict = inner.as<Dictionary>())
    map.setDict(std::move(dict));
  else
    detail::failObject("KesMap", v);
  return map;
}

KesMap& KesMap::Initialize() {
  map_ = platform::makeShared<Dictionary>();
  dict_ = nullptr;
  return *this;
}

void KesMap::setDict(Ref<Dictionary> dict) {
  dict_ = std::move(dict);
  map_ = nullptr;
}

void KesMap::Put(Value key, Value value) {
  needTable(table());
  if (map_) map_->put(nilToNull(std::move(key)), std::move(value));
}

namespace {
// The key as the table has it: the null object stands for nil.
Value filed(const Value& key) { return nilToNull(key); }
}  // namespace

Value KesMap::Get(const Value& key) const {
  needTable(table());
  const Value* found = table()->find(filed(key));
  return found ? *found : Value();
}

Value KesMap::Get(std::string_view key) const {
  needTable(table());
  const Value* found = table()->find(key);
  return found ? *found : Value();
}

Value KesMap::GetDefault(const Value& key, Value fallback) const {
  Value found = Get(key);
  return found.isNil() ? std::move(fallback) : found;
}

bool KesMap::ContainsKey(const Value& key) const {
  const Value* found = table() ? table()->find(filed(key)) : nullptr;
  return found && !found->isNil();
}

bool KesMap::ContainsKey(std::string_view key) const {
  const Value* found = table() ? table()->find(key) : nullptr;
  return found && !found->isNil();
}

void KesMap::Remove(const Value& key) {
  if (map_) map_->remove(filed(key));
}

void KesMap::Clear() {
  if (map_) map_->clear();
}

KesList KesMap::Keys() const {
  std::vector<Value> keys;
  if (table()) {
    keys.reserve(table()->size());
    for (const auto& e : table()->entries()) keys.push_back(e.key);
  }
  return KesList::of(std::move(keys));
}

KesList KesMap::Values() const {
  std::vector<Value> values;
  if (table()) {
    values.reserve(table()->size());
    for (const auto& e : table()->entries()) values.push_back(e.value);
  }
  return KesList::of(std::move(values));
}

std::int32_t KesMap::Size() const {
  return table() ? static_cast<std::int32_t>(table()->size()) : 0;
}

Ref<Dictionary> KesMap::ToDictionary() const {
  if (dict_) return dict_;
  return platform::makeShared<Dictionary>(map_ ? map_->entries() : Dictionary::Entries());
}

KesMap KesMap::convertToMap(const Dictionary& dict) {
  KesMap top;
  top.setDict(platform::makeShared<Dictionary>());
  std::vector<std::pair<const Dictionary*, Dictionary*>> pending{{&dict, top.dict_.get()}};
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    for (const auto& [key, value] : from->entries()) {
      const auto nested = value.as<Dictionary>();
      if (!nested) {
        to->put(key, value);
        continue;
      }
      KesMap inner;
      inner.setDict(platform::makeShared<Dictionary>());
      pending.emplace_back(nested.get(), inner.dict_.get());
      to->put(key, inner);
    }
  }
  return top;
}

Text KesMap::description() const { return table() ? table()->description() : Text("{}"); }

bool KesMap::isEqual(const Value& other) const {
  if (other.object() == this) return true;
  return table() && detail::deepEqual(Value(Ref<const Dictionary>(table())), other);
}

}  // namespace kes
