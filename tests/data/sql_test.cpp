#include "runtime/data/store/sql.h"

#include <thread>

#include "data_fixture.h"
#include "runtime/data/files/file.h"

using kes::KesResultSet;
using kes::KesSQL;
using namespace std::chrono_literals;

namespace {

class Sql : public RecordedTest {
 protected:
  Sql() {
    sql->Initialize(phone.folders().documents, "test.db", true);
    sql->ExecNonQuery("CREATE TABLE t(a, b)");
  }
  Value single(std::string_view query) { return sql->ExecQuerySingleResult(query); }
  void insert(std::vector<Value> values) {
    sql->ExecNonQuery2("INSERT INTO t VALUES(?, ?)", KesList::of(std::move(values)));
  }
  // Calls on a thread of its own and gives what it throws.
  template <class Call>
  static std::string onAnotherThread(Call call) {
    std::string thrown;
    std::thread([&] { thrown = thrownBy(call); }).join();
    return thrown;
  }

  Ref<KesSQL> sql = makeShared<KesSQL>();
};

constexpr auto kLockText = "Error acquiring lock. Make sure that all transactions are closed.";

}  // namespace

TEST_F(Sql, BindsEachKindOfValue) {
  const struct {
    const char* what;
    Value value;
    const char *type, *hex;
  } cases[] = {
      {"nil", {}, "null", ""},
      {"the null object", Value::null(), "null", ""},
      {"true", true, "integer", "31"},
      {"a number", 42, "integer", "3432"},
      {"a large one", std::int64_t{1} << 40, "integer", "31303939353131363237373736"},
      {"a fraction", 0.5, "real", "302E35"},
      {"beyond 63 bits", Value::number(kes::NumberType::UnsignedLongLong, INT64_MIN), "real",
       "392E3232333337323033363835343738652B3138"},
      {"text", "è", "text", "C3A8"},
      {"text with a zero", std::string_view("a\0b", 3), "text", "610062"},
      {"half of a pair", Text("\xF0\x9F\x98\x80").SubString2(0, 1), "text", "EFBFBD"},
      {"bytes", arrayOf("ab"), "blob", "6162"},
      {"no bytes", arrayOf(""), "blob", ""},
      {"anything else", KesList::of({1, 2}), "text", "3C4B65734C6973743A205B312C20325D3E"},
  };
  for (const auto& c : cases) {
    sql->ExecNonQuery("DELETE FROM t");
    insert({c.value, "b"});
    EXPECT_EQ(single("SELECT typeof(a) FROM t").asText(), c.type) << c.what;
    EXPECT_EQ(single("SELECT hex(a) FROM t").asText(), c.hex) << c.what;
  }
  EXPECT_EQ(thrownBy([&] {
              insert({KesArray::initObjectsWithData({1}), "b"});
            }),
            "ExecNonQuery error: an array of objects cannot be stored");
}

TEST_F(Sql, ReadsRowsByNameAndByIndex) {
  insert({1, "uno"});
  insert({2.5, arrayOf("xy")});
  insert({std::int64_t{5000000000}, {}});
  auto rows = sql->ExecQuery("SELECT a AS Primo, b FROM t ORDER BY a");
  EXPECT_EQ(rows.ColumnCount(), 2);
  EXPECT_EQ(rows.GetColumnName(0), Value("Primo"));
  EXPECT_TRUE(rows.GetColumnName(2).isNil());
  ASSERT_TRUE(rows.NextRow());
  EXPECT_EQ(rows.GetInt("primo"), 1) << "whatever the case";
  EXPECT_EQ(rows.GetString2(0), Value("1"));
  EXPECT_EQ(rows.GetString("B"), Value("uno"));
  EXPECT_EQ(toHex(rows.GetBlob("b")), toHex(bytesOf("uno")));
  ASSERT_TRUE(rows.NextRow());
  EXPECT_EQ(rows.GetDouble("Primo"), 2.5);
  EXPECT_EQ(rows.GetInt2(0), 2);
  EXPECT_EQ(textOf(rows.GetBlob2(1)->bytesData()), "xy");
  ASSERT_TRUE(rows.NextRow());
  EXPECT_EQ(rows.GetLong2(0), 5000000000);
  EXPECT_EQ(rows.GetDouble2(0), 5e9);
  EXPECT_TRUE(rows.GetString2(1).isNil());
  EXPECT_FALSE(rows.GetBlob2(1));
  EXPECT_EQ(rows.GetLong("nessuna"), 0);
  EXPECT_TRUE(phone.logged("No column named 'nessuna'"));
  EXPECT_EQ(rows.GetInt2(-1), 0);
  EXPECT_FALSE(rows.NextRow());
  EXPECT_FALSE(rows.NextRow()) << "it does not start again";
  EXPECT_TRUE(rows.GetString2(0).isNil());
  rows.Close();
  EXPECT_EQ(thrownBy([] { KesResultSet().NextRow(); }), "Object was not initialized (FMResultSet)");

  EXPECT_EQ(single("SELECT b FROM t WHERE a = 1"), Value("uno"));
  EXPECT_TRUE(single("SELECT b FROM t WHERE a = 9").isNil());
  EXPECT_TRUE(single("SELECT NULL").isNil());
  EXPECT_TRUE(single("SELECT CAST(X'FF' AS TEXT)").isNil()) << "text that is no UTF-8";
  EXPECT_EQ(sql->ExecQuerySingleResult2("SELECT b FROM t WHERE a = ?", KesList::of({1})),
            Value("uno"));
}

TEST_F(Sql, FailuresCarryTheGivenTexts) {
  const auto& documents = phone.folders().documents;
  const auto opening = [&](const std::string& dir, std::string_view file, bool create) {
    return thrownBy([&] { makeShared<KesSQL>()->Initialize(dir, file, create); });
  };
  EXPECT_EQ(opening(documents, "none.db", false), "Database file not found.");
  EXPECT_FALSE(kes::File().Exists(documents, "none.db"));
  EXPECT_EQ(opening(documents + "no/such", "x.db", true),
            "Initialize error: unable to open database file");
  EXPECT_EQ(opening(documents, "../out.db", true),
            "Initialize error: documents/../out.db: The name leads out of its folder");
  EXPECT_EQ(opening(documents, {"cut\0", 4}, true),
            "Initialize error: documents/cut: The name holds a zero byte");
  EXPECT_FALSE(std::filesystem::exists(phone.root() / "out.db"));
  EXPECT_FALSE(kes::File().Exists(documents, "cut"));
  phone.write(documents + "broken.db", std::string(4096, 'x'));
  EXPECT_EQ(opening(documents, "broken.db", false), "");
  const auto broken = makeShared<KesSQL>();
  broken->Initialize(documents, "broken.db", false);
  EXPECT_EQ(thrownBy([&] { broken->ExecNonQuery("CREATE TABLE x(y)"); }),
            "BeginTransaction error: file is not a database");

  const struct {
    std::function<void()> call;
    const char* thrown;
  } cases[] = {
      {[&] { sql->ExecNonQuery("NONSENSE"); },
       "ExecNonQuery error: near \"NONSENSE\": syntax error"},
      {[&] { sql->ExecNonQuery(""); }, "ExecNonQuery error: the statement is empty"},
      {[&] { sql->ExecNonQuery("SELECT 1"); },
       "ExecNonQuery error: the statement gives rows, it is a query"},
      {[&] { sql->ExecNonQuery("DELETE FROM t; DELETE FROM t"); },
       "ExecNonQuery error: more than one statement"},
      {[&] { insert({1}); },
       "ExecNonQuery error: the statement has 2 parameters, but 1 arguments were given"},
      {[&] { sql->ExecQuery("SELECT * FROM none"); }, "ExecQuery error: no such table: none"},
      {[&] { single("SELECT * FROM none"); }, "ExecQuery error: no such table: none"},
      {[&] { sql->TransactionSuccessful(); },
       "TransactionSuccessful error: cannot commit - no transaction is active"},
      {[&] { sql->Rollback(); }, "Rollback error: cannot rollback - no transaction is active"},
      {[&] { makeShared<KesSQL>()->ExecNonQuery("x"); }, "Object was not initialized (KesSQL)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(thrownBy(c.call), c.thrown);
    EXPECT_FALSE(sql->lock->isMine()) << c.thrown;
  }
  sql->ExecNonQuery("DELETE FROM t; -- and a remark\n");
  sql->BeginTransaction();
  EXPECT_EQ(thrownBy([&] { sql->BeginTransaction(); }),
            "BeginTransaction error: cannot start a transaction within a transaction");
  sql->Rollback();
  EXPECT_FALSE(sql->lock->isMine());
}

TEST_F(Sql, AStatementIsATransactionUnlessOneIsOpen) {
  sql->ExecNonQuery("CREATE UNIQUE INDEX i ON t(a)");
  insert({1, "one"});
  EXPECT_FALSE(sql->db->inTransaction());
  EXPECT_NE(thrownBy([&] { insert({1, "again"}); }), "");
  EXPECT_FALSE(sql->db->inTransaction());

  sql->BeginTransaction();
  insert({2, "two"});
  EXPECT_EQ(thrownBy([&] {
              insert({1, "again"});
            }),
            "ExecNonQuery error: UNIQUE constraint failed: t.a");
  EXPECT_TRUE(sql->db->inTransaction()) << "the caller's transaction stays open";
  insert({3, "three"});
  sql->TransactionSuccessful();
  EXPECT_EQ(single("SELECT group_concat(a) FROM t"), Value("1,2,3"));

  sql->BeginTransaction();
  sql->ExecNonQuery("DELETE FROM t");
  sql->Rollback();
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("3"));
}

TEST_F(Sql, AnOpenTransactionKeepsOtherThreadsOut) {
  sql->limits.lock = 50ms;
  sql->BeginTransaction();
  insert({1, "mine"});
  EXPECT_EQ(onAnotherThread([&] { sql->ExecNonQuery("DELETE FROM t"); }), kLockText);
  EXPECT_EQ(onAnotherThread([&] { sql->ExecQuery("SELECT 1"); }), kLockText);
  EXPECT_EQ(onAnotherThread([&] { sql->Rollback(); }), kLockText) << "it is not theirs to end";
  insert({2, "still mine"});
  sql->TransactionSuccessful();
  EXPECT_EQ(onAnotherThread([&] { sql->ExecNonQuery("DELETE FROM t WHERE a = 1"); }), "");

  // One that waits goes on as soon as the transaction ends.
  sql->limits.lock = 60s;
  sql->BeginTransaction();
  std::string thrown = "not over";
  std::thread other([&] { thrown = thrownBy([&] { sql->ExecNonQuery("DELETE FROM t"); }); });
  insert({3, "before"});
  sql->TransactionSuccessful();
  other.join();
  EXPECT_EQ(thrown, "");
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("0"));
  EXPECT_EQ(KesSQL().limits.lock, 30s);
  EXPECT_EQ(KesSQL().limits.openResultSets, 2s);
}

TEST_F(Sql, StatementsRunWhileResultSetsAreOpen) {
  insert({1, "a"});
  insert({2, "b"});
  auto rows = sql->ExecQuery("SELECT a FROM t ORDER BY a");
  ASSERT_TRUE(rows.NextRow());
  // On the main thread without a wait.
  sql->limits.openResultSets = 60s;
  insert({3, "c"});
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("3"));

  // Elsewhere they wait for the rows to be closed.
  sql->AddNonQueryToBatch("DELETE FROM t WHERE a = ?", KesList::of({1}));
  sql->ExecNonQueryBatch(recorder->bi(), "X");
  EXPECT_FALSE(phone.runUntil([&] { return !recorder->events.empty(); }, 100));
  EXPECT_TRUE(rows.NextRow());
  EXPECT_EQ(rows.GetInt2(0), 2);
  rows.Close();
  EXPECT_TRUE(waitForEvents(1));
  EXPECT_EQ(single("SELECT group_concat(a) FROM t"), Value("2,3"));
}

// Symptom: each statement of a batch waited for open rows anew, and the main thread for all.
TEST_F(Sql, ABatchWaitsForOpenRowsOnceAndOnlySoLong) {
  insert({1, "a"});
  auto rows = sql->ExecQuery("SELECT a FROM t");
  ASSERT_TRUE(rows.NextRow());
  sql->limits.openResultSets = 200ms;
  for (int i = 0; i < 20; ++i) sql->AddNonQueryToBatch("INSERT INTO t VALUES(1, 2)", {});
  const platform::SystemClock clock;
  const auto begun = clock.monotonic();
  sql->ExecNonQueryBatch(recorder->bi(), "x");
  ASSERT_TRUE(waitForEvents(1));
  insert({2, "main"});
  EXPECT_LT(clock.monotonic() - begun, 1000) << "one wait of 200 ms, not 22";
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("22"));
}

TEST_F(Sql, BatchesAndQueriesReportInTheirOrder) {
  const auto arguments = KesList::of({1, "one"});
  sql->AddNonQueryToBatch("INSERT INTO t VALUES(?, ?)", arguments);
  sql->AddNonQueryToBatch("INSERT INTO t VALUES(2, 'two')", {});
  sql->ExecNonQueryBatch(recorder->bi(), "X");
  // The list was taken over at once: this belongs to the next batch.
  sql->AddNonQueryToBatch("INSERT INTO t VALUES(3, 'three')", {});
  sql->AddNonQueryToBatch("INSERT INTO none VALUES(4)", {});
  sql->ExecNonQueryBatch(recorder->bi(), "x");
  sql->ExecQueryAsync(recorder->bi(), "X", "SELECT a, b FROM t WHERE a >= ? ORDER BY a",
                      KesList::of({1}));
  sql->ExecQueryAsync(recorder->bi(), "x", "SELECT * FROM none", {});
  sql->ExecNonQueryBatch(recorder->bi(), "x");
  EXPECT_TRUE(recorder->events.empty()) << "nothing is told before the turn ends";
  // The rows of the query are open, and the statement after it waits for them.
  ASSERT_TRUE(waitForEvents(3));
  auto rows = KesResultSet::fromBoxed(recorder->results[2]);
  std::string seen;
  while (rows.NextRow()) seen += rows.GetString("b").asText().str() + " ";
  EXPECT_EQ(seen, "one two ") << "the failed batch left nothing";
  ASSERT_TRUE(waitForEvents(5));
  EXPECT_THAT(recorder->events,
              ElementsAre("nonquerycomplete(1)", "nonquerycomplete(0)", "querycomplete(1)",
                          "querycomplete(0)", "nonquerycomplete(1)"));
  EXPECT_FALSE(KesResultSet::fromBoxed(recorder->results[3]).IsInitialized());
  EXPECT_EQ(kes::KesCommon::shared().LastException().Message(),
            "ExecQuery error: no such table: none");
  for (const auto& sender : recorder->senders) EXPECT_EQ(sender.object(), sql.get());
  EXPECT_FALSE(sql->db->inTransaction());
  EXPECT_EQ(sql->queue->name(), "sql_queue");
}

TEST_F(Sql, ABatchThatCannotHaveTheLockTellsSo) {
  sql->limits.lock = 20ms;
  sql->BeginTransaction();
  sql->AddNonQueryToBatch("DELETE FROM t", {});
  sql->ExecNonQueryBatch(recorder->bi(), "x");
  ASSERT_TRUE(waitForEvents(1));
  EXPECT_EQ(recorder->events[0], "nonquerycomplete(0)");
  EXPECT_EQ(kes::KesCommon::shared().LastException().Message(), kLockText);
  insert({1, "kept"});
  sql->TransactionSuccessful();
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("1"));
}

TEST_F(Sql, WorkUnderWayKeepsTheDatabaseAlive) {
  const auto path = phone.folders().documents;
  for (int i = 0; i < 50; ++i) sql->AddNonQueryToBatch("INSERT INTO t VALUES(1, 2)", {});
  sql->ExecNonQueryBatch(recorder->bi(), "x");
  sql = nullptr;
  ASSERT_TRUE(waitForEvents(1));
  EXPECT_EQ(recorder->events[0], "nonquerycomplete(1)");
  sql = makeShared<KesSQL>();
  sql->Initialize(path, "test.db", false);
  EXPECT_EQ(single("SELECT count(*) FROM t"), Value("50"));
}

TEST_F(Sql, CloseEndsWhatIsOpen) {
  insert({1, "a"});
  auto rows = sql->ExecQuery("SELECT a FROM t");
  ASSERT_TRUE(rows.NextRow());
  sql->BeginTransaction();
  insert({2, "lost"});
  const auto clone = sql->cloneMe();
  sql->Close();
  EXPECT_FALSE(sql->IsInitialized() || clone->IsInitialized());
  EXPECT_FALSE(rows.NextRow());
  EXPECT_EQ(rows.GetInt2(0), 0);
  EXPECT_FALSE(sql->lock->isMine());
  EXPECT_EQ(thrownBy([&] { clone->ExecNonQuery("DELETE FROM t"); }),
            "BeginTransaction error: the database is closed");
  sql->Close();
  sql->Initialize(phone.folders().documents, "test.db", false);
  EXPECT_EQ(single("SELECT group_concat(a) FROM t"), Value("1"));
}

TEST_F(Sql, RowsOutliveTheObjectThatAsked) {
  insert({1, "a"});
  insert({2, "b"});
  auto rows = sql->ExecQuery("SELECT b FROM t ORDER BY a");
  ASSERT_TRUE(rows.NextRow());
  const std::weak_ptr<kes::sqlite::Database> database = sql->db;
  sql = nullptr;
  ASSERT_TRUE(rows.NextRow());
  EXPECT_EQ(rows.GetString2(0), Value("b"));
  EXPECT_FALSE(rows.NextRow());
  rows = KesResultSet();
  EXPECT_TRUE(database.expired()) << "the last rows close it";
}

TEST_F(Sql, ADatabaseAmongTheAssetsIsCopiedOnce) {
  insert({1, "shipped"});
  sql->Close();
  const auto& folders = phone.folders();
  kes::File().Copy(folders.documents, "test.db", folders.documents, "moved.db");
  std::filesystem::rename(folders.documents + "moved.db", folders.assets + "/shop.db");
  for (int run = 1; run <= 2; ++run) {
    sql->Initialize(folders.assets + (run == 1 ? "/" : ""), "Shop.db", false);
    insert({run, "added"});
    EXPECT_EQ(single("SELECT count(*) FROM t"), Value(std::to_string(1 + run)));
    sql->Close();
  }
  EXPECT_TRUE(kes::File().Exists(folders.documents, "shop.db"));
  EXPECT_EQ(outputOf("sqlite3 " + folders.assets + "/shop.db 'SELECT count(*) FROM t'"), "1\n");
}
