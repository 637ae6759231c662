// One verb that fetches, for the subs of a Feature:
//
//   const auto job = co_await fetch(documents("/InfoVarlo/mappe/master/mappe.json"));
//   if (!job->_success) co_return noConnection();
//
// An awaiter and not a sub of its own: a job's body lives for the turn of its event only,
// and a sub that waits for another sub wakes a turn later. Main thread.
#pragma once

#include "app/kit/fetched.h"

namespace varlo {

// One header of a request; the services that ask for a user agent get the app's.
struct Header {
  std::string_view name, value;
};
inline constexpr Header kNoHeader{};
inline constexpr Header kUserAgent{"User-Agent", "InfoVARLO"};

class Fetch {
 public:
  // Starts `job` on its way. `query`: names and values in turn, escaped and added to the
  // address; null for an address that is complete.
  Fetch(Component& owner, Ref<kes_httpjob> job, const Text& url, const Header& header,
        const Ref<KesArray>& query);

  bool await_ready() const noexcept { return false; }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> sub) {
    wait_.await_suspend(sub);
  }
  Fetched await_resume() { return Fetched(wait_.await_resume(), std::move(document_)); }

 private:
  Text document_;
  detail::WaitAwaiter<kes_httpjob> wait_;
};

}  // namespace varlo
