// KesMap: keys to values. At most one of two tables is set: `map`, made by Initialize
// and writable, or `dict`, which came from a document or the platform and is read-only.
//
// Copies share the table. Put and Get throw "Object not initialized (Map)" when neither
// is set. Put, Remove and Clear on a read-only map do nothing and say nothing: test
// IsReadOnly or work on a copy. The order of keys means nothing. Main thread.
#pragma once

#include "runtime/core/dictionary.h"
#include "runtime/core/slab.h"
#include "runtime/core/wrapper.h"

namespace kes {

class KesList;

namespace detail {
// A text of any make: looked up as it is, without becoming a Value.
template <class S>
concept Textual = std::convertible_to<const S&, std::string_view>;
}  // namespace detail

class KesMap final : public Object, public ByValue, public detail::SlabMade {
 public:
  KesMap() = default;
  std::string_view className() const override { return "KesMap"; }
  static KesMap fromBoxed(const Value& v);

  KesMap& Initialize();
  bool IsInitialized() const { return map_ || dict_; }
  bool IsReadOnly() const { return static_cast<bool>(dict_); }
  void setDict(Ref<Dictionary> dict);
  // A writable map over a table that is already filled.
  void setMap(Ref<Dictionary> map) { map_ = std::move(map); }

  void Put(Value key, Value value);
  Value Get(const Value& key) const;
  Value Get(std::string_view key) const;
  template <detail::Textual S>
  Value Get(const S& key) const {
    return Get(std::string_view(key));
  }
  Value GetDefault(const Value& key, Value fallback) const;
  bool ContainsKey(const Value& key) const;
  bool ContainsKey(std::string_view key) const;
  template <detail::Textual S>
  bool ContainsKey(const S& key) const {
    return ContainsKey(std::string_view(key));
  }
  void Remove(const Value& key);
  void Clear();
  KesList Keys() const;    // a new list on each call
  KesList Values() const;  // a new list on each call
  std::int32_t Size() const;
  Ref<Dictionary> ToDictionary() const;

  // A read-only map over a copy in which every dictionary value has become a KesMap.
  static KesMap convertToMap(const Dictionary& dict);

  // The table in force, or null; for code that walks entries. The map has to outlive the walk.
  const Dictionary* table() const& { return dict_ ? dict_.get() : map_.get(); }
  const Dictionary* table() && = delete;
  const Dictionary* table() const&& = delete;

  Text description() const override;
  bool isEqual(const Value& other) const override;
  std::size_t hash() const override { return static_cast<std::size_t>(Size()); }

 private:
  Ref<Dictionary> map_;
  Ref<Dictionary> dict_;
};

}  // namespace kes
