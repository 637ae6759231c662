#include "runtime/core/dictionary.h"

#include <algorithm>
#include <bit>

#include "runtime/core/container_walk.h"

namespace kes {

namespace {

bool same(const Value& key, std::string_view wanted) {
  return key.isText() && key.textView() == wanted;
}
bool same(const Value& key, const Value& wanted) {
  return wanted.isText() ? same(key, wanted.textView()) : key.isEqual(wanted);
}

// As Value::hash does for a text.
std::size_t hashOf(std::string_view text) { return std::hash<std::string_view>()(text); }
std::size_t hashOf(const Value& key) { return key.hash(); }

// One bit of 64 that tells most keys of a small table apart at a glance.
std::uint64_t markOf(const Value& key) {
  const std::string_view t = key.textView();
  if (t.empty()) return 1;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(t[i]); };
  return std::uint64_t{1} << ((t.size() * 7 + byte(0) * 3 + byte(t.size() / 2) * 5 +
                               byte(t.size() - 1)) &
                              63);
}

}  // namespace

Dictionary::Dictionary(Entries entries) {
  if (entries.size() > kLinear) {
    entries_.reserve(entries.size());
    for (auto& e : entries) put(std::move(e.key), std::move(e.value));
    return;
  }
  entries_ = std::move(entries);
  std::uint64_t marks = 0;
  for (std::size_t i = 0; i < entries_.size();) {
    const std::uint64_t mark = markOf(entries_[i].key);
    const auto self = entries_.begin() + static_cast<std::ptrdiff_t>(i);
    if (marks & mark) {
      const auto former = std::find_if(entries_.begin(), self,
                                       [&](const Entry& e) { return same(e.key, self->key); });
      if (former != self) {
        former->value = std::move(self->value);
        entries_.erase(self);
        continue;
      }
    }
    marks |= mark;
    ++i;
  }
}

Dictionary::~Dictionary() { ContainerReaper::free(std::move(entries_)); }

std::size_t Dictionary::locateCell(const detail::Cell& key) const {
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (entries_[i].key.cell().sameBits(key)) return i;
  return kAbsent;
}

template <class Key>
std::size_t Dictionary::locate(const Key& key) const {
  if (entries_.size() <= kLinearShort) {
    if constexpr (std::is_same_v<Key, Value>) {
      if (key.cell().tag() == detail::kInlineText) return locateCell(key.cell());
    } else if (key.size() <= detail::Cell::kInline) {
      return locateCell(Value(key).cell());
    }
  }
  if (entries_.size() <= kLinear) {
    for (std::size_t i = 0; i < entries_.size(); ++i)
      if (same(entries_[i].key, key)) return i;
    return kAbsent;
  }
  if (index_.empty()) buildIndex();
  const std::size_t mask = index_.size() - 1;
  for (std::size_t slot = hashOf(key) & mask; index_[slot]; slot = (slot + 1) & mask)
    if (same(entries_[index_[slot] - 1].key, key)) return index_[slot] - 1;
  return kAbsent;
}

void Dictionary::buildIndex() const {
  index_.assign(std::bit_ceil(entries_.size() * 2 + 2), 0);
  for (std::size_t i = 0; i < entries_.size(); ++i) insertIndex(i);
}

void Dictionary::insertIndex(std::size_t entry) const {
  const std::size_t mask = index_.size() - 1;
  std::size_t slot = hashOf(entries_[entry].key) & mask;
  while (index_[slot]) slot = (slot + 1) & mask;
  index_[slot] = static_cast<std::uint32_t>(entry + 1);
}

// Takes an entry's slot out, moving later ones of its run up so that none is cut off.
void Dictionary::removeIndex(std::size_t entry) {
  const std::size_t mask = index_.size() - 1;
  std::size_t hole = hashOf(entries_[entry].key) & mask;
  while (index_[hole] != entry + 1) hole = (hole + 1) & mask;
  for (std::size_t slot = (hole + 1) & mask; index_[slot]; slot = (slot + 1) & mask) {
    const std::size_t home = hashOf(entries_[index_[slot] - 1].key) & mask;
    if (((slot - home) & mask) < ((slot - hole) & mask)) continue;
    index_[hole] = index_[slot];
    hole = slot;
  }
  index_[hole] = 0;
}

const Value* Dictionary::find(const Value& key) const {
  const std::size_t i = locate(key);
  return i == kAbsent ? nullptr : &entries_[i].value;
}

const Value* Dictionary::find(std::string_view key) const {
  const std::size_t i = locate(key);
  return i == kAbsent ? nullptr : &entries_[i].value;
}

void Dictionary::put(Value key, Value value) {
  if (const std::size_t i = locate(key); i != kAbsent) {
    std::swap(entries_[i].value, value);  // the former value goes when the table is whole
    return;
  }
  entries_.push_back({std::move(key), std::move(value)});
  if (index_.empty()) return;
  if (entries_.size() * 4 > index_.size() * 3)
    buildIndex();
  else
    insertIndex(entries_.size() - 1);
}

bool Dictionary::remove(const Value& key) {
  const std::size_t i = locate(key);
  if (i == kAbsent) return false;
  const Entry gone = entries_[i];
  if (index_.empty() || entries_.size() - 1 <= kLinear) {
    index_.clear();
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
  }
  // The last entry takes the place of the one that goes.
  removeIndex(i);
  const std::size_t last = entries_.size() - 1;
  if (i != last) {
    removeIndex(last);
    entries_[i] = std::move(entries_[last]);
  }
  entries_.pop_back();
  if (i != last) insertIndex(i);
  return true;
}

void Dictionary::clear() {
  index_.clear();
  ContainerReaper::free(std::exchange(entries_, {}));
}

Text Dictionary::description() const {
  const detail::PrintScope scope(this);
  if (!scope.going()) return detail::PrintScope::kEllipsis;
  std::string out = "{";
  for (const auto& [key, value] : entries_) {
    if (out.size() > 1) out += ", ";
    out.append(key.description()).append("=").append(value.description());
  }
  return out + "}";
}

bool Dictionary::isEqual(const Value& other) const {
  return detail::deepEqual(Value(Ref<const Dictionary>(this)), other);
}

}  // namespace kes
