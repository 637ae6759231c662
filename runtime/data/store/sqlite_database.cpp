#include "runtime/data/store/sqlite_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/base/log.h"
#include "runtime/core/text/utf8_out.h"

namespace kes::sqlite {

namespace {

// How long a lock held by another program is waited for.
constexpr int kBusyMilliseconds = 2000;

constexpr std::size_t kLongestStatement = 1'000'000;

const char* const kBegin = "begin exclusive transaction";
const char* const kCommit = "commit transaction";
const char* const kRollback = "rollback transaction";

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         sqlite3_strnicmp(a.data(), b.data(), static_cast<int>(a.size())) == 0;
}

Value columnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (!text) return {};
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  auto valid = Text::fromUtf8({text, size});
  return valid ? Value(*std::move(valid)) : Value();
}

}  // namespace

class Database::Loan {
 public:
  Loan(Database& owner, std::string sql, sqlite3_stmt* statement)
      : owner_(owner), sql_(std::move(sql)), statement_(statement) {}
  Loan(Loan&& o) noexcept
      : owner_(o.owner_),
        sql_(std::move(o.sql_)),
        statement_(std::exchange(o.statement_, nullptr)) {}
  Loan& operator=(const Loan&) = delete;
  ~Loan() {
    if (statement_) owner_.giveBack(std::move(sql_), statement_);
  }
  sqlite3_stmt* get() const { return statement_; }
  Ref<Query> intoQuery() {
    auto* statement = std::exchange(statement_, nullptr);
    return platform::makeShared<Query>(owner_.shared_from_this(), std::move(sql_), statement);
  }

 private:
  Database& owner_;
  std::string sql_;
  sqlite3_stmt* statement_;
};

std::shared_ptr<Database> Database::open(const std::string& path, bool create) {
  // What SQLite makes beside it, journals, takes its permissions from it.
  const int made = create ? ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600) : -1;
  if (made >= 0)
    ::close(made);
  else
    ::chmod(path.c_str(), 0600);  // not ours to change, it still opens
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
  const int code = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
  if (code != SQLITE_OK) {
    const std::string message = handle ? sqlite3_errmsg(handle) : sqlite3_errstr(code);
    sqlite3_close(handle);
    throw Failure(message);
  }
  sqlite3_busy_timeout(handle, kBusyMilliseconds);
  return std::shared_ptr<Database>(new Database(handle));
}

Database::~Database() {
  try {
    close();
  } catch (const Failure& e) {
    platform::log(std::string("Close error: ") + e.what());
  }
}

void Database::fail() const {
  if (!handle_) throw Failure("the database is closed");
  // A message may quote names out of a damaged file.
  const char* message = sqlite3_errmsg(handle_);
  throw Failure(isUtf8(message) ? message : sqlite3_errstr(sqlite3_errcode(handle_)));
}

bool Database::isOpen() const {
  std::lock_guard lock(mutex_);
  return handle_ != nullptr;
}

bool Database::inTransaction() const {
  std::lock_guard lock(mutex_);
  return inTransaction_;
}

Database::Loan Database::prepare(std::string_view sql, std::span<const Value> arguments,
                                 Arrays arrays, bool argumentsStay) {
  if (!handle_) fail();
  if (sql.size() > kLongestStatement) throw Failure("the statement is too long");
  sqlite3_stmt* statement = nullptr;
  std::string text;
  const auto kept =
      std::find_if(idle_.rbegin(), idle_.rend(), [&](const Idle& idle) { return idle.sql == sql; });
  if (kept != idle_.rend()) {
    text = std::move(kept->sql);
    statement = kept->statement;
    idle_.erase(std::next(kept).base());
  } else {
    text = sql;
    const char* tail = nullptr;
    if (sqlite3_prepare_v3(handle_, text.data(), static_cast<int>(text.size()),
                           SQLITE_PREPARE_PERSISTENT, &statement, &tail) != SQLITE_OK)
      fail();
    if (!statement) throw Failure("the statement is empty");
    sqlite3_stmt* second = nullptr;
    const auto left = static_cast<int>(text.data() + text.size() - tail);
    const int code = sqlite3_prepare_v3(handle_, tail, left, 0, &second, nullptr);
    sqlite3_finalize(second);
    if (code != SQLITE_OK || second) {
      sqlite3_finalize(statement);
      throw Failure("more than one statement");
    }
  }
  Loan loan(*this, std::move(text), statement);
  const auto wanted = static_cast<std::size_t>(sqlite3_bind_parameter_count(statement));
  if (wanted > arguments.size())
    throw Failure("the statement has " + std::to_string(wanted) + " parameters, but " +
                  std::to_string(arguments.size()) + " arguments were given");
  for (std::size_t i = 0; i < wanted; ++i)
    bind(statement, static_cast<int>(i) + 1, arguments[i], arrays, argumentsStay);
  return loan;
}

void Database::bind(sqlite3_stmt* statement, int index, const Value& v, Arrays arrays, bool stays) {
  const auto bindText = [&](std::string_view text, bool textStays) {
    std::string corrected;
    const auto valid = wellFormedUtf8(text, corrected);
    textStays = textStays && corrected.empty();
    return sqlite3_bind_text64(statement, index, valid.data(), valid.size(),
                               textStays ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8);
  };
  int code;
  if (v.isNilOrNull()) {
    code = sqlite3_bind_null(statement, index);
  } else if (v.isNumber()) {
    // Above 63 bits an unsigned number only fits as a fraction.
    const bool large = v.numberType() == NumberType::UnsignedLongLong && v.asInt64() < 0;
    code = v.isFloating() || large ? sqlite3_bind_double(statement, index, v.asDouble())
                                   : sqlite3_bind_int64(statement, index, v.asInt64());
  } else if (v.isText()) {
    // A short text lives in the value itself, which stays where it is all the same.
    code = bindText(v.textView(), stays);
  } else if (const auto array = arrays == Arrays::AsBytes ? v.as<KesArray>() : nullptr) {
    if (!array->isBytes()) throw Failure("an array of objects cannot be stored");
    const auto& bytes = array->bytesData();
    code = sqlite3_bind_blob64(statement, index,
                               bytes.empty() ? "" : static_cast<const void*>(bytes.data()),
                               bytes.size(), stays ? SQLITE_STATIC : SQLITE_TRANSIENT);
  } else {
    code = bindText(v.description(), false);
  }
  if (code != SQLITE_OK) fail();
}

void Database::giveBack(std::string sql, sqlite3_stmt* statement) {
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  if (idle_.size() >= kMostIdle) {
    sqlite3_finalize(idle_.front().statement);
    idle_.erase(idle_.begin());
  }
  idle_.push_back({std::move(sql), statement});
}

void Database::update(std::string_view sql, std::span<const Value> arguments, Arrays arrays) {
  std::lock_guard lock(mutex_);
  const auto loan = prepare(sql, arguments, arrays, true);
  const int code = sqlite3_step(loan.get());
  if (code == SQLITE_ROW) throw Failure("the statement gives rows, it is a query");
  if (code != SQLITE_DONE) fail();
}

Ref<Query> Database::query(std::string_view sql, std::span<const Value> arguments, Arrays arrays) {
  std::lock_guard lock(mutex_);
  return prepare(sql, arguments, arrays, false).intoQuery();
}

Value Database::firstText(std::string_view sql, std::span<const Value> arguments, Arrays arrays) {
  std::lock_guard lock(mutex_);
  const auto loan = prepare(sql, arguments, arrays, true);
  const int code = sqlite3_step(loan.get());
  if (code == SQLITE_DONE) return {};
  if (code != SQLITE_ROW) fail();
  return columnText(loan.get(), 0);
}

void Database::beginExclusive() {
  std::lock_guard lock(mutex_);
  update(kBegin, {}, Arrays::AsText);
  inTransaction_ = true;
}

void Database::commit() {
  std::lock_guard lock(mutex_);
  update(kCommit, {}, Arrays::AsText);
  inTransaction_ = false;
}

void Database::rollback() {
  std::lock_guard lock(mutex_);
  // After some failures, a full disk for one, SQLite has rolled back by itself.
  const bool already = inTransaction_ && handle_ && sqlite3_get_autocommit(handle_);
  inTransaction_ = false;
  if (!already) update(kRollback, {}, Arrays::AsText);
}

std::string Database::damage() {
  std::lock_guard lock(mutex_);
  try {
    const Value found = firstText("PRAGMA integrity_check(1)", {}, Arrays::AsText);
    if (!found.isText()) return "its check gives no answer";
    return found.textView() == "ok" ? std::string() : std::string(found.textView());
  } catch (const Failure& e) {
    // An error in plain SQL, at a statement without a fault, is one of the file's format.
    const int code = handle_ ? sqlite3_errcode(handle_) : SQLITE_OK;
    if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT || code == SQLITE_ERROR) return e.what();
    throw;
  }
}

std::string Database::path() const {
  std::lock_guard lock(mutex_);
  const char* name = handle_ ? sqlite3_db_filename(handle_, "main") : nullptr;
  return name ? name : "";
}

bool Database::hasOpenQueries() const {
  std::lock_guard lock(mutex_);
  return !openQueries_.empty();
}

bool Database::waitUntilQueriesClose(std::chrono::milliseconds limit) {
  std::unique_lock lock(mutex_);
  return queryClosed_.wait_for(lock, limit, [&] { return openQueries_.empty(); });
}

void Database::forget(Query& query) {
  std::erase(openQueries_, &query);
  if (openQueries_.empty()) queryClosed_.notify_all();
}

void Database::close() {
  std::lock_guard lock(mutex_);
  if (!handle_) return;
  while (!openQueries_.empty()) openQueries_.back()->close();
  for (const auto& idle : idle_) sqlite3_finalize(idle.statement);
  idle_.clear();
  inTransaction_ = false;
  if (sqlite3_close(handle_) != SQLITE_OK) fail();
  handle_ = nullptr;
}

Query::Query(std::shared_ptr<Database> database, std::string sql, sqlite3_stmt* statement)
    : database_(std::move(database)), sql_(std::move(sql)), statement_(statement) {
  const auto lock = locked();
  database_->openQueries_.push_back(this);
}

Query::~Query() { close(); }

std::unique_lock<std::recursive_mutex> Query::locked() const {
  return std::unique_lock(database_->mutex_);
}

bool Query::next() {
  const auto lock = locked();
  if (!statement_) return false;
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE)
    platform::log(std::string("Error reading rows: ") + sqlite3_errmsg(database_->handle_));
  close();
  return false;
}

void Query::close() {
  const auto lock = locked();
  if (!statement_) return;
  database_->giveBack(std::move(sql_), std::exchange(statement_, nullptr));
  database_->forget(*this);
}

int Query::columnCount() const {
  const auto lock = locked();
  return sqlite3_column_count(statement_);
}

Value Query::columnName(int index) const {
  const auto lock = locked();
  const char* name = statement_ ? sqlite3_column_name(statement_, index) : nullptr;
  const auto valid = name ? Text::fromUtf8(name) : std::nullopt;
  return valid ? Value(*valid) : Value();
}

int Query::columnIndex(std::string_view name) const {
  const auto lock = locked();
  const int count = sqlite3_column_count(statement_);
  for (int i = 0; i < count; ++i)
    if (const char* one = sqlite3_column_name(statement_, i); one && sameName(one, name)) return i;
  return -1;
}

std::int64_t Query::number(int index) const {
  const auto lock = locked();
  return sqlite3_column_int64(statement_, index);
}

double Query::real(int index) const {
  const auto lock = locked();
  return sqlite3_column_double(statement_, index);
}

Value Query::text(int index) const {
  const auto lock = locked();
  return columnText(statement_, index);
}

Ref<KesArray> Query::bytes(int index) const {
  const auto lock = locked();
  if (sqlite3_column_type(statement_, index) == SQLITE_NULL) return nullptr;
  const auto* first = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, index));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, index));
  return KesArray::initBytesWithData(first ? std::vector(first, first + size)
                                           : std::vector<std::uint8_t>());
}

}  // namespace kes::sqlite
