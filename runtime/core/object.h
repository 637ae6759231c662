// Object: base of everything that the runtime itself makes and the application sees.
//
// Adds to Shared what values need: a text form, equality, a hash, and the class table
// entry that answers by name. Held by Ref, unless a class is used as a plain member. Main
// thread, unless a class says otherwise. Nothing here throws.
#pragma once

#include "runtime/core/exception.h"
#include "runtime/core/value.h"

namespace kes {

class ClassInfo;

class Object : public Shared {
 public:
  virtual Text description() const;
  virtual bool isEqual(const Value& other) const { return other.object() == this; }
  virtual std::size_t hash() const { return std::hash<const void*>()(this); }

  // The entry of this object's class in the registry; null when it was never described.
  const ClassInfo* classInfo() const;
  std::string_view className() const override;

 private:
  mutable const ClassInfo* class_ = nullptr;
  mutable bool classLooked_ = false;
};

}  // namespace kes
