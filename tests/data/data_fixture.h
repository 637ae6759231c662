// What the tests of the data rooms stand on: a phone with the classes of the runtime and
// dates begun anew, a module that records its events, bytes as hexadecimal text, other
// programs' output.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "runtime/core/array.h"
#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/data/dates/date_texts.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/data/register_data.h"
#include "tests/support/failures.h"
#include "tests/support/test_platform.h"
#include "tests/support/texts.h"

using kes::KesArray;
using kes::KesException;
using kes::KesList;
using kes::KesMap;
using kes::Ref;
using kes::Text;
using kes::Value;
using platform::makeShared;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::TestPlatform;
using testing_support::textsOf;
using testing_support::thrownBy;
using Bytes = std::vector<std::uint8_t>;

class DataTest : public testing::Test {
 protected:
  DataTest() {
    kes::registerData();
    kes::lendDateTexts();
    kes::KesDateTime::restart();
    kes::kes_dateutils::instance()._process_globals();
  }

  TestPlatform phone;
};

// A module whose events have the prefix "x"; each is noted as "name(parameters)".
class Recorder final : public kes::KesClass {
 public:
  static void describe(kes::ClassBuilder<Recorder>& c);
  void _initialize() { initializeClassModule(); }

  void objectToBytes(int success, Value result) { note("objecttobytes", success, result); }
  void bytesToObject(int success, Value result) { note("bytestoobject", success, result); }
  void nonQueryComplete(int success) { note("nonquerycomplete", success, {}); }
  void queryComplete(int success, Value rows) { note("querycomplete", success, rows); }
  void newData(Ref<KesArray> bytes);
  void error();
  void terminated();

  std::vector<std::string> events;
  std::vector<Value> results;
  std::vector<Value> senders;

 private:
  void note(std::string_view name, int success, const Value& result);
};

class RecordedTest : public DataTest {
 protected:
  RecordedTest();
  // Runs the main queue until the recorder has that many events.
  bool waitForEvents(std::size_t count);

  Ref<Recorder> recorder;
};

Bytes fromHex(std::string_view hex);  // blanks are for the reader
std::string toHex(const Bytes& bytes);
inline std::string toHex(const Ref<KesArray>& bytes) { return toHex(bytes->bytesData()); }
Bytes bytesOf(std::string_view text);
Ref<KesArray> arrayOf(std::string_view text);
std::string textOf(const Bytes& bytes);

// Runs a shell command, expects it to succeed, and gives its output.
std::string outputOf(const std::string& command);
