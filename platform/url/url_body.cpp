#include "platform/url/url_body.h"

#include <utility>

namespace platform {

bool UrlBodyMemory::take(std::size_t bytes) {
  const auto wanted = static_cast<std::ptrdiff_t>(bytes);
  if (left_.fetch_sub(wanted) >= wanted) return true;
  left_ += wanted;
  return false;
}

UrlBody::UrlBody(std::shared_ptr<DownloadFolder> folder, std::shared_ptr<UrlBodyMemory> memory)
    : folder_(std::move(folder)), memory_(std::move(memory)) {}

UrlBody::~UrlBody() { memory_->give(taken_); }

bool UrlBody::write(std::string_view bytes) {
  size_ += bytes.size();
  if (bytes_) {
    if (bytes_->size() + bytes.size() <= kInMemory && memory_->take(bytes.size())) {
      taken_ += bytes.size();
      bytes_->append(bytes);
      return true;
    }
    if (!spill()) return false;
  }
  return file_.write(bytes);
}

bool UrlBody::spill() {
  const auto folder = folder_->path(error_);
  if (folder.empty() || !file_.create(folder)) return false;
  path_ = file_.path();
  if (!file_.write(*bytes_)) return false;
  bytes_.reset();
  memory_->give(std::exchange(taken_, 0));
  return true;
}

bool UrlBody::clear() {
  size_ = 0;
  if (!bytes_) return file_.truncate();
  bytes_->clear();
  memory_->give(std::exchange(taken_, 0));
  return true;
}

const std::string& UrlBody::path() {
  if (bytes_ && !(spill() && file_.close())) {
    file_.remove();
    path_.clear();
  }
  return path_;
}

void UrlBody::discard() {
  file_.remove();
  bytes_.reset();
  memory_->give(std::exchange(taken_, 0));
  folder_.reset();
}

}  // namespace platform
