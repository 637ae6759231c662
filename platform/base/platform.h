// What a side hands to the runtime at the start of the process: the main queue, the
// clock and the named folders.
//
// One Platform is current at a time; the program (or a test) owns it and installs it
// with PlatformScope on the main thread before anything else runs. Folders are
// absolute paths; documents() and library() end in a separator.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/base/clock.h"
#include "platform/base/main_queue.h"

namespace platform {

struct Folders {
  std::string assets;     // read-only: layouts, fonts, pages
  std::string documents;  // the user's
  std::string library;
  std::string temporary;
};

class Platform {
 public:
  Platform(const Clock& clock, Folders folders)
      : clock_(clock), queue_(std::make_shared<MainQueue>(clock)), folders_(std::move(folders)) {}
  ~Platform() { queue_->close(); }
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  const Clock& clock() const { return clock_; }
  MainQueue& mainQueue() { return *queue_; }
  const Folders& folders() const { return folders_; }

  // Zone and language of the phone: an IANA zone name and a locale identifier.
  std::string timeZone = "Europe/Rome";
  std::string locale = "it_IT";
  // The application's own description, as "CFBundleShortVersionString".
  std::string bundleVersion = "1.0";

 private:
  const Clock& clock_;
  friend class PlatformScope;
  // Shared with whoever is posting to it at this moment.
  const std::shared_ptr<MainQueue> queue_;
  Folders folders_;
};

// The platform in force. Calling it with none installed ends the program.
Platform& current();

// Post to the main queue of the platform in force, from any thread. With none installed, or
// its queue closed, nothing happens: work that outlives the platform ends quietly.
void postToMain(MainQueue::Task task);
// The same, but leaves the task with the caller when nobody takes it, and says so.
bool offerToMain(MainQueue::Task& task);

class PlatformScope {
 public:
  explicit PlatformScope(Platform& p);
  ~PlatformScope();
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;

 private:
  Platform* former_;
  std::shared_ptr<MainQueue> formerQueue_;
};

}  // namespace platform
