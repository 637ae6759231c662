// What a call that should fail fails with: one helper for all tests of the runtime.
#pragma once

#include <exception>
#include <string>

#include "runtime/core/exception.h"

namespace testing_support {

// The reason of the KesException that the call throws, as "name|reason" where it has a name;
// empty when it throws none.
template <class Call>
std::string thrownBy(Call&& call) {
  try {
    call();
  } catch (const kes::KesException& e) {
    return e.name().empty() ? e.reason().str() : e.name().str() + "|" + e.reason().str();
  }
  return "";
}

// What a fault that reached the main queue says.
inline std::string textOf(const std::exception_ptr& fault) {
  try {
    std::rethrow_exception(fault);
  } catch (const std::exception& e) {
    return e.what();
  }
}

}  // namespace testing_support
