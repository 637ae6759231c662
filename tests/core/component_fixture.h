// A phone without a screen for tests of the runtime's core: a virtual clock, a main
// queue and the log's lines.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "runtime/core/language/module.h"
#include "tests/support/failures.h"
#include "tests/support/texts.h"

class ComponentTest : public testing::Test {
 protected:
  ComponentTest() {
    platform::setLogSink([this](std::string_view line) { log.emplace_back(line); });
    platform.mainQueue().setFaultHandler(
        [this](std::exception_ptr fault) { faults.push_back(testing_support::textOf(fault)); });
  }
  ~ComponentTest() override {
    platform.mainQueue().close();
    platform::setLogSink({});
  }
  void drain() { platform.mainQueue().drain(); }
  void pass(std::int64_t milliseconds) {
    clock.advance(milliseconds);
    drain();
  }

  std::vector<std::string> log;
  std::vector<std::string> faults;
  platform::VirtualClock clock;
  platform::Platform platform{clock, {}};
  platform::PlatformScope scope{platform};
};

using testing::StartsWith;
using testing_support::textsOf;
using testing_support::thrownBy;
using Trace = std::vector<std::string>;
