#include "runtime/core/wrapper.h"

#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/kes.h"

namespace kes {

// Few objects carry anything beyond an event's name and a tag, and those two or three: a list
// is walked sooner than a table is made.
Value AttachedProperties::get(std::string_view key) const {
  if (key == "bi") return Value(bi.lock());
  if (key == "eventName") return bi.unset() ? Value() : Value(eventName);
  if (key == "tag") return tag;
  for (const auto& [k, v] : others_)
    if (k == key) return v;
  return {};
}

void AttachedProperties::set(std::string_view key, Value v) {
  if (key == "tag") {
    tag = std::move(v);
    return;
  }
  for (auto i = others_.begin(); i != others_.end(); ++i) {
    if (i->first != key) continue;
    if (v.isNil())
      others_.erase(i);
    else
      i->second = std::move(v);
    return;
  }
  if (!v.isNil()) others_.emplace_back(Text(key), std::move(v));
}

const Value& KesObjectWrapper::object() const {
  if (object_.isNil())
    throw KesException(formatText("Object was not initialized (%@)", {getClass()}));
  return object_;
}

void KesObjectWrapper::setObject(Value v) {
  if (!v.isNil() && !accepts(v))
    throw KesException("Invalid object type",
                       formatText("Expected: %@, object type: %@", {getClass(), v.className()}));
  object_ = std::move(v);
}

Value KesObjectWrapper::Tag() const {
  const Value& o = object();
  if (!o.isObject()) return {};
  const auto* map = peekMap(*o.object());
  return map ? map->tag : Value();
}

void KesObjectWrapper::setTag(Value v) {
  const Value& o = object();
  if (o.isObject()) getMap(*o.object()).tag = nullToNil(std::move(v));
}

Text KesObjectWrapper::description() const {
  return formatText("<%@: %@>", {className(), object_.description()});
}

bool KesObjectWrapper::isEqual(const Value& other) const {
  if (other.object() == this) return true;
  if (other.isNil()) return object_.isNil();
  if (auto w = other.as<KesObjectWrapper>()) {
    if (object_.isNil() || w->object_.isNil()) return object_.isNil() && w->object_.isNil();
    return object_.isEqual(w->object_);
  }
  return !object_.isNil() && object_.isEqual(other);
}

AttachedProperties& KesObjectWrapper::getMap(const Shared& object) {
  auto* map = static_cast<AttachedProperties*>(object.attachment());
  if (!map) {
    auto fresh = std::make_unique<AttachedProperties>();
    map = fresh.get();
    const_cast<Shared&>(object).attach(std::move(fresh));
  }
  return *map;
}

const AttachedProperties* KesObjectWrapper::peekMap(const Shared& object) {
  return static_cast<const AttachedProperties*>(object.attachment());
}

void KesObjectWrapper::setBIAndEventName(const Shared& object, const Ref<Kes>& bi,
                                         const Text& eventName) {
  auto& map = getMap(object);
  map.bi = bi;
  map.eventName = eventName.ToLowerCase();
}

Ref<Kes> KesObjectWrapper::getBI(const Shared& object) {
  const auto* map = peekMap(object);
  return map ? map->bi.lock() : nullptr;
}

Text KesObjectWrapper::getEventName(const Shared& object) {
  const auto* map = peekMap(object);
  return map ? map->eventName : Text();
}

Value KesObjectWrapper::raiseEvent(Shared& object, std::string_view suffix, Args params) {
  const Ref<Shared> keep(&object);
  const auto bi = getBI(object);
  if (!bi) return {};
  return bi->raiseEvent(keep, getEventName(object) + Text(suffix), params);
}

void KesObjectWrapper::raiseUIEvent(Shared& object, std::string_view suffix,
                                    std::vector<Value> params) {
  raiseEventFromDifferentThreadWithExplicitSender(object, Ref<Shared>(&object), suffix,
                                                  std::move(params));
}

void KesObjectWrapper::raiseEventFromDifferentThread(Shared& object, std::string_view suffix,
                                                     std::vector<Value> params) {
  raiseUIEvent(object, suffix, std::move(params));
}

void KesObjectWrapper::raiseEventFromDifferentThreadWithExplicitSender(Shared& object,
                                                                       Ref<Shared> sender,
                                                                       std::string_view suffix,
                                                                       std::vector<Value> params) {
  if (const auto bi = getBI(object))
    bi->raiseUIEvent(std::move(sender), getEventName(object) + Text(suffix), std::move(params));
}

bool KesObjectWrapper::hasMethod(const Shared& object, std::string_view suffix) {
  const auto bi = getBI(object);
  return bi && bi->hasMethod(getEventName(object) + Text(suffix));
}

namespace detail {
Value unwrapped(const Value& v) {
  if (auto w = v.as<KesObjectWrapper>()) return w->objectOrNull();
  return v;
}
}  // namespace detail

}  // namespace kes
