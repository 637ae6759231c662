#include "runtime/core/object.h"

#include "runtime/core/class_table.h"

namespace kes {

const ClassInfo* Object::classInfo() const {
  if (!classLooked_) {
    class_ = ClassRegistry::instance().of(*this);
    classLooked_ = true;
  }
  return class_;
}

std::string_view Object::className() const {
  const auto* info = classInfo();
  return info ? info->name() : "Object";
}

Text Object::description() const { return "<" + std::string(className()) + ">"; }

}  // namespace kes
