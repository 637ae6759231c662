// What was asked of the host, in order of arrival, for tests to look at.
//
// Owned by the TownHost; any thread. Keeps the last 16,384 requests.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace town {

struct LoggedRequest {
  std::string method;
  std::string path;  // with the query, as sent
  std::string userAgent;
  std::string fault;  // names of the faults it met, joined by "+"; mostly ""
};

class RequestLog {
 public:
  void add(LoggedRequest request);
  void clear();
  std::vector<LoggedRequest> all() const;
  // How many requests went to that path, whatever their query.
  std::size_t count(std::string_view path) const;

 private:
  mutable std::mutex mutex_;
  std::deque<LoggedRequest> requests_;
};

}  // namespace town
