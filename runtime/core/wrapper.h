// KesObjectWrapper: base of every wrapper that the application holds around a platform
// or runtime object, and the attached properties that any object can carry.
//
// A wrapper is a plain member or local; copying it gives a second view of the same
// object. It owns its object by a reference and nothing more. Wrappers are equal when
// their objects are. Main thread.
#pragma once

#include <vector>

#include "runtime/core/object.h"

namespace kes {

class Kes;
class KesCommon;

// The dictionary attached to an object (getMap), which lives as long as the object does.
// The properties in use on nearly every view are fields, which get() knows by their keys;
// whatever else is attached ("delegate", "launchoptions") goes to `others`.
class AttachedProperties final : public platform::Attachment {
 public:
  WeakRef<Kes> bi;
  Text eventName;  // lower case
  Value tag;

  Value get(std::string_view key) const;
  void set(std::string_view key, Value v);  // nil removes; not for "bi" and "eventName"

 private:
  std::vector<std::pair<Text, Value>> others_;
};

class KesObjectWrapper : public Object, public ByValue {
 public:
  KesObjectWrapper() = default;

  // The class that `object` has to be, as messages print it.
  virtual std::string_view getClass() const { return "NSObject"; }
  // Whether a value may be wrapped; the base accepts anything.
  virtual bool accepts(const Value&) const { return true; }

  // The wrapped object. Throws "Object was not initialized (%@)" when there is none.
  const Value& object() const;
  const Value& objectOrNull() const { return object_; }
  // Nil clears. Throws "Invalid object type" for an object of another class, which the null
  // object is to every typed wrapper.
  void setObject(Value v);

  bool IsInitialized() const { return !object_.isNil(); }
  Value Tag() const;
  void setTag(Value v);

  Text description() const override;
  bool isEqual(const Value& other) const override;
  std::size_t hash() const override { return object_.hash(); }

  // Attached properties of any object; the table is made on first access.
  static AttachedProperties& getMap(const Shared& object);
  static const AttachedProperties* peekMap(const Shared& object);
  static void setBIAndEventName(const Shared& object, const Ref<Kes>& bi, const Text& eventName);
  static Ref<Kes> getBI(const Shared& object);
  static Text getEventName(const Shared& object);
  // Raise prefix + suffix on the object's Kes, the object being the sender. On an
  // object whose Kes has gone they do nothing.
  static Value raiseEvent(Shared& object, std::string_view suffix, Args params);
  static void raiseUIEvent(Shared& object, std::string_view suffix, std::vector<Value> params);
  static void raiseEventFromDifferentThread(Shared& object, std::string_view suffix,
                                            std::vector<Value> params);
  static void raiseEventFromDifferentThreadWithExplicitSender(Shared& object, Ref<Shared> sender,
                                                              std::string_view suffix,
                                                              std::vector<Value> params);
  static bool hasMethod(const Shared& object, std::string_view suffix);

  template <class W>
  static W createWrapper(W wrapper, Value object) {
    wrapper.setObject(std::move(object));
    return wrapper;
  }

 protected:
  // Unchecked, for classes that make their own object.
  void wrap(Value v) { object_ = std::move(v); }

 private:
  Value object_;
};

namespace detail {
// The inner value when v is a wrapper, else v.
Value unwrapped(const Value& v);
}  // namespace detail

// A wrapper over one kind of platform object. W is the wrapper itself, P the platform
// class whose name messages print.
template <class W, class P, class Base = KesObjectWrapper>
class TypedWrapper : public Base {
 public:
  std::string_view getClass() const override { return W::kPlatformClass; }
  bool accepts(const Value& v) const override { return v.as<P>() != nullptr; }
  // The platform object; throws like object().
  Ref<P> native() const { return Ref<P>(dynamic_cast<P*>(this->object().object())); }
  Ref<P> nativeOrNull() const { return this->objectOrNull().template as<P>(); }

  static W fromBoxed(const Value& v) {
    W w;
    w.setObject(nullToNil(detail::unwrapped(v)));
    return w;
  }
};

// Holds anything: the application's door to calls by platform name. What the held object
// does not have throws "Method not found: %@, target: %@"; results come wrapped alike.
class KesNativeObject final : public KesObjectWrapper {
 public:
  std::string_view className() const override { return "KesNativeObject"; }
  static KesNativeObject fromBoxed(const Value& v);

  // Holds the class of that name, or nothing when there is none: it answers to "new" and to
  // its class-level methods.
  KesNativeObject& Initialize(std::string_view className);
  // Calls by full platform name; the parameters come from a KesArray, or none for nil.
  KesNativeObject RunMethod(std::string_view methodName, const Value& args);
  KesNativeObject RunMethodWithBlocks(std::string_view methodName, const Value& args) {
    return RunMethod(methodName, args);
  }
  // A property by its stored name, or in any case without the leading underscore.
  KesNativeObject GetField(std::string_view name) const;
  void SetField(std::string_view name, const Value& v);
};

}  // namespace kes
