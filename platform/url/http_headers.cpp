#include "platform/url/http_headers.h"

#include <algorithm>

namespace platform {

namespace {
// By ASCII, whatever the process's locale says.
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
}  // namespace

bool HttpHeaders::sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

bool HttpHeaders::isSendable(std::string_view name, std::string_view value) {
  return isHttpToken(name) && isOneLine(value);
}

bool HttpHeaders::isOneLine(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](unsigned char c) { return (c < 0x20 && c != '\t') || c == 0x7F; });
}

std::string* HttpHeaders::slot(std::string_view name) {
  for (auto& [n, v] : fields_)
    if (sameName(n, name)) return &v;
  return nullptr;
}

const std::string* HttpHeaders::find(std::string_view name) const {
  return const_cast<HttpHeaders*>(this)->slot(name);
}

void HttpHeaders::set(std::string_view name, std::string_view value) {
  if (auto* v = slot(name))
    *v = value;
  else
    fields_.emplace_back(name, value);
}

void HttpHeaders::add(std::string_view name, std::string_view value) {
  if (auto* v = slot(name))
    v->append(", ").append(value);
  else
    fields_.emplace_back(name, value);
}

void HttpHeaders::remove(std::string_view name) {
  std::erase_if(fields_, [&](const auto& f) { return sameName(f.first, name); });
}

void HttpHeaders::keep(bool (*wanted)(std::string_view name)) {
  std::erase_if(fields_, [&](const auto& f) { return !wanted(f.first); });
}

bool isHttpToken(std::string_view s) {
  constexpr std::string_view extra = "!#$%&'*+-.^_`|~";
  return !s.empty() && std::all_of(s.begin(), s.end(), [&](char c) {
    return (c >= '0' && c <= '9') || (lower(c) >= 'a' && lower(c) <= 'z') ||
           extra.find(c) != std::string_view::npos;
  });
}

}  // namespace platform
