#include "townhost/documents.h"

#include <utility>

namespace town {

void Documents::add(std::string path, std::string type, Maker maker) {
  auto entry = std::make_shared<Entry>(Entry{std::move(type), std::move(maker)});
  std::lock_guard lock(mutex_);
  entries_[std::move(path)] = std::move(entry);
}

void Documents::addFixed(std::string path, std::string type, std::string text) {
  add(std::move(path), std::move(type), [text = std::move(text)](const Occasion&) { return text; });
}

void Documents::remove(const std::string& path) {
  std::lock_guard lock(mutex_);
  entries_.erase(path);
}

std::vector<std::string> Documents::paths() const {
  std::lock_guard lock(mutex_);
  std::vector<std::string> paths;
  for (const auto& [path, entry] : entries_) paths.push_back(path);
  return paths;
}

std::optional<Document> Documents::make(const Occasion& occasion) const {
  std::shared_ptr<const Entry> entry;
  {
    std::lock_guard lock(mutex_);
    const auto found = entries_.find(occasion.path);
    if (found == entries_.end()) return std::nullopt;
    entry = found->second;
  }
  return Document{entry->type, entry->maker(occasion)};
}

std::string typeOfPath(std::string_view path) {
  if (path.ends_with(".html")) return "text/html; charset=utf-8";
  if (path.ends_with(".json")) return "application/json; charset=utf-8";
  if (path.ends_with(".png")) return "image/png";
  if (path.ends_with(".jpg")) return "image/jpeg";
  return "text/plain; charset=utf-8";
}

}  // namespace town
