// The body of an answer on its way from the server to whoever reads it: in memory while
// it is small, in a temporary file of its own from then on.
//
// A small body that nobody wants as a file never costs one. Bodies made with one
// UrlBodyMemory share its bound, so that answers that wait to be read can't fill the
// memory: what is beyond it goes to files. Sizes are bytes. The writers report a failure
// by giving false; error() is then the system's text.
//
// A body's life: the session's thread writes it and lets go of it before the delegate is
// told of the task, from when on it is the delegate queue's. It lives as long as that one
// turn, in which it may be read from memory or from its file: when the turn is over it is
// discarded, whoever still knows it. A sub that waited for the answer is woken within the
// turn and may read up to its next wait; what it keeps it has to have taken by then. A
// failed task, and one that is cancelled, has no body. What a killed process left behind
// goes with the next session's first task.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

#include "platform/url/download_folder.h"
#include "platform/url/temporary_file.h"

namespace platform {

// How much of the bodies of one session may be in memory at a time. Any thread.
class UrlBodyMemory {
 public:
  explicit UrlBodyMemory(std::size_t bytes) : left_(static_cast<std::ptrdiff_t>(bytes)) {}
  bool take(std::size_t bytes);
  void give(std::size_t bytes) { left_ += static_cast<std::ptrdiff_t>(bytes); }

 private:
  std::atomic<std::ptrdiff_t> left_;
};

class UrlBody {
 public:
  // The most that one body keeps in memory.
  static constexpr std::size_t kInMemory = std::size_t{64} * 1024;

  UrlBody(std::shared_ptr<DownloadFolder> folder, std::shared_ptr<UrlBodyMemory> memory);
  ~UrlBody();
  UrlBody(const UrlBody&) = delete;
  UrlBody& operator=(const UrlBody&) = delete;

  bool write(std::string_view bytes);
  // Back to an empty body.
  bool clear();
  // Nothing more is written. False when the last bytes got lost.
  bool close() { return file_.close(); }

  std::size_t size() const { return size_; }
  // The whole body, or null where it has to be read from path(). What was taken stays
  // readable when the body goes.
  std::shared_ptr<const std::string> bytes() const { return bytes_; }
  // The body's file, which is made now if there is none; empty when that fails.
  const std::string& path();
  // The file goes, and the bytes with it. The path stays known, of a file that is no more.
  void discard();

  const std::string& error() const { return error_.empty() ? file_.error() : error_; }

 private:
  bool spill();

  std::shared_ptr<DownloadFolder> folder_;  // until the body is discarded
  const std::shared_ptr<UrlBodyMemory> memory_;
  std::shared_ptr<std::string> bytes_ = std::make_shared<std::string>();
  std::size_t size_ = 0;
  std::size_t taken_ = 0;  // of the memory that is shared
  TemporaryFile file_;
  std::string path_;
  std::string error_;  // the folder's
};

}  // namespace platform
