#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/kes.h"
#include "runtime/core/wrapper.h"

namespace kes {

namespace {

// What Initialize holds: a class, which answers to "new" and to its class-level methods.
// The tables know methods of objects only, so an object of the class stands for it.
class ClassObject final : public Object {
 public:
  explicit ClassObject(const ClassInfo& info) : info_(info) {}
  std::string_view className() const override { return info_.name(); }
  Text description() const override { return info_.name(); }
  Ref<Shared> make() const { return info_.make(); }
  const Ref<Shared>& standIn() {
    if (!standIn_) standIn_ = make();
    return standIn_;
  }

 private:
  const ClassInfo& info_;
  Ref<Shared> standIn_;
};

[[noreturn]] void failMissing(std::string_view name, const Value& target) {
  throw KesException("method not found",
                     formatText("Method not found: %@, target: %@", {name, target.description()}));
}

// Texts and numbers have no tables: whatever is asked of them is missing.
Ref<Shared> receiver(const Value& held, std::string_view name) {
  auto target = held.ref();
  if (const auto c = held.as<ClassObject>()) target = c->standIn();
  if (!target) failMissing(name, held);
  return target;
}

const FieldInfo& fieldOf(const Shared& target, std::string_view name, const Value& held) {
  const auto* info = ClassRegistry::instance().of(target);
  const auto* field = info ? info->property(name) : nullptr;
  if (!field) failMissing(name, held);
  return *field;
}

}  // namespace

KesNativeObject KesNativeObject::fromBoxed(const Value& v) {
  KesNativeObject n;
  n.setObject(nullToNil(detail::unwrapped(v)));
  return n;
}

KesNativeObject& KesNativeObject::Initialize(std::string_view className) {
  const auto* info = ClassRegistry::instance().find(className);
  setObject(info ? Value(platform::makeShared<ClassObject>(*info)) : Value());
  return *this;
}

KesNativeObject KesNativeObject::RunMethod(std::string_view methodName, const Value& args) {
  const Value held = object();
  if (const auto c = held.as<ClassObject>(); c && methodName == "new") return fromBoxed(c->make());
  std::vector<Value> params;
  if (const auto array = args.as<KesArray>()) params = array->objectsData();
  const auto target = receiver(held, methodName);
  return fromBoxed(Kes::runDynamicMethod(target.get(), methodName, true, params));
}

KesNativeObject KesNativeObject::GetField(std::string_view name) const {
  const auto target = receiver(object(), name);
  return fromBoxed(fieldOf(*target, name, object()).get(*target));
}

void KesNativeObject::SetField(std::string_view name, const Value& v) {
  const auto target = receiver(object(), name);
  fieldOf(*target, name, object()).set(*target, detail::unwrapped(v));
}

}  // namespace kes
