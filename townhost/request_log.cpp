#include "townhost/request_log.h"

#include <algorithm>
#include <utility>

namespace town {

void RequestLog::add(LoggedRequest request) {
  constexpr std::size_t most = 16'384;
  std::lock_guard lock(mutex_);
  if (requests_.size() == most) requests_.pop_front();
  requests_.push_back(std::move(request));
}

void RequestLog::clear() {
  std::lock_guard lock(mutex_);
  requests_.clear();
}

std::vector<LoggedRequest> RequestLog::all() const {
  std::lock_guard lock(mutex_);
  return {requests_.begin(), requests_.end()};
}

std::size_t RequestLog::count(std::string_view path) const {
  std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(requests_.begin(), requests_.end(), [&](const LoggedRequest& request) {
        return std::string_view(request.path).substr(0, request.path.find('?')) == path;
      }));
}

}  // namespace town
