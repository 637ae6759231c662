// Work away from the main thread.
//
// SerialQueue runs its tasks one after the other on a thread of its own, started by
// the first post. globalPost() runs a task on one of a few shared background threads.
// A task must not let an exception out: one that does is logged and dropped. The
// destructor of SerialQueue runs what was posted, then joins.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace platform {

class SerialQueue {
 public:
  using Task = std::function<void()>;
  explicit SerialQueue(std::string name) : name_(std::move(name)) {}
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  void post(Task task);
  const std::string& name() const { return name_; }

 private:
  void loop();

  std::string name_;
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<Task> tasks_;
  bool ending_ = false;
  std::thread thread_;
};

void globalPost(std::function<void()> task);

}  // namespace platform
