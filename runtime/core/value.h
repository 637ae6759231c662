// The one value type: nil, the null object, a number that remembers the type it was
// made with, text, or a shared object.
//
// Nil is the absence of a value; the null object is a value that stands for it in
// lists and maps. They compare unequal and are told apart by isNil() and isNull().
// Sixteen bytes, cheap to copy, safe to hand to another thread. Conversions that can
// fail (ObjectToNumber and its kind) are in runtime/core/kes.h.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <typeinfo>

#include "platform/base/shared.h"
#include "runtime/core/text.h"

namespace kes {

using platform::Ref;
using platform::Shared;
using platform::WeakRef;

// The type with which a number was created, with its one-letter type code.
enum class NumberType : unsigned char {
  Bool = 'B',
  SignedChar = 'c',
  UnsignedChar = 'C',
  Short = 's',
  UnsignedShort = 'S',
  Int = 'i',
  UnsignedInt = 'I',
  Long = 'l',  // the platform's own long; the runtime itself never makes one
  LongLong = 'q',
  UnsignedLongLong = 'Q',
  Float = 'f',
  Double = 'd',
};

template <class T>
constexpr NumberType numberTypeOf() {
  if constexpr (std::same_as<T, bool>)
    return NumberType::Bool;
  else if constexpr (std::same_as<T, signed char> || std::same_as<T, char>)
    return NumberType::SignedChar;
  else if constexpr (std::same_as<T, unsigned char>)
    return NumberType::UnsignedChar;
  else if constexpr (std::same_as<T, short>)
    return NumberType::Short;
  else if constexpr (std::same_as<T, unsigned short> || std::same_as<T, char16_t>)
    return NumberType::UnsignedShort;
  else if constexpr (std::same_as<T, float>)
    return NumberType::Float;
  else if constexpr (std::floating_point<T>)
    return NumberType::Double;
  else if constexpr (sizeof(T) == 4)
    return std::is_signed_v<T> ? NumberType::Int : NumberType::UnsignedInt;
  else
    return std::is_signed_v<T> ? NumberType::LongLong : NumberType::UnsignedLongLong;
}

// Specialised (by inheritance from ByValue) for objects that are used as plain
// members and boxed by copying: wrappers and collections.
struct ByValue {};

class Value {
 public:
  Value() noexcept { clear(detail::kNil); }
  Value(std::nullptr_t) noexcept : Value() {}
  template <class T>
  requires std::integral<T> || std::floating_point<T> Value(T v)
  noexcept {
    clear(detail::kNumber);
    c_.aux() = static_cast<unsigned char>(numberTypeOf<T>());
    if constexpr (std::floating_point<T>)
      c_.put<double>(v);
    else
      c_.put<std::int64_t>(static_cast<std::int64_t>(v));
  }
  Value(const Text& t) noexcept : c_(t.c_) { retain(); }
  Value(Text&& t) noexcept : c_(t.c_) { t.makeInline({}); }
  Value(const char* s) : Value(Text(s)) {}
  Value(std::string_view s) : Value(Text(s)) {}
  Value(const std::string& s) : Value(Text(s)) {}
  template <class T>
  requires std::derived_from<T, Shared> Value(Ref<T> r)
  noexcept {
    clear(r ? detail::kObject : detail::kNil);
    if (r) c_.put<Shared*>(static_cast<Shared*>(const_cast<std::remove_const_t<T>*>(r.leak())));
  }
  // A wrapper or collection used as a plain variable: boxes a copy that shares its store.
  template <class W>
  requires std::derived_from<W, Shared> && std::derived_from<W, ByValue> Value(const W& w)
      : Value(Ref<W>(new W(w))) {}

  Value(const Value& o) noexcept : c_(o.c_) { retain(); }
  Value(Value&& o) noexcept : c_(o.c_) { o.clear(detail::kNil); }
  ~Value() { release(); }
  Value& operator=(Value o) noexcept {
    std::swap(c_, o.c_);
    return *this;
  }

  static Value null() noexcept {
    Value v;
    v.c_.tag() = detail::kNull;
    return v;
  }
  // A number of a given type, the payload cut to it by the caller.
  static Value number(NumberType type, std::int64_t v) noexcept {
    Value r(v);
    r.c_.aux() = static_cast<unsigned char>(type);
    return r;
  }

  // The bare sixteen bytes with what they own, out and in, for readers that make values
  // by the thousand. A cell that was given out has to be taken in again, once.
  detail::Cell giveOut() noexcept {
    const detail::Cell c = c_;
    clear(detail::kNil);
    return c;
  }
  static Value takeIn(const detail::Cell& c) noexcept { return Value(c); }
  // A look at them, for tables that compare short texts as numbers.
  const detail::Cell& cell() const noexcept { return c_; }

  bool isNil() const noexcept { return c_.tag() == detail::kNil; }
  bool isNull() const noexcept { return c_.tag() == detail::kNull; }
  bool isNilOrNull() const noexcept { return c_.tag() <= detail::kNull; }
  bool isNumber() const noexcept { return c_.tag() == detail::kNumber; }
  bool isText() const noexcept {
    return c_.tag() == detail::kInlineText || c_.tag() == detail::kHeapText;
  }
  bool isObject() const noexcept { return c_.tag() == detail::kObject; }

  NumberType numberType() const noexcept { return static_cast<NumberType>(c_.aux()); }
  bool isFloating() const noexcept {
    return isNumber() && (numberType() == NumberType::Float || numberType() == NumberType::Double);
  }
  // The number in another type; 0 for what is no number. Floating values are cut
  // toward zero and held within the range of 64 bits.
  std::int64_t asInt64() const noexcept {
    return isNumber() && !isFloating() ? c_.get<std::int64_t>() : floatAsInt64();
  }
  double asDouble() const noexcept;
  bool asBool() const noexcept { return isFloating() ? asDouble() != 0 : asInt64() != 0; }

  // The text; empty for what is no text.
  Text asText() const noexcept { return isText() ? Text(c_) : Text(); }
  std::string_view textView() const noexcept {
    if (c_.tag() == detail::kInlineText) return {reinterpret_cast<const char*>(c_.b), c_.aux()};
    if (c_.tag() == detail::kHeapText) {
      auto* r = c_.get<detail::TextRep*>();
      return {r->data(), r->bytes};
    }
    return {};
  }

  Shared* object() const noexcept { return isObject() ? c_.get<Shared*>() : nullptr; }
  Ref<Shared> ref() const noexcept { return Ref<Shared>(object()); }
  // The object as a T, or null when it is none.
  template <class T>
  Ref<T> as() const noexcept {
    Shared* const held = object();
    if constexpr (std::is_final_v<T>)
      return Ref<T>(held && typeid(*held) == typeid(T) ? static_cast<T*>(held) : nullptr);
    else
      return Ref<T>(dynamic_cast<T*>(held));
  }

  // The class as messages print it ("NSNumber", "NSString", "NSNull"); empty for nil.
  std::string_view className() const;
  // The text form that logs and messages use; "null" for nil.
  Text description() const;
  // Equality as the collections see it: numbers by value whatever their type, texts
  // by their units, objects by isEqual.
  bool isEqual(const Value& o) const;
  bool operator==(const Value& o) const { return isEqual(o); }
  std::size_t hash() const;

 private:
  std::int64_t floatAsInt64() const noexcept;
  explicit Value(const detail::Cell& c) noexcept : c_(c) {}
  void clear(detail::Tag t) noexcept {
    std::memset(c_.b, 0, sizeof c_.b);
    c_.tag() = t;
  }
  void retain() const noexcept {
    if (c_.tag() == detail::kObject)
      c_.get<Shared*>()->retain();
    else if (c_.tag() == detail::kHeapText)
      c_.get<detail::TextRep*>()->refs.fetch_add(1, std::memory_order_relaxed);
  }
  void release() noexcept {
    if (c_.tag() < detail::kHeapText) return;
    if (c_.tag() == detail::kObject) {
      c_.get<Shared*>()->release();
    } else {
      auto* r = c_.get<detail::TextRep*>();
      if (r->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) detail::freeTextRep(r);
    }
  }

  detail::Cell c_;
};
static_assert(sizeof(Value) == 16 && sizeof(Text) == 16);

// The parameters of an event or a call, by position. Valid during the call only.
using Args = std::span<const Value>;

// The null object for nil, and nil for the null object.
inline Value nilToNull(Value v) { return v.isNil() ? Value::null() : v; }
inline Value nullToNil(Value v) { return v.isNull() ? Value() : v; }

}  // namespace kes
