#include "platform/push/journal.h"

#include <sqlite3.h>
#include <sys/random.h>

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "platform/base/log.h"

namespace push {

namespace {

constexpr int kNamesKept = 5000;
constexpr int kTellings = 3;

std::string drawIdentity() {
  static constexpr std::string_view kLetters =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr std::size_t kLength = 22;  // 131 bits
  std::string identity;
  while (identity.size() < kLength) {
    unsigned char byte = 0;
    if (::getrandom(&byte, 1, 0) != 1) throw std::runtime_error("no random numbers");
    // Evenly: what is over four rounds of the alphabet is drawn again.
    if (byte < 4 * kLetters.size()) identity += kLetters[byte % kLetters.size()];
  }
  return identity;
}

}  // namespace

class Journal::Statement {
 public:
  Statement(sqlite3* database, const char* sql) : database_(database) {
    if (sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr) != SQLITE_OK) fail();
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& bind(int at, std::string_view text) {
    if (sqlite3_bind_text64(statement_, at, text.data(), text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8) != SQLITE_OK)
      fail();
    return *this;
  }
  Statement& bind(int at, std::int64_t number) {
    if (sqlite3_bind_int64(statement_, at, number) != SQLITE_OK) fail();
    return *this;
  }
  bool step() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) fail();
    return result == SQLITE_ROW;
  }
  std::int64_t number(int column) { return sqlite3_column_int64(statement_, column); }
  std::string text(int column) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return {bytes ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
  }

 private:
  [[noreturn]] void fail() const {
    throw std::runtime_error(std::string("the store of messages: ") + sqlite3_errmsg(database_));
  }
  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
};

Journal::Journal(const std::string& path) {
  try {
    open(path);
  } catch (const std::exception& e) {
    sqlite3_close(std::exchange(database_, nullptr));
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error)) throw;
    platform::log(std::string(e.what()) + "; it is begun anew, the former one put aside");
    std::filesystem::rename(path, path + ".damaged", error);
    std::filesystem::remove(path + "-wal", error);
    std::filesystem::remove(path + "-shm", error);
    open(path);
  }
}

Journal::~Journal() { sqlite3_close(database_); }

void Journal::run(const char* sql) {
  char* message = nullptr;
  if (sqlite3_exec(database_, sql, nullptr, nullptr, &message) == SQLITE_OK) return;
  const std::string why = message ? message : "it cannot be written";
  sqlite3_free(message);
  throw std::runtime_error("the store of messages: " + why);
}

void Journal::open(const std::string& path) {
  if (sqlite3_open(path.empty() ? ":memory:" : path.c_str(), &database_) != SQLITE_OK)
    throw std::runtime_error("the store of messages cannot be opened: " + path);
  sqlite3_busy_timeout(database_, 2000);
  run("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
      "CREATE TABLE IF NOT EXISTS self(identity TEXT NOT NULL);"
      "CREATE TABLE IF NOT EXISTS waiting(number INTEGER PRIMARY KEY AUTOINCREMENT,"
      " json TEXT NOT NULL, told INTEGER NOT NULL DEFAULT 0);"
      "CREATE TABLE IF NOT EXISTS names(number INTEGER PRIMARY KEY AUTOINCREMENT,"
      " name TEXT NOT NULL UNIQUE);");
  Statement self(database_, "SELECT identity FROM self");
  if (self.step()) identity_ = self.text(0);
  if (!identity_.empty()) return;
  identity_ = drawIdentity();
  Statement(database_, "INSERT INTO self VALUES (?)").bind(1, identity_).step();
}

bool Journal::keep(std::string_view name, std::string_view json, std::string_view otherName) {
  const std::lock_guard lock(mutex_);
  run("PRAGMA synchronous=FULL; BEGIN IMMEDIATE");
  try {
    const auto remember = [&](std::string_view each) {
      Statement(database_, "INSERT OR IGNORE INTO names(name) VALUES (?)").bind(1, each).step();
      return sqlite3_changes(database_) > 0;
    };
    const bool fresh = remember(name);
    if (!otherName.empty()) remember(otherName);
    if (fresh) {
      Statement(database_, "DELETE FROM names WHERE number <= (SELECT max(number) FROM names) - ?")
          .bind(1, std::int64_t{kNamesKept})
          .step();
      Statement(database_, "INSERT INTO waiting(json) VALUES (?)").bind(1, json).step();
    }
    run("COMMIT; PRAGMA synchronous=NORMAL");
    return fresh;
  } catch (...) {
    sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

std::vector<Journal::Entry> Journal::waitingAfter(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  Statement rows(database_, "SELECT number, json FROM waiting WHERE number > ? ORDER BY number");
  rows.bind(1, number);
  std::vector<Entry> entries;
  while (rows.step()) entries.push_back({rows.number(0), rows.text(1)});
  return entries;
}

bool Journal::tell(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  Statement(database_, "UPDATE waiting SET told = told + 1 WHERE number = ?")
      .bind(1, number)
      .step();
  Statement told(database_, "SELECT told FROM waiting WHERE number = ?");
  return told.bind(1, number).step() && told.number(0) <= kTellings;
}

// Need not outlast an empty battery: at worst the citizen sees it twice. So it costs no wait
// for the disk, on the main thread.
void Journal::seenTo(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  Statement(database_, "DELETE FROM waiting WHERE number = ?").bind(1, number).step();
}

void Journal::forget(std::string_view beginning) {
  const std::lock_guard lock(mutex_);
  Statement(database_, "DELETE FROM names WHERE substr(name, 1, length(?1)) = ?1")
      .bind(1, beginning)
      .step();
}

}  // namespace push
