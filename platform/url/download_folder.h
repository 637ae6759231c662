// The folder in which one session keeps the bodies that are on their way, or one run of the
// program all that is temporary.
//
// It is made, private to this user, when its path is first asked for, locked for as long as
// the object lives, and removed with it: shared by the session and its bodies, the last of
// them takes it away. A process that is killed leaves its folder behind
// unlocked: sweep() removes such folders, and nothing else, so that several programs may use
// one temporary folder at a time. Any thread.
#pragma once

#include <mutex>
#include <string>

namespace platform {

class DownloadFolder {
 public:
  explicit DownloadFolder(std::string parent) : parent_(std::move(parent)) {}
  ~DownloadFolder();
  DownloadFolder(const DownloadFolder&) = delete;
  DownloadFolder& operator=(const DownloadFolder&) = delete;

  // Empty when the folder can't be made; `error` is then the system's text.
  std::string path(std::string& error);

  static void sweep(const std::string& parent);

 private:
  bool make(std::string& error);

  const std::string parent_;
  std::mutex mutex_;
  std::string path_;
  int lock_ = -1;
};

}  // namespace platform
