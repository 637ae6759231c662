// The text form of a value as a view or bar takes it. Main thread.
#pragma once

#include <string>

#include "runtime/core/kes.h"

namespace kes {

inline std::string textForm(const Value& v) {
  return v.isText() ? std::string(v.textView()) : Kes::ObjectToString(v).str();
}

}  // namespace kes
