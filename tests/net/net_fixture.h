// A phone without a screen that has the network: a platform of its own for each test, the
// classes of the network registered, and a fresh job service.
#pragma once

#include <gmock/gmock.h>

#include "runtime/net/httpjob.h"
#include "runtime/net/register_net.h"
#include "tests/support/failures.h"
#include "tests/support/test_platform.h"

class NetTest : public testing::Test {
 protected:
  NetTest() {
    kes::registerNet();
    phone.platform().mainQueue().setFaultHandler(
        [this](std::exception_ptr fault) { faults.push_back(testing_support::textOf(fault)); });
    service().initializeModule();
  }
  ~NetTest() override {
    service().initializeModule();  // ends the engine while there is a platform
    EXPECT_TRUE(std::filesystem::is_empty(phone.folders().temporary)) << "a body was left behind";
  }
  static kes::kes_httputils2service& service() { return kes::kes_httputils2service::instance(); }

  testing_support::TestPlatform phone;
  std::vector<std::string> faults;  // exceptions that reached the main queue
};

inline kes::Ref<kes::KesArray> bytesOf(std::string_view text) {
  return kes::KesArray::initBytesWithData({text.begin(), text.end()});
}

inline kes::Ref<kes::KesArray> texts(std::vector<kes::Value> items) {
  return kes::KesArray::initObjectsWithData(std::move(items));
}
