#include "tests/support/test_platform.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/base/log.h"

namespace testing_support {

namespace fs = std::filesystem;

namespace {

fs::path freshFolder() {
  std::string name = (fs::temp_directory_path() / "varlo-test-XXXXXX").string();
  if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder: " + name);
  return name;
}

platform::Folders foldersUnder(const fs::path& root) {
  platform::Folders f;
  f.assets = (root / "assets").string();
  f.documents = (root / "documents" / "").string();
  f.library = (root / "library" / "").string();
  f.temporary = (root / "temporary").string();
  for (const auto& folder : {f.assets, f.documents, f.library, f.temporary})
    fs::create_directories(folder);
  return f;
}

}  // namespace

TestPlatform::TestPlatform(platform::Ticks startAt)
    : root_(freshFolder()),
      clock_(startAt),
      platform_(clock_, foldersUnder(root_)),
      scope_(platform_),
      formerSink_(platform::setLogSink([this](std::string_view line) {
        const std::lock_guard lock(mutex_);
        lines_.emplace_back(line);
      })) {}

TestPlatform::~TestPlatform() {
  platform_.mainQueue().close();
  platform::setLogSink(std::move(formerSink_));
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void TestPlatform::advance(std::int64_t milliseconds) {
  auto& queue = platform_.mainQueue();
  const auto end = clock_.monotonic() + milliseconds;
  queue.drain();
  for (auto due = queue.nextDue(); due && *due <= end; due = queue.nextDue()) {
    if (*due > clock_.monotonic()) clock_.advance(*due - clock_.monotonic());
    queue.drain();
  }
  if (end > clock_.monotonic()) clock_.advance(end - clock_.monotonic());
  queue.drain();
}

bool TestPlatform::runUntil(const std::function<bool()>& condition, std::int64_t milliseconds) {
  auto& queue = platform_.mainQueue();
  const platform::SystemClock real;
  const auto end = real.monotonic() + milliseconds;
  for (;;) {
    queue.drain();
    if (condition()) return true;
    const auto left = end - real.monotonic();
    if (left <= 0) return false;
    // Short turns, since the condition may come true without a task.
    queue.waitForTask(left < 20 ? left : 20);
  }
}

std::vector<std::string> TestPlatform::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

bool TestPlatform::logged(std::string_view text) const {
  for (const auto& line : lines())
    if (line.find(text) != std::string::npos) return true;
  return false;
}

void TestPlatform::clearLog() {
  const std::lock_guard lock(mutex_);
  lines_.clear();
}

void TestPlatform::write(const fs::path& path, std::string_view bytes) {
  fs::create_directories(path.parent_path());
  // Over what is there: with a file emptied first some systems wait for the disk.
  const auto mode = fs::exists(path) ? std::ios::in | std::ios::out : std::ios::out;
  std::fstream out(path, std::ios::binary | mode);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path.string());
  fs::resize_file(path, bytes.size());
}

std::string TestPlatform::read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

}  // namespace testing_support
