// TestPlatform: a whole platform for one test, installed for its lifetime.
//
// A virtual clock that moves only when told, the four named folders in a fresh
// temporary place that is removed at the end, and the log caught line by line. The
// thread that constructs it is the main thread. Only lines(), logged() and what
// post() does may be used from another thread.
#pragma once

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/platform.h"

namespace testing_support {

class TestPlatform {
 public:
  // A Wednesday: 2017-11-15 09:30:00 in the town.
  static constexpr platform::Ticks kStart = 1510734600000;

  explicit TestPlatform(platform::Ticks startAt = kStart);
  ~TestPlatform();
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;

  platform::VirtualClock& clock() { return clock_; }
  platform::Platform& platform() { return platform_; }
  const platform::Folders& folders() const { return platform_.folders(); }
  const std::filesystem::path& root() const { return root_; }

  // Runs what is due, and what that posts in turn.
  void drain() { platform_.mainQueue().drain(); }
  // Moves the clock on, stopping at each delayed task on the way, as a phone would.
  void advance(std::int64_t milliseconds);
  // Runs tasks as they come from other threads until the condition holds; false when
  // it does not within the (real) time.
  bool runUntil(const std::function<bool()>& condition, std::int64_t milliseconds = 10000);

  std::vector<std::string> lines() const;
  // Whether a line that contains the text was logged.
  bool logged(std::string_view text) const;
  void clearLog();

  // Puts a file into a folder, making the folders on the way; bytes as they stand.
  static void write(const std::filesystem::path& path, std::string_view bytes);
  static std::string read(const std::filesystem::path& path);

 private:
  std::filesystem::path root_;
  platform::VirtualClock clock_;
  platform::Platform platform_;
  platform::PlatformScope scope_;
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  std::function<void(std::string_view)> formerSink_;
};

}  // namespace testing_support
