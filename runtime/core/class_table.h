// Classes by name, each declared once.
//
// A class describes itself in one table: its name, its base, how to make one, its
// subs and its fields in declared order. What the runtime does by name (events,
// layout variables, text forms, custom types of the serializer, class look-up) reads
// that table. Tables are put into the registry by main (or a test's set-up) before
// anything runs, on the main thread; after that they are only read, from any thread.
//
//   void kes_main::describe(ClassBuilder<kes_main>& c) {
//     c.name("kes_main");
//     c.sub<&kes_main::_lstmenu_itemclick>("lstmenu_itemclick");  // "_lstmenu_itemclick::"
//     c.field<&kes_main::_clv>("clv");                            // stored as "_clv"
//   }
//
// A sub answers to its dispatch name: underscore, lower-case name, one colon for each
// parameter of the C++ signature; two of one dispatch name are refused when the class is added
// ("%@ has two subs named _%@"). A method answers to its platform name as it stands. What
// a table does not know is answered with null; calls pass on what the method throws.
#pragma once

#include <bit>
#include <cstring>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "runtime/core/convert.h"
#include "runtime/core/object.h"

namespace kes {

struct SubInfo {
  std::string name;  // for a sub the dispatch name without its underscore
  std::uint64_t hash = 0;
  int arity = 0;
  Value (*call)(Shared& target, Args args) = nullptr;
};

struct FieldInfo {
  std::string name;  // the stored name, with its leading underscore
  // '@' for what is held as an object, '{' for a structure, else the number's type code.
  char kind = '@';
  Value (*get)(const Shared& target) = nullptr;
  void (*set)(Shared& target, const Value& v) = nullptr;
};

namespace detail {
inline std::uint64_t word(const char* p, std::size_t bytes) noexcept {
  std::uint64_t w = 0;
  std::memcpy(&w, p, bytes);
  return w;
}
}  // namespace detail

// Names are short and are hashed and compared for every event: eight bytes at a time,
// the last eight overlapping those before.
inline std::uint64_t hashName(std::string_view name) noexcept {
  constexpr std::uint64_t k = 0x9E3779B97F4A7C15ull;
  const std::size_t n = name.size();
  const char* p = name.data();
  std::uint64_t h = n * k;
  if (n >= 8) {
    for (std::size_t i = 0; i + 8 < n; i += 8) h = (std::rotl(h, 29) ^ detail::word(p + i, 8)) * k;
    h = (std::rotl(h, 29) ^ detail::word(p + n - 8, 8)) * k;
  } else if (n >= 4) {
    h = (std::rotl(h, 29) ^ detail::word(p, 4) ^ detail::word(p + n - 4, 4) << 32) * k;
  } else {
    for (const char c : name) h = (std::rotl(h, 29) ^ static_cast<unsigned char>(c)) * k;
  }
  return h ^ h >> 32;
}

inline bool sameName(std::string_view a, std::string_view b) noexcept {
  const std::size_t n = a.size();
  if (n != b.size()) return false;
  if (n < 8) return a == b;
  for (std::size_t i = 0; i + 8 < n; i += 8)
    if (detail::word(a.data() + i, 8) != detail::word(b.data() + i, 8)) return false;
  return detail::word(a.data() + n - 8, 8) == detail::word(b.data() + n - 8, 8);
}

class ClassInfo {
 public:
  std::string_view name() const { return name_; }
  const ClassInfo* base() const { return base_; }
  bool isA(const ClassInfo& other) const;

  // By event name ("lstmenu_itemclick::"), own subs before those of the base.
  const SubInfo* sub(std::string_view eventName) const {
    return sub(eventName, hashName(eventName));
  }
  const SubInfo* sub(std::string_view eventName, std::uint64_t hash) const {
    if (slots_.empty()) return nullptr;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask; slots_[i]; i = (i + 1) & mask) {
      const SubInfo& s = subs_[slots_[i] - 1];
      if (s.hash == hash && sameName(s.name, eventName)) return &s;
    }
    return nullptr;
  }
  // By the full name of a platform method ("mainBundle") or of a sub ("_base_resize::").
  const SubInfo* method(std::string_view fullName) const;

  // Fields in declared order, those of the base first.
  const std::vector<FieldInfo>& fields() const { return fields_; }
  const FieldInfo* field(std::string_view storedName) const;
  // The same by the name that the application uses: as stored, or in any case without the
  // underscore.
  const FieldInfo* property(std::string_view name) const;

  // A new object of the class, not initialised; null for a class that has no maker.
  Ref<Shared> make() const { return make_ ? make_() : nullptr; }

 private:
  friend class ClassRegistry;
  template <class T>
  friend class ClassBuilder;
  void index();

  std::string name_;
  const ClassInfo* base_ = nullptr;
  Ref<Shared> (*make_)() = nullptr;
  std::vector<SubInfo> subs_;
  std::vector<SubInfo> methods_;
  std::vector<FieldInfo> fields_;
  std::vector<std::uint32_t> slots_;  // open addressing over subs_, index + 1
};

template <class T>
class ClassBuilder {
 public:
  explicit ClassBuilder(ClassInfo& info) : info_(info) {}

  void name(std::string_view n) { info_.name_ = n; }
  // The base class, which must be in the registry already.
  template <class B>
  void base();

  template <auto Method>
  void sub(std::string_view lowerName) {
    using Call = detail::MethodCall<Method>;
    SubInfo s;
    s.name = lowerName;
    s.name.append(Call::arity, ':');
    s.arity = Call::arity;
    s.call = &Call::template invoke<T>;
    info_.subs_.push_back(std::move(s));
  }
  template <auto Method>
  void method(std::string_view platformName) {
    using Call = detail::MethodCall<Method>;
    SubInfo s;
    s.name = platformName;
    s.arity = Call::arity;
    s.call = &Call::template invoke<T>;
    info_.methods_.push_back(std::move(s));
  }
  template <auto Member>
  void field(std::string_view lowerName) {
    using Field = detail::FieldAccess<Member>;
    FieldInfo f;
    f.name = "_";
    f.name += lowerName;
    f.kind = Field::kind;
    f.get = &Field::template get<T>;
    f.set = &Field::template set<T>;
    info_.fields_.push_back(std::move(f));
  }
  // A field whose stored name is given as it stands ("_KEY" for KEY).
  template <auto Member>
  void storedField(std::string_view storedName) {
    field<Member>("");
    info_.fields_.back().name = storedName;
  }

 private:
  ClassInfo& info_;
};

class ClassRegistry {
 public:
  static ClassRegistry& instance();

  // Adds T's table; a second time changes nothing. T needs a static describe().
  template <class T>
  const ClassInfo& add() {
    auto& slot = byType_[std::type_index(typeid(T))];
    if (slot) return *slot;
    auto info = std::make_unique<ClassInfo>();
    if constexpr (requires { T::instance(); })  // a module: new is the one instance
      info->make_ = [] { return Ref<Shared>(&T::instance()); };
    else if constexpr (std::is_default_constructible_v<T> && !std::is_abstract_v<T>)
      info->make_ = [] { return Ref<Shared>(new T()); };
    ClassBuilder<T> builder(*info);
    T::describe(builder);
    return finish(slot, std::move(info));
  }
  template <class... T>
  void addAll() {
    (add<T>(), ...);
  }

  const ClassInfo* find(std::string_view name) const;
  const ClassInfo* of(const Shared& object) const;
  template <class T>
  const ClassInfo* of() const {
    auto i = byType_.find(std::type_index(typeid(T)));
    return i == byType_.end() ? nullptr : i->second.get();
  }

 private:
  const ClassInfo& finish(std::unique_ptr<ClassInfo>& slot, std::unique_ptr<ClassInfo> info);

  std::unordered_map<std::type_index, std::unique_ptr<ClassInfo>> byType_;
  std::unordered_map<std::string, const ClassInfo*> byName_;
};

template <class T>
template <class B>
void ClassBuilder<T>::base() {
  info_.base_ = &ClassRegistry::instance().add<B>();
}

}  // namespace kes
