// What the tests of files, dates and JSON stand on: a platform of their own, the classes
// of the runtime, dates begun anew.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "runtime/core/array.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/data/dates/date_texts.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/dates/dateutils.h"
#include "runtime/data/register_data.h"
#include "tests/support/failures.h"
#include "tests/support/test_platform.h"

class DataTest : public testing::Test {
 protected:
  DataTest() {
    kes::registerData();
    kes::lendDateTexts();
    kes::KesDateTime::restart();
    kes::kes_dateutils::instance()._process_globals();
  }

  testing_support::TestPlatform platform_;
};

using kes::KesArray;
using kes::KesList;
using kes::KesMap;
using kes::Text;
using kes::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::thrownBy;
