#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/kes.h"
#include "runtime/core/wrapper.h"

namespace kes {

namespace {

// What Initialize holds: a class, on which its class-level methods are called.
class ClassObject final : public Object {
 public:
  explicit ClassObject(const ClassInfo& info) : info_(info), instance_(info.make()) {}
  std::string_view className() const override { return info_.name(); }
  Shared* instance() const { return instance_.get(); }

 private:
  const ClassInfo& info_;
  Ref<Shared> instance_;
};

Shared* receiver(const Value& held) {
  if (auto* c = dynamic_cast<ClassObject*>(held.object())) return c->instance();
  return held.object();
}

const ClassInfo* infoOf(const Shared& s) { return ClassRegistry::instance().of(s); }

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
  std::vector<Value> params;
  if (const auto array = args.as<KesArray>()) params = array->objectsData();
  return fromBoxed(Kes::runDynamicMethod(receiver(object()), methodName, true, params));
}

KesNativeObject KesNativeObject::GetField(std::string_view name) const {
  Shared* target = receiver(object());
  const auto* info = target ? infoOf(*target) : nullptr;
  const auto* field = info ? info->field(name) : nullptr;
  if (!field)
    throw KesException("method not found", formatText("Method not found: %@, target: %@",
                                                      {name, object().description()}));
  return fromBoxed(field->get(*target));
}

void KesNativeObject::SetField(std::string_view name, const Value& v) {
  Shared* target = receiver(object());
  const auto* info = target ? infoOf(*target) : nullptr;
  const auto* field = info ? info->field(name) : nullptr;
  if (!field)
    throw KesException("method not found", formatText("Method not found: %@, target: %@",
                                                      {name, object().description()}));
  field->set(*target, detail::unwrapped(v));
}

}  // namespace kes
