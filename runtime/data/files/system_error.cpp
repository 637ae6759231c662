#include "runtime/data/files/system_error.h"

#include <system_error>

#include "platform/base/platform.h"
#include "runtime/data/files/file.h"

namespace kes {

namespace {

std::string_view withoutSeparators(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

}  // namespace

Text displayPath(std::string_view path) {
  const auto& folders = platform::current().folders();
  const Text assets = File().DirAssets();
  const std::pair<std::string_view, std::string_view> named[] = {
      {assets, "assets"},
      {folders.documents, "documents"},
      {folders.library, "library"},
      {folders.temporary, "temporary"},
  };
  std::string shown(path);
  for (const auto& [folder, name] : named) {
    const auto root = withoutSeparators(folder);
    if (root.size() < 2 || !path.starts_with(root)) continue;
    const auto rest = path.substr(root.size());
    if (!rest.empty() && rest[0] != '/') continue;
    shown = std::string(name) + std::string(rest);
    break;
  }
  if (!isUtf8(shown))
    for (char& c : shown)
      if (static_cast<unsigned char>(c) >= 0x80) c = '?';
  return shown;
}

Text systemError(std::string_view path, int code) {
  return systemError(path, std::generic_category().message(code));
}

Text systemError(std::string_view path, std::string_view reason) {
  return displayPath(path) + Text(": ") + Text(reason);
}

}  // namespace kes
