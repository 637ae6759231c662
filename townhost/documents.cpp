#include "townhost/documents.h"

#include <utility>

namespace town {

void Documents::add(std::string path, std::string type, Maker maker) {
  addFolder(std::move(path), std::move(type), nullptr, std::move(maker));
}

void Documents::addFolder(std::string folder, std::string type, Names names, Maker maker) {
  auto entry = std::make_shared<Entry>(Entry{std::move(type), std::move(maker), std::move(names)});
  std::lock_guard lock(mutex_);
  entries_[std::move(folder)] = std::move(entry);
}

void Documents::addFixed(std::string path, std::string type, std::string text) {
  add(std::move(path), std::move(type), [text = std::move(text)](const Occasion&) { return text; });
}

void Documents::remove(const std::string& path) {
  std::lock_guard lock(mutex_);
  entries_.erase(path);
}

std::vector<std::string> Documents::paths(Instant now) const {
  std::lock_guard lock(mutex_);
  std::vector<std::string> paths;
  for (const auto& [path, entry] : entries_) {
    if (!entry->names)
      paths.push_back(path);
    else
      for (const auto& name : entry->names(now)) paths.push_back(path + name);
  }
  return paths;
}

std::shared_ptr<const Documents::Entry> Documents::entry(const std::string& path) const {
  std::lock_guard lock(mutex_);
  auto found = entries_.find(path);
  if (found == entries_.end()) found = entries_.find(path.substr(0, path.rfind('/') + 1));
  return found == entries_.end() ? nullptr : found->second;
}

std::optional<Document> Documents::make(const Occasion& occasion) const {
  const auto found = entry(occasion.path);
  if (!found) return std::nullopt;
  auto text = found->maker(occasion);
  if (!text) return std::nullopt;
  return Document{found->type, std::move(*text)};
}

std::string typeOfPath(std::string_view path) {
  if (path.ends_with(".html")) return "text/html; charset=utf-8";
  if (path.ends_with(".json")) return kJsonType;
  if (path.ends_with(".png")) return "image/png";
  if (path.ends_with(".jpg")) return "image/jpeg";
  return "text/plain; charset=utf-8";
}

}  // namespace town
