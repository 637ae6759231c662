// The thin access to SQLite: a database, its statements and its open queries.
//
// A file that is made is for this user's eyes only, and one that was there becomes so.
// A Database is shared by whoever runs statements on it and closes with its last owner.
// All its operations may be called from any thread, one at a time inside. A failure is
// thrown as sqlite::Failure with SQLite's own message. Statements are kept prepared by
// their text; "?" are bound in order, nil and the null object as NULL, numbers by their
// kind, texts as they are, anything else as its description.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "runtime/core/array.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kes::sqlite {

struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

enum class Arrays : bool { AsText, AsBytes };  // how a KesArray is bound

class Query;

class Database : public std::enable_shared_from_this<Database> {
 public:
  static std::shared_ptr<Database> open(const std::string& path, bool create);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // Runs one statement to its end; one that gives rows fails.
  void update(std::string_view sql, std::span<const Value> arguments, Arrays arrays);
  // Prepares a query; the first row is fetched by its next().
  Ref<Query> query(std::string_view sql, std::span<const Value> arguments, Arrays arrays);
  // Column 0 of the first row as text, nil when there is none.
  Value firstText(std::string_view sql, std::span<const Value> arguments, Arrays arrays);

  void beginExclusive();
  void commit();
  void rollback();
  // Whether beginExclusive() waits for its commit() or rollback().
  bool inTransaction() const;

  // What is wrong with the file as a whole, in SQLite's words; empty when it is sound. A
  // failure that says nothing about it (it is locked, it can't be read now) is thrown.
  std::string damage();
  std::string path() const;

  bool hasOpenQueries() const;
  // False when there still are some after that (real) time.
  bool waitUntilQueriesClose(std::chrono::milliseconds limit);

  // Ends the open queries, which then have no more rows, and what was not committed.
  void close();
  bool isOpen() const;

 private:
  friend class Query;
  // A prepared statement on loan from the database.
  class Loan;
  struct Idle {
    std::string sql;
    sqlite3_stmt* statement;
  };
  static constexpr std::size_t kMostIdle = 32;

  explicit Database(sqlite3* handle) : handle_(handle) {}
  [[noreturn]] void fail() const;
  Loan prepare(std::string_view sql, std::span<const Value> arguments, Arrays arrays,
               bool argumentsStay);
  void bind(sqlite3_stmt* statement, int index, const Value& v, Arrays arrays, bool stays);
  void giveBack(std::string sql, sqlite3_stmt* statement);
  void forget(Query& query);

  // Taken by every operation; SQLite's own is left out for it.
  mutable std::recursive_mutex mutex_;
  std::condition_variable_any queryClosed_;
  sqlite3* handle_;
  bool inTransaction_ = false;
  std::vector<Idle> idle_;  // the most recently used last
  std::vector<Query*> openQueries_;
};

// The rows of a query, walked once. Open until next() was false, close() was called, it
// was released, or its database closed. Columns are read by index from 0; one that does
// not exist, or has no row, reads as NULL: 0, nil, null.
class Query final : public Object {
 public:
  Query(std::shared_ptr<Database> database, std::string sql, sqlite3_stmt* statement);
  ~Query() override;
  std::string_view className() const override { return "FMResultSet"; }

  bool next();
  void close();
  int columnCount() const;
  Value columnName(int index) const;
  int columnIndex(std::string_view name) const;  // whatever the case; -1 when absent
  std::int64_t number(int index) const;
  double real(int index) const;
  Value text(int index) const;
  Ref<KesArray> bytes(int index) const;

 private:
  friend class Database;
  std::unique_lock<std::recursive_mutex> locked() const;

  std::shared_ptr<Database> database_;
  std::string sql_;
  sqlite3_stmt* statement_;  // null once closed
};

}  // namespace kes::sqlite
