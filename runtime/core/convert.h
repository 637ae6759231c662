// Between C++ types and Values, for calls by name, fields and the results of waits.
//
// fromValue<T>() converts as the declared type asks: the null object becomes nil for
// anything held as an object; numbers are cut to the type's width; text given for a number
// is read as one. It throws KesException when the value cannot become a T. toValue() boxes
// a value with the type it was declared with.
//
// Calls differ in the types by which the platform passes truth: a signed char is a Boolean
// (parameter<T>, boxed). They give unsigned results as signed numbers of the same width.
//
// Any thread, as far as the objects allow it.
#pragma once

#include <cstring>
#include <optional>
#include <type_traits>

#include "runtime/core/exception.h"
#include "runtime/core/value.h"

namespace kes {

namespace detail {
// The name of a C++ class as people write it, without its namespaces.
std::string typeName(const std::type_info& type);
[[noreturn]] void failNumber(const Value& v);
[[noreturn]] void failObject(const char* expected, const Value& v);
[[noreturn]] void failType(const char* typeCode);
double numberOf(const Value& v);
std::int64_t integerOf(const Value& v);
bool bytesOf(const Value& v, void* out, std::size_t size);
Value bytesValue(const void* bytes, std::size_t size);

template <class T>
struct IsRef : std::false_type {};
template <class T>
struct IsRef<Ref<T>> : std::true_type {
  using Object = T;
};
template <class T>
concept BoxedByValue = std::derived_from<T, Shared> && std::derived_from<T, ByValue>;
// A coroutine's return object: it has its own way of becoming a value.
template <class T>
concept Awaited = requires(T t) {
  t.intoValue();
};
}  // namespace detail

template <class T>
T fromValue(const Value& v) {
  if constexpr (std::same_as<T, Value>) {
    return v.isNull() ? Value() : v;
  } else if constexpr (std::same_as<T, Text>) {
    return v.isNilOrNull() ? Text() : v.isText() ? v.asText() : v.description();
  } else if constexpr (std::same_as<T, bool>) {
    return v.isNumber() ? v.asBool() : detail::numberOf(v) != 0;
  } else if constexpr (std::floating_point<T>) {
    return static_cast<T>(v.isNumber() ? v.asDouble() : detail::numberOf(v));
  } else if constexpr (std::integral<T>) {
    return static_cast<T>(v.isNumber() ? v.asInt64() : detail::integerOf(v));
  } else if constexpr (detail::IsRef<T>::value) {
    using O = typename detail::IsRef<T>::Object;
    if (v.isNilOrNull()) return nullptr;
    if constexpr (std::same_as<O, Shared>) {
      if (v.isObject()) return v.ref();
    } else if (auto r = v.as<O>()) {
      return r;
    }
    detail::failObject(typeid(O).name(), v);
  } else if constexpr (detail::BoxedByValue<T>) {
    return T::fromBoxed(v);
  } else if constexpr (std::is_trivially_copyable_v<T>) {
    T out;
    if (!detail::bytesOf(v, &out, sizeof out)) detail::failType(typeid(T).name());
    return out;
  } else {
    static_assert(!sizeof(T), "a type that no value converts to");
  }
}

template <class T>
Value toValue(T&& r) {
  using R = std::remove_cvref_t<T>;
  if constexpr (detail::Awaited<R>)
    return r.intoValue();
  else if constexpr (std::is_constructible_v<Value, T&&>)
    return Value(std::forward<T>(r));
  else if constexpr (std::is_trivially_copyable_v<R>)
    return detail::bytesValue(&r, sizeof r);
  else
    static_assert(!sizeof(R), "a type that does not become a value");
}

namespace detail {

inline const Value& argument(Args args, std::size_t i) {
  static const Value nil;
  return i < args.size() ? args[i] : nil;
}

template <class T>
concept PlatformBool = std::same_as<T, signed char> || std::same_as<T, char>;

// A parameter and a result of a call by name.
template <class T>
T parameter(const Value& v) {
  if constexpr (PlatformBool<T>)
    return static_cast<T>(fromValue<bool>(v));
  else
    return fromValue<T>(v);
}
template <class T>
Value boxed(T&& result) {
  using R = std::remove_cvref_t<T>;
  if constexpr (PlatformBool<R>)
    return result != 0;
  else if constexpr (std::unsigned_integral<R> && !std::same_as<R, bool> && sizeof(R) >= 4)
    return static_cast<std::make_signed_t<R>>(result);
  else
    return toValue(std::forward<T>(result));
}

template <class Class, class Result, class... Params>
struct MethodShape {
  static constexpr int arity = sizeof...(Params);

  template <auto Method, class T, std::size_t... I>
  static Value invoke(Shared& target, Args args, std::index_sequence<I...>) {
    auto& self = static_cast<T&>(target);
    if constexpr (std::is_void_v<Result>) {
      (self.*Method)(parameter<std::remove_cvref_t<Params>>(argument(args, I))...);
      return {};
    } else {
      return boxed((self.*Method)(parameter<std::remove_cvref_t<Params>>(argument(args, I))...));
    }
  }
};

template <class M>
struct ShapeOf;
template <class C, class R, class... P>
struct ShapeOf<R (C::*)(P...)> : MethodShape<C, R, P...> {};
template <class C, class R, class... P>
struct ShapeOf<R (C::*)(P...) const> : MethodShape<C, R, P...> {};

template <auto Method>
struct MethodCall {
  using Shape = ShapeOf<decltype(Method)>;
  static constexpr int arity = Shape::arity;
  template <class T>
  static Value invoke(Shared& target, Args args) {
    return Shape::template invoke<Method, T>(target, args,
                                             std::make_index_sequence<Shape::arity>());
  }
};

template <class M>
struct MemberType;
template <class C, class F>
struct MemberType<F C::*> {
  using type = F;
};

template <auto Member>
struct FieldAccess {
  using F = typename MemberType<decltype(Member)>::type;
  static constexpr char kindOf() {
    if constexpr (std::is_arithmetic_v<F>)
      return static_cast<char>(numberTypeOf<F>());
    else if constexpr (std::is_constructible_v<Value, const F&>)
      return '@';
    else
      return '{';  // a structure, boxed as its bytes
  }
  static constexpr char kind = kindOf();

  template <class T>
  static Value get(const Shared& target) {
    return toValue(static_cast<const T&>(target).*Member);
  }
  template <class T>
  static void set(Shared& target, const Value& v) {
    static_cast<T&>(target).*Member = fromValue<F>(v);
  }
};

}  // namespace detail

}  // namespace kes
