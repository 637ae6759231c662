// A store whose process is killed, whose disk is full, or whose folder may not be
// written: what was reported stored is there, and the rest is one line in the log.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "data_fixture.h"
#include "runtime/data/store/key_value_store.h"
#include "tests/support/program.h"

namespace fs = std::filesystem;

namespace {

// A run of the store_writer program.
struct Writer : Program {
  Writer(const char* mode, const std::string& folder)
      : Program({STORE_WRITER, mode, folder}, {1}) {}
};

int kills() {
  const char* asked = std::getenv("STORE_KILLS");
  return asked ? std::atoi(asked) : 12;
}

class StoreFaults : public RecordedTest {
 protected:
  StoreFaults() {
    fs::create_directories(folder);
    // The writer may have to reach it as somebody else.
    fs::permissions(phone.root(), fs::perms(0755));
  }
  ~StoreFaults() override { fs::permissions(folder, fs::perms(0755)); }
  Ref<kes::kes_keyvaluestore> opened() {
    const auto store = kes::make<kes::kes_keyvaluestore>();
    store->_initialize(recorder->bi(), folder, "kvs.db");
    return store;
  }
  std::string integrity() {
    return outputOf("sqlite3 " + folder + "/kvs.db 'PRAGMA integrity_check'");
  }

  const std::string folder = (phone.root() / "store").string();
};

}  // namespace

TEST_F(StoreFaults, WhatWasReportedStoredSurvivesAKill) {
  std::mt19937 random(20171115);
  int reported = 0;
  for (int run = 0; run < kills(); ++run) {
    Writer writer("puts", folder);
    // Some puts, and then any moment within the next few.
    for (auto puts = random() % 8 + 1; puts > 0; --puts) {
      const auto line = writer.line();
      ASSERT_TRUE(line) << "the writer ended by itself";
      ASSERT_EQ(std::sscanf(line->c_str(), "stored %d", &reported), 1) << *line;
    }
    const timespec moment{0, static_cast<long>(random() % 4'000'000)};
    ::nanosleep(&moment, nullptr);
    writer.finish(SIGKILL);
    // What it still had time to say before it died was said of something stored.
    while (const auto line = writer.line()) std::sscanf(line->c_str(), "stored %d", &reported);

    ASSERT_EQ(integrity(), "ok\n") << "run " << run;
    const auto store = opened();
    const int n = std::atoi(store->_getsimple("n").str().c_str());
    const int o = static_cast<int>(store->_getobject("o").as<KesMap>()->Get("n").asInt64());
    ASSERT_GE(o, reported) << "run " << run;
    ASSERT_GE(n, o) << "run " << run;
    ASSERT_LE(n, reported + 1) << "run " << run;
  }
}

// Symptom: a program that ended while a conversion or a batch was under way was aborted.
TEST_F(StoreFaults, AProgramMayEndWhileWorkIsUnderWay) {
  for (int run = 0; run < 10; ++run) {
    Writer writer("leaves", folder);
    EXPECT_THAT(writer.allLines(), ElementsAre("leaving", HasSubstr("instance released")))
        << "run " << run;
    EXPECT_EQ(writer.finish(), 0) << "run " << run;
  }
}

TEST_F(StoreFaults, AFullDiskCostsOnlyTheNewValue) {
  opened()->_putsimple("k", "former");
  opened()->_putobject("o", "former object");
  Writer writer("full", folder);
  EXPECT_THAT(writer.allLines(),
              ElementsAre("Error saving object: TransactionSuccessful error: disk I/O error",
                          "k is former", HasSubstr("key_value_temp.dat: File too large"),
                          "o is former object", HasSubstr("instance released")));
  EXPECT_EQ(writer.finish(), 0);
  EXPECT_EQ(integrity(), "ok\n");
  const auto store = opened();
  EXPECT_EQ(store->_getsimple("k"), "former");
  EXPECT_EQ(store->_getobject("o"), Value("former object"));
  store->_putsimple("k", "room again");
  EXPECT_EQ(store->_getsimple("k"), "room again");
}

TEST_F(StoreFaults, AFolderThatMayNotBeWritten) {
  opened()->_putsimple("k", "former");
  const auto file = fs::path(folder) / "kvs.db";

  const auto refused =
      ElementsAre("Error saving object: ExecNonQuery error: attempt to write a readonly database",
                  "k is former", HasSubstr("instance released"));
  // The file may be written, but no journal made beside it.
  fs::permissions(folder, fs::perms(0555));
  fs::permissions(file, fs::perms(0666));
  EXPECT_THAT(Writer("readonly", folder).allLines(), refused);
  fs::permissions(file, fs::perms(0444));
  EXPECT_THAT(Writer("readonly", folder).allLines(), refused);

  fs::permissions(folder, fs::perms(0755));
  fs::remove(file);
  fs::permissions(folder, fs::perms(0555));
  EXPECT_THAT(Writer("absent", folder).allLines(),
              testing::Contains("opening failed: Initialize error: unable to open database file"));
}
