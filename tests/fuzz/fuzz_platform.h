// The platform that targets run in, with the classes that bytes can name registered.
#pragma once

#include "runtime/data/register_data.h"
#include "runtime/net/register_net.h"
#include "tests/support/test_platform.h"

namespace fuzz {

struct FuzzPlatform : testing_support::TestPlatform {
  FuzzPlatform() {
    only_ = this;
    kes::registerData();
    kes::registerNet();
  }
  static FuzzPlatform& current() { return *only_; }

 private:
  static inline FuzzPlatform* only_ = nullptr;
};

}  // namespace fuzz
