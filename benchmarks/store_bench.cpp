// The key-value store beside bare prepared SQLite statements in the same transactions:
// one exclusive transaction a put, one read a get. Both as durable as they come, but on
// files in memory: a disk would hide the work behind its waits.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "runtime/data/register_data.h"
#include "runtime/data/store/key_value_store.h"

namespace {

namespace fs = std::filesystem;

constexpr int kKeys = 1000;

const std::string& key(int n) {
  static const auto keys = [] {
    std::vector<std::string> all;
    all.reserve(kKeys);
    for (int i = 0; i < kKeys; ++i) all.push_back("ZONARIFIUTI" + std::to_string(i));
    return all;
  }();
  return keys[static_cast<std::size_t>(n % kKeys)];
}
constexpr const char* kValue = "Zona B, centro storico";

struct Folder {
  Folder() {
    const fs::path memory = "/dev/shm";
    const fs::path root = fs::is_directory(memory) ? memory : fs::temp_directory_path();
    std::string name = (root / "store-bench-XXXXXX").string();
    if (!::mkdtemp(name.data())) std::abort();
    path = name;
  }
  ~Folder() { fs::remove_all(path); }
  std::string path;
};

struct Phone {
  Folder folder;
  platform::SystemClock clock;
  platform::Platform platform{
      clock, {folder.path + "/assets", folder.path + "/", folder.path + "/", folder.path}};
  platform::PlatformScope scope{platform};
};

class Bare {
 public:
  explicit Bare(const std::string& path) {
    check(sqlite3_open(path.c_str(), &db_), SQLITE_OK);
    run("CREATE TABLE IF NOT EXISTS main(key TEXT PRIMARY KEY, value NONE)");
    begin_ = prepare("begin exclusive transaction");
    commit_ = prepare("commit transaction");
    remove_ = prepare("DELETE FROM main WHERE key = ?");
    insert_ = prepare("INSERT INTO main VALUES(?, ?)");
    select_ = prepare("SELECT value FROM main WHERE key = ?");
  }
  ~Bare() {
    for (auto* s : {begin_, commit_, remove_, insert_, select_}) sqlite3_finalize(s);
    sqlite3_close(db_);
  }

  void put(const std::string& key, std::string_view value) {
    step(begin_);
    bind(remove_, 1, key);
    step(remove_);
    bind(insert_, 1, key);
    bind(insert_, 2, value);
    step(insert_);
    step(commit_);
  }
  void fill() {
    step(begin_);
    for (int i = 0; i < kKeys; ++i) {
      bind(insert_, 1, key(i));
      bind(insert_, 2, kValue);
      step(insert_);
    }
    step(commit_);
  }
  std::string get(const std::string& key) {
    bind(select_, 1, key);
    check(sqlite3_step(select_), SQLITE_ROW);
    std::string value(reinterpret_cast<const char*>(sqlite3_column_text(select_, 0)),
                      static_cast<std::size_t>(sqlite3_column_bytes(select_, 0)));
    sqlite3_reset(select_);
    return value;
  }

 private:
  static void check(int code, int wanted) {
    if (code != wanted) std::abort();
  }
  void run(const char* sql) { check(sqlite3_exec(db_, sql, nullptr, nullptr, nullptr), SQLITE_OK); }
  sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* s = nullptr;
    check(sqlite3_prepare_v2(db_, sql, -1, &s, nullptr), SQLITE_OK);
    return s;
  }
  static void bind(sqlite3_stmt* s, int index, std::string_view text) {
    sqlite3_bind_text(s, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }
  static void step(sqlite3_stmt* s) {
    check(sqlite3_step(s), SQLITE_DONE);
    sqlite3_reset(s);
  }

  sqlite3* db_ = nullptr;
  sqlite3_stmt *begin_, *commit_, *remove_, *insert_, *select_;
};

kes::Ref<kes::kes_keyvaluestore> openStore(const Folder& folder) {
  const auto store = kes::make<kes::kes_keyvaluestore>();
  store->_initialize(nullptr, folder.path, "ours.db");
  return store;
}

void BM_PutOurs(benchmark::State& state) {
  Phone phone;
  const auto store = openStore(phone.folder);
  int n = 0;
  for (auto _ : state) store->_putsimple(key(n++), kValue);
}
void BM_PutBare(benchmark::State& state) {
  Folder folder;
  Bare bare(folder.path + "/bare.db");
  int n = 0;
  for (auto _ : state) bare.put(key(n++), kValue);
}
void BM_GetOurs(benchmark::State& state) {
  Phone phone;
  const auto store = openStore(phone.folder);
  store->_sql1->BeginTransaction();
  for (int i = 0; i < kKeys; ++i)
    store->_sql1->ExecNonQuery2("INSERT INTO main VALUES(?, ?)",
                                kes::KesList::of({key(i), kValue}));
  store->_sql1->TransactionSuccessful();
  int n = 0;
  for (auto _ : state) benchmark::DoNotOptimize(store->_getsimple(key(n++)));
}
void BM_GetBare(benchmark::State& state) {
  Folder folder;
  Bare bare(folder.path + "/bare.db");
  bare.fill();
  int n = 0;
  for (auto _ : state) benchmark::DoNotOptimize(bare.get(key(n++)));
}

BENCHMARK(BM_PutOurs)->Name("store/put/ours");
BENCHMARK(BM_PutBare)->Name("store/put/sqlite");
BENCHMARK(BM_GetOurs)->Name("store/get/ours");
BENCHMARK(BM_GetBare)->Name("store/get/sqlite");

}  // namespace

int main(int argc, char** argv) {
  kes::registerData();
  platform::setLogSink([](std::string_view) {});
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
