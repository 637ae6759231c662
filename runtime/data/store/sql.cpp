#include "runtime/data/store/sql.h"

#include "platform/base/main_queue.h"
#include "runtime/core/background_event.h"
#include "runtime/data/files/file.h"

namespace kes {

namespace {

std::span<const Value> itemsOf(const KesList& list) {
  const auto* store = static_cast<const ArrayStore*>(list.objectOrNull().object());
  return store ? std::span<const Value>(store->items()) : std::span<const Value>();
}

std::vector<Value> copyOf(const KesList& list) {
  const auto items = itemsOf(list);
  return {items.begin(), items.end()};
}

[[noreturn]] void fail(std::string_view operation, const std::exception& e) {
  throw KesException(formatText("%@ error: %@", {operation, std::string_view(e.what())}));
}

// Runs one operation of the database under its name in messages.
template <class Operation>
auto named(std::string_view name, Operation operation) {
  try {
    return operation();
  } catch (const sqlite::Failure& e) {
    fail(name, e);
  }
}

// Undoes what has failed already: a second failure would hide the first. Who never got
// the lock has nothing to undo, and is not to wait for it once more.
void undo(KesSQL& sql) {
  if (!sql.lock->isMine()) return;
  try {
    sql.Rollback();
  } catch (const std::exception&) {
  }
}

}  // namespace

// The lock for the time of one statement.
class KesSQL::Locked {
 public:
  explicit Locked(KesSQL& sql) : lock_(sql.lock) { sql.getLock(); }
  ~Locked() { lock_->unlock(); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  std::shared_ptr<RecursiveLock> lock_;
};

void KesSQL::Initialize(std::string_view dir, std::string_view file, bool createIfNecessary) {
  auto& files = File();
  if (!createIfNecessary && !files.Exists(dir, file))
    throw KesException("Database file not found.");
  Text folder(dir), name(file);
  if (files.isAssets(dir)) {
    const Text shipped = files.checkAssets(dir, file, false);
    folder = files.DirDocuments();
    name = shipped;
    if (!files.Exists(folder, name) && files.Exists(dir, shipped))
      files.Copy(dir, shipped, folder, name);
  }
  const auto path = KesFile::pathToOpen(folder, name, true);
  db = named("Initialize", [&] {
    if (!path.error.empty()) throw sqlite::Failure(path.error.str());
    return sqlite::Database::open(path.text, createIfNecessary);
  });
  nonQueryStatementsList = std::make_shared<std::vector<Pair>>();
  lock = std::make_shared<RecursiveLock>();
  queue = std::make_shared<platform::SerialQueue>("sql_queue");
}

sqlite::Database& KesSQL::database() const {
  if (!db) throw KesException("Object was not initialized (KesSQL)");
  return *db;
}

std::string KesSQL::damage() {
  const Locked locked(*this);
  return named("Initialize", [&] { return db->damage(); });
}

std::string KesSQL::path() const { return database().path(); }

Ref<KesSQL> KesSQL::cloneMe() const { return platform::makeShared<KesSQL>(*this); }

Ref<KesSQL> KesSQL::self() { return references() ? Ref<KesSQL>(this) : cloneMe(); }

void KesSQL::getLock() {
  auto& database = this->database();
  // Within a transaction the wait is over: the main thread may be waiting for its end.
  const bool waited = lock->isMine();
  if (!lock->tryLockFor(limits.lock))
    throw KesException("Error acquiring lock. Make sure that all transactions are closed.");
  if (!waited && database.hasOpenQueries() && !platform::MainQueue::onMainThread())
    database.waitUntilQueriesClose(limits.openResultSets);
}

void KesSQL::Close() {
  if (!db) return;
  const Locked locked(*this);
  const bool open = db->inTransaction();
  named("Close", [&] { db->close(); });
  // The transaction that ended with the database had kept the lock.
  if (open) lock->unlock();
}

void KesSQL::BeginTransaction() {
  const Locked locked(*this);
  named("BeginTransaction", [&] { db->beginExclusive(); });
  lock->tryLockFor(limits.lock);
}

void KesSQL::TransactionSuccessful() {
  const Locked locked(*this);
  named("TransactionSuccessful", [&] { db->commit(); });
  lock->unlock();
}

void KesSQL::Rollback() {
  const Locked locked(*this);
  // Whatever comes of it, the transaction is over and so is its lock.
  const bool open = db->inTransaction();
  if (open) lock->unlock();
  named("Rollback", [&] { db->rollback(); });
}

void KesSQL::execute(std::string_view statement, std::span<const Value> arguments) {
  const Locked locked(*this);
  const bool own = !db->inTransaction();
  if (own) BeginTransaction();
  try {
    named("ExecNonQuery", [&] { db->update(statement, arguments, sqlite::Arrays::AsBytes); });
    if (own) TransactionSuccessful();
  } catch (...) {
    if (own) undo(*this);
    throw;
  }
}

void KesSQL::ExecNonQuery2(std::string_view statement, const KesList& arguments) {
  execute(statement, itemsOf(arguments));
}

KesResultSet KesSQL::run(std::string_view query, std::span<const Value> arguments) {
  const Locked locked(*this);
  return KesResultSet::over(
      named("ExecQuery", [&] { return db->query(query, arguments, sqlite::Arrays::AsText); }));
}

KesResultSet KesSQL::ExecQuery2(std::string_view query, const KesList& arguments) {
  return run(query, itemsOf(arguments));
}

Value KesSQL::singleResult(std::string_view query, std::span<const Value> arguments) {
  const Locked locked(*this);
  return named("ExecQuery",
               [&] { return db->firstText(query, arguments, sqlite::Arrays::AsText); });
}

Value KesSQL::ExecQuerySingleResult2(std::string_view query, const KesList& arguments) {
  return singleResult(query, itemsOf(arguments));
}

void KesSQL::AddNonQueryToBatch(std::string_view statement, const KesList& arguments) {
  database();
  nonQueryStatementsList->push_back(
      {Text(statement), arguments.IsInitialized() ? Value(arguments) : Value::null()});
}

void KesSQL::ExecNonQueryBatch(const Ref<Kes>& bi, const Text& eventPrefix) {
  database();
  // The lists stay with the main thread; the queue gets what they hold now.
  struct Step {
    Text statement;
    std::vector<Value> arguments;
  };
  auto steps = std::make_shared<std::vector<Step>>();
  for (const auto& pair : std::exchange(*nonQueryStatementsList, {}))
    steps->push_back({pair.statement, copyOf(KesList::fromBoxed(pair.arguments))});

  const auto clone = cloneMe();
  auto* const sql = clone.get();
  auto done = std::make_shared<BackgroundEvent>(
      bi, self(), eventPrefix.ToLowerCase() + "_nonquerycomplete:",
      std::make_shared<std::pair<Ref<KesSQL>, std::shared_ptr<void>>>(clone, steps));
  queue->post([sql, steps, done = std::move(done)]() mutable {
    int success = 1;
    try {
      sql->BeginTransaction();
      for (const auto& step : *steps) sql->execute(step.statement, step.arguments);
      sql->TransactionSuccessful();
    } catch (const std::exception& e) {
      Kes::SetException(e);
      undo(*sql);
      success = 0;
    }
    steps.reset();
    done->raise({success});
    done.reset();
  });
}

void KesSQL::ExecQueryAsync(const Ref<Kes>& bi, const Text& eventPrefix, std::string_view query,
                            const KesList& arguments) {
  database();
  const auto clone = cloneMe();
  auto* const sql = clone.get();
  auto values = std::make_shared<std::vector<Value>>(copyOf(arguments));
  auto done = std::make_shared<BackgroundEvent>(
      bi, self(), eventPrefix.ToLowerCase() + "_querycomplete::",
      std::make_shared<std::pair<Ref<KesSQL>, std::shared_ptr<void>>>(clone, values));
  queue->post([sql, values, text = Text(query), done = std::move(done)]() mutable {
    std::vector<Value> result;
    try {
      result = {1, sql->run(text, *values)};
    } catch (const std::exception& e) {
      Kes::SetException(e);
      result = {0, KesResultSet()};
    }
    values.reset();
    done->raise(std::move(result));
    done.reset();
  });
}

}  // namespace kes
