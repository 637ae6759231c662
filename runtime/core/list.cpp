#include "runtime/core/list.h"

#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/kes.h"
#include "runtime/core/sorting.h"

namespace kes {

KesList KesList::fromBoxed(const Value& v) {
  const Value inner = nullToNil(detail::unwrapped(v));
  if (inner.as<KesArray>()) {
    if (const auto boxed = Kes::ArrayToList(inner).as<KesList>()) return *boxed;
    return {};
  }
  KesList list;
  list.setObject(inner);
  return list;
}

KesList KesList::of(std::vector<Value> items) {
  for (auto& v : items)
    if (v.isNil()) v = Value::null();
  KesList list;
  list.wrap(platform::makeShared<ArrayStore>(std::move(items)));
  return list;
}

void KesList::Initialize() { wrap(platform::makeShared<ArrayStore>()); }

std::vector<Value>& KesList::items() {
  return static_cast<ArrayStore*>(object().object())->mutableItems();
}

void KesList::Add(Value v) { items().push_back(nilToNull(std::move(v))); }

void KesList::AddAll(const KesList& list) { AddAllAt(Size(), list); }

void KesList::AddAllAt(std::int64_t index, const KesList& list) {
  auto& mine = items();
  store().checkPosition(index, mine.size() + 1);
  const std::vector<Value> added = list.store().items();  // a copy: it may be this very list
  mine.insert(mine.begin() + index, added.begin(), added.end());
}

void KesList::InsertAt(std::int64_t i, Value v) {
  auto& mine = items();
  store().checkPosition(i, mine.size() + 1);
  mine.insert(mine.begin() + i, nilToNull(std::move(v)));
}

void KesList::RemoveAt(std::int64_t i) {
  auto& mine = items();
  store().checkPosition(i, mine.size());
  const Value gone = std::move(mine[static_cast<std::size_t>(i)]);
  mine.erase(mine.begin() + i);
}

void KesList::Set(std::int64_t i, Value v) {
  auto& mine = items();
  store().checkPosition(i, mine.size());
  const Value former = std::exchange(mine[static_cast<std::size_t>(i)], nilToNull(std::move(v)));
}

void KesList::Clear() { const std::vector<Value> gone = std::exchange(items(), {}); }

std::int32_t KesList::IndexOf(const Value& v) const {
  const Value wanted = nilToNull(v);
  const auto& all = store().items();
  for (std::size_t i = 0; i < all.size(); ++i)
    if (all[i].isEqual(wanted)) return static_cast<std::int32_t>(i);
  return -1;
}

void KesList::sort(bool ascending, bool caseInsensitive) {
  if (Size() == 0) return;
  auto& mine = items();
  const SortKind kind = mine.front().isNumber() ? SortKind::Numbers
                        : caseInsensitive       ? SortKind::FoldedTexts
                                                : SortKind::Texts;
  sortValues(mine, mine, kind, ascending);
}

void KesList::sortList(std::string_view field, bool ascending, bool caseInsensitive) {
  if (Size() == 0) return;
  auto& mine = items();
  std::vector<Value> keys;
  keys.reserve(mine.size());
  for (const Value& record : mine) {
    const auto* object = dynamic_cast<const Object*>(record.object());
    const ClassInfo* info = object ? object->classInfo() : nullptr;
    const FieldInfo* f = info ? info->property(field) : nullptr;
    if (!f)
      throw KesException("NSUnknownKeyException",
                         formatText("No field %@ in %@", {field, record.description()}));
    keys.push_back(f->get(*object));
  }
  const SortKind kind = keys.front().isNumber() ? SortKind::Numbers
                        : caseInsensitive       ? SortKind::FoldedTexts
                                                : SortKind::Texts;
  sortValues(mine, keys, kind, ascending);
}

}  // namespace kes
