// A phone without a screen that has the network: a platform of its own for each test, the
// classes of the network registered, and a fresh job service.
#pragma once

#include <gmock/gmock.h>

#include "runtime/data/files/file.h"
#include "runtime/net/httpjob.h"
#include "runtime/net/register_net.h"
#include "tests/support/failures.h"
#include "tests/support/raw_server.h"
#include "tests/support/test_platform.h"

using namespace kes;
using testing::HasSubstr;
using testing_support::answer;
using testing_support::answering;
using testing_support::RawServer;
using testing_support::TestPlatform;
using Trace = std::vector<std::string>;

class NetTest : public testing::Test {
 protected:
  NetTest() {
    registerNet();
    phone.platform().mainQueue().setFaultHandler(
        [this](std::exception_ptr fault) { faults.push_back(testing_support::textOf(fault)); });
    service().initializeModule();
  }
  ~NetTest() override {
    service().initializeModule();  // ends the engine while there is a platform
    EXPECT_TRUE(std::filesystem::is_empty(phone.folders().temporary)) << "a body was left behind";
  }
  static kes_httputils2service& service() { return kes_httputils2service::instance(); }

  TestPlatform phone;
  Trace faults;  // exceptions that reached the main queue
};

inline Ref<KesArray> bytesOf(std::string_view text) {
  return KesArray::initBytesWithData({text.begin(), text.end()});
}

inline Ref<KesArray> texts(std::vector<Value> items) {
  return KesArray::initObjectsWithData(std::move(items));
}
