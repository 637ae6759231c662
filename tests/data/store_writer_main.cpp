// A program that uses a store until something stops it. It says on its standard output,
// a line each, what it has done and what went to the log.
//
//   store_writer puts FOLDER      puts 1, 2, 3, … under "n" and in an object under "o",
//                                 says "stored N" after each, until it is killed
//   store_writer full FOLDER      puts large values where files may not grow
//   store_writer readonly FOLDER  puts as a user who may not write there
//   store_writer absent FOLDER    opens a store that is not there, as that user
//   store_writer leaves FOLDER    ends while conversions and a batch are under way
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "runtime/core/array.h"
#include "runtime/data/files/file.h"
#include "runtime/data/register_data.h"
#include "runtime/data/serialized/serializer.h"
#include "runtime/data/store/key_value_store.h"

namespace {

using kes::kes_keyvaluestore;

void say(std::string_view line) {
  // One write a line: what was said is out, whatever happens next.
  const std::string whole = std::string(line) + "\n";
  if (::write(STDOUT_FILENO, whole.data(), whole.size()) < 0) ::_exit(2);
}

[[noreturn]] void putForever(kes_keyvaluestore& store) {
  for (int n = std::atoi(store._getsimple("n").str().c_str()) + 1;; ++n) {
    store._putsimple("n", n);
    kes::KesMap map;
    map.Initialize().Put("n", n);
    store._putobject("o", map);
    say("stored " + std::to_string(n));
  }
}

void limitFiles(const std::string& folder) {
  ::signal(SIGXFSZ, SIG_IGN);
  const auto size = kes::File().Size(folder, "kvs.db");
  const rlimit limit{static_cast<rlim_t>(size + 65536), static_cast<rlim_t>(size + 65536)};
  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(3);
}

void becomeNobody() {
  if (::geteuid() == 0 && ::setresuid(65534, 65534, 65534) != 0) ::_exit(4);
}

class Listener final : public kes::KesClass {
 public:
  void _initialize() { initializeClassModule(); }
};

// Work for the background that is not done when main returns, and objects of the main
// thread that it holds.
void leave(const std::string& folder) {
  const auto listener = kes::make<Listener>();
  listener->_initialize();
  std::vector<kes::Value> rows(20000, kes::Value("Via Giuseppe Garibaldi"));
  const auto list = kes::KesList::of(rows);
  const auto serializer = platform::makeShared<kes::KesSerializator>();
  for (int i = 0; i < 8; ++i) serializer->ConvertObjectToBytesAsync(listener->bi(), list, "x");
  const auto sql = platform::makeShared<kes::KesSQL>();
  sql->Initialize(folder, "leaves.db", true);
  sql->AddNonQueryToBatch("CREATE TABLE IF NOT EXISTS t(a)", {});
  for (int i = 0; i < 200; ++i) sql->AddNonQueryToBatch("INSERT INTO t VALUES(1)", {});
  sql->ExecNonQueryBatch(listener->bi(), "x");
  say("leaving");
}

int run(const std::string& mode, const std::string& folder) {
  if (mode == "leaves") {
    leave(folder);
    return 0;
  }
  if (mode == "readonly" || mode == "absent") becomeNobody();
  const auto store = kes::make<kes_keyvaluestore>();
  try {
    store->_initialize(nullptr, folder, "kvs.db");
  } catch (const kes::KesException& e) {
    say("opening failed: " + e.reason().str());
    return 0;
  }
  if (mode == "puts") putForever(*store);
  if (mode == "full") limitFiles(folder);
  store->_putsimple("k", std::string(mode == "full" ? 1 << 20 : 10, 'x'));
  say("k is " + store->_getsimple("k").str());
  if (mode == "full") {
    // Here it is the file on the way to the store that may not grow.
    std::vector<std::uint8_t> noise(1 << 20);
    std::independent_bits_engine<std::minstd_rand, 8, unsigned> random;
    for (auto& b : noise) b = static_cast<std::uint8_t>(random());
    store->_putobject("o", kes::KesArray::initBytesWithData(std::move(noise)));
    say("o is " + store->_getobject("o").description().str());
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 1;
  platform::setLogSink([](std::string_view line) { say(line); });
  const std::string folder = argv[2];
  const platform::SystemClock clock;
  platform::Platform phone(clock, {folder + "/assets", folder + "/", folder + "/", folder});
  const platform::PlatformScope scope(phone);
  kes::registerData();
  return run(argv[1], folder);
}
