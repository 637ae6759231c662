// A phone without a screen for tests of the runtime's core, and the faults of its tasks.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "runtime/core/language/module.h"
#include "tests/support/failures.h"
#include "tests/support/test_platform.h"
#include "tests/support/texts.h"

using testing::StartsWith;
using testing_support::textsOf;
using testing_support::thrownBy;
using Trace = std::vector<std::string>;

class ComponentTest : public testing::Test {
 protected:
  ComponentTest() {
    phone.platform().mainQueue().setFaultHandler(
        [this](std::exception_ptr fault) { faults.push_back(testing_support::textOf(fault)); });
  }

  testing_support::TestPlatform phone;
  Trace faults;
};
