// KesSQL: one SQLite database with its own locking rules.
//
// Held by Ref; made and closed on the main thread, statements run on any. A statement takes the
// lock for its time and, unless a transaction is open, is one by itself. BeginTransaction keeps the
// lock until TransactionSuccessful or Rollback on the same thread; statements of other threads wait
// for it, at most 30 seconds. Batches and asynchronous queries run on "sql_queue" and report on the
// main thread, with this as the sender. Arguments stand for "?" in order; a KesArray of bytes is
// stored as a blob. What was committed survives the process and the power. Throws KesException:
// "Database file not found.", "Initialize error: %@", "Error acquiring lock. Make sure that all
// transactions are closed.", and for each operation its name and " error: %@" with SQLite's
// message.
#pragma once

#include "platform/base/work_queue.h"
#include "runtime/core/list.h"
#include "runtime/data/store/recursive_lock.h"
#include "runtime/data/store/result_set.h"

namespace kes {

class KesSQL final : public Object {
 public:
  std::string_view className() const override { return "KesSQL"; }

  // A database among the assets is copied to the documents first, unless it is there.
  void Initialize(std::string_view dir, std::string_view file, bool createIfNecessary);
  bool IsInitialized() const { return db && db->isOpen(); }
  // Waits for the transaction of another thread; what is not committed is lost.
  void Close();
  // What is wrong with the open file as a whole, empty when it is sound; and where it is.
  // "Initialize error: %@" when that can't be told now.
  std::string damage();
  std::string path() const;
  // A second object on the same database, lock, queue and batch.
  Ref<KesSQL> cloneMe() const;

  void ExecNonQuery(std::string_view statement) { ExecNonQuery2(statement, {}); }
  void ExecNonQuery2(std::string_view statement, const KesList& arguments);
  KesResultSet ExecQuery(std::string_view query) { return ExecQuery2(query, {}); }
  KesResultSet ExecQuery2(std::string_view query, const KesList& arguments);
  // Column 0 of the first row as text; nil with no row, and for NULL.
  Value ExecQuerySingleResult(std::string_view query) { return ExecQuerySingleResult2(query, {}); }
  Value ExecQuerySingleResult2(std::string_view query, const KesList& arguments);

  void BeginTransaction();
  void TransactionSuccessful();
  void Rollback();

  void AddNonQueryToBatch(std::string_view statement, const KesList& arguments);
  // Runs the batch as one transaction: prefix + "_nonquerycomplete:" with 1, or with 0
  // when it failed and left nothing.
  void ExecNonQueryBatch(const Ref<Kes>& bi, const Text& eventPrefix);
  // prefix + "_querycomplete::" with 1 and the result set, or with 0 and an empty one.
  void ExecQueryAsync(const Ref<Kes>& bi, const Text& eventPrefix, std::string_view query,
                      const KesList& arguments);

  // The same for callers in C++.
  void execute(std::string_view statement, std::span<const Value> arguments);
  Value singleResult(std::string_view query, std::span<const Value> arguments);

  // How long a statement waits (in real time) for another thread's transaction, and off
  // the main thread for open result sets.
  struct Limits {
    std::chrono::milliseconds lock{30000};
    std::chrono::milliseconds openResultSets{2000};
  };
  Limits limits;

  struct Pair {
    Text statement;
    Value arguments;  // a KesList, or the null object
  };
  std::shared_ptr<sqlite::Database> db;
  std::shared_ptr<RecursiveLock> lock;
  std::shared_ptr<platform::SerialQueue> queue;
  std::shared_ptr<std::vector<Pair>> nonQueryStatementsList;

 private:
  class Locked;
  void getLock();
  sqlite::Database& database() const;
  KesResultSet run(std::string_view query, std::span<const Value> arguments);
  Ref<KesSQL> self();
};

}  // namespace kes
