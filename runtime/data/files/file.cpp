#include "runtime/data/files/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <optional>

#include "platform/base/platform.h"
#include "runtime/core/language/common.h"
#include "runtime/data/dates/date_time.h"
#include "runtime/data/files/system_error.h"

namespace kes {

namespace fs = std::filesystem;

namespace {

using Path = KesFile::Path;

constexpr std::size_t kCopyBlock = 8192;
constexpr std::size_t kLongestText = std::numeric_limits<std::int32_t>::max();
// The attribute by which a desktop's backup tools leave a file out.
constexpr const char* kBackupAttribute = "user.xdg.robots.backup";

[[noreturn]] void raise(std::string_view format, const Text& error) {
  throw KesException(formatText(format, {error}));
}

std::string_view withoutEndSeparators(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

// Whether a name leaves the folder that it is joined to, at any point on its way.
bool climbsOut(std::string_view name) {
  int depth = 0;
  for (const auto& part : fs::path(withoutEndSeparators(name)).relative_path()) {
    if (part == "..")
      --depth;
    else if (!part.empty() && part != ".")
      ++depth;
    if (depth < 0) return true;
  }
  return false;
}

// Whether the path is one of the named folders or holds one.
bool isNamedFolder(std::string_view path) {
  const auto target = fs::path(withoutEndSeparators(path)).lexically_normal();
  const auto& named = platform::current().folders();
  for (const auto& folder : {named.assets, named.documents, named.library, named.temporary}) {
    const auto rest =
        fs::path(withoutEndSeparators(folder)).lexically_normal().lexically_relative(target);
    if (!rest.empty() && *rest.begin() != "..") return true;
  }
  return false;
}

// Whether the path lies among the assets, by whatever folder and name it was reached.
bool isAmongAssets(const std::string& path) {
  const Text assets = File().DirAssets();
  const auto root = withoutEndSeparators(assets);
  if (root.empty()) return false;
  const bool plain = path.find("/.") == std::string::npos && root.find("/.") == root.npos;
  if (plain && !path.starts_with(root)) return false;
  const auto rest =
      fs::path(path).lexically_normal().lexically_relative(fs::path(root).lexically_normal());
  return !rest.empty() && *rest.begin() != "..";
}

Path pathOf(std::string_view dir, std::string_view name) {
  Path p{KesFile::Combine(dir, name).str(), {}};
  if (p.text.find('\0') != std::string::npos) {
    p.text.resize(p.text.find('\0'));
    p.error = systemError(p.text, "The name holds a zero byte");
  } else if (climbsOut(name)) {
    p.error = systemError(p.text, "The name leads out of its folder");
  }
  return p;
}

Path pathToWrite(std::string_view dir, std::string_view name) {
  Path p = pathOf(dir, name);
  if (p.error.empty() && isAmongAssets(p.text)) p.error = systemError(p.text, EROFS);
  return p;
}

Path pathToReplace(std::string_view dir, std::string_view name) {
  Path p = pathToWrite(dir, name);
  if (p.error.empty() && isNamedFolder(p.text))
    p.error = systemError(p.text, "The folder belongs to the system");
  return p;
}

// The attributes of a file; the reason in `error` when there are none.
bool attributesOf(Path& p, struct stat& about) {
  if (!p.error.empty()) return false;
  if (::stat(p.text.c_str(), &about) == 0) return true;
  p.error = systemError(p.text, errno);
  return false;
}

struct stat requireAttributes(const KesFile& file, std::string_view dir, std::string_view name) {
  struct stat about;
  Path p = pathOf(dir, file.checkAssets(dir, name, false));
  if (!attributesOf(p, about)) raise("Error getting attributes: %@", p.error);
  return about;
}

std::int64_t modifiedTicks(const struct stat& about) {
  return std::int64_t{about.st_mtim.tv_sec} * 1000 + about.st_mtim.tv_nsec / 1000000;
}

std::string_view typeName(mode_t mode) {
  if (S_ISREG(mode)) return "NSFileTypeRegular";
  if (S_ISDIR(mode)) return "NSFileTypeDirectory";
  if (S_ISSOCK(mode)) return "NSFileTypeSocket";
  if (S_ISCHR(mode)) return "NSFileTypeCharacterSpecial";
  if (S_ISBLK(mode)) return "NSFileTypeBlockSpecial";
  return "NSFileTypeUnknown";
}

// The whole file; nothing, and the reason in `error`, when it cannot be read.
std::optional<std::vector<std::uint8_t>> contents(Path& p) {
  struct stat about;
  if (!attributesOf(p, about)) return std::nullopt;
  const auto told = static_cast<std::size_t>(about.st_size);
  const auto in = fileInput(p.text);
  std::vector<std::uint8_t> bytes;
  std::size_t filled = 0;
  while (in->error().empty()) {
    // A device has no size, and no end either.
    if (told > kLongestText || filled > kLongestText) {
      p.error = systemError(p.text, EFBIG);
      return std::nullopt;
    }
    // One byte more than the size told, so that the end is met without another turn.
    if (filled == bytes.size()) bytes.resize(filled ? filled * 2 : told + 1);
    const auto n = in->read(std::span(bytes).subspan(filled));
    if (n < 0) break;
    if (n == 0) {
      bytes.resize(filled);
      return bytes;
    }
    filled += static_cast<std::size_t>(n);
  }
  p.error = in->error();
  return std::nullopt;
}

// The text in a charset that can express all of it.
std::optional<std::vector<std::uint8_t>> encoded(std::string_view text, std::string_view charset) {
  try {
    auto bytes = KesCommon::GetBytes(text, charset);
    const auto back = KesCommon::BytesToString(bytes, 0, static_cast<int>(bytes.size()), charset);
    if (back == text) return bytes;
  } catch (const KesException&) {
  }
  return std::nullopt;
}

template <class Line>
void forEachLine(std::string_view text, Line line) {
  while (!text.empty()) {
    const auto end = text.find_first_of("\r\n");
    if (end != 0) line(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

std::string replaced(std::string_view text, std::string_view what, std::string_view with) {
  std::string out;
  out.reserve(text.size());
  for (;;) {
    const auto at = text.find(what);
    out.append(text.substr(0, at));
    if (at == std::string_view::npos) return out;
    out.append(with);
    text.remove_prefix(at + what.size());
  }
}

}  // namespace

KesFile& KesFile::shared() {
  static const auto only = platform::makeShared<KesFile>();
  return *only;
}

Text KesFile::DirAssets() const {
  return virtualAssetsFolder.empty() ? Text(platform::current().folders().assets)
                                     : virtualAssetsFolder;
}
Text KesFile::DirDocuments() const { return platform::current().folders().documents; }
Text KesFile::DirLibrary() const { return platform::current().folders().library; }
Text KesFile::DirTemp() const { return platform::current().folders().temporary; }

bool KesFile::isAssets(std::string_view dir) const {
  const Text assets = DirAssets();
  return withoutEndSeparators(dir) == withoutEndSeparators(assets);
}

Text KesFile::checkAssets(std::string_view dir, std::string_view name, bool write) const {
  if (!isAssets(dir)) return name;
  if (write) throw KesException("The assets folder is readonly.");
  return Text(name).ToLowerCase();
}

Text KesFile::Combine(std::string_view dir, std::string_view name) {
  // Runs of separators become one, and none stays at the end, save that of the root.
  std::string path;
  path.reserve(dir.size() + name.size() + 1);
  const auto append = [&](std::string_view part) {
    for (const char c : part)
      if (c != '/' || !path.ends_with('/')) path += c;
  };
  append(dir);
  if (!dir.empty()) append("/");
  append(name);
  if (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

KesFile::Path KesFile::pathToOpen(std::string_view dir, std::string_view storedName, bool write) {
  return write ? pathToWrite(dir, storedName) : pathOf(dir, storedName);
}

bool KesFile::Exists(std::string_view dir, std::string_view name) const {
  struct stat about;
  Path p = pathOf(dir, checkAssets(dir, name, false));
  return attributesOf(p, about);
}

void KesFile::Delete(std::string_view dir, std::string_view name) const {
  Path p = pathToReplace(dir, checkAssets(dir, name, true));
  std::error_code failed;
  if (p.error.empty()) {
    const bool any = fs::remove_all(p.text, failed) > 0;
    if (failed || !any) p.error = systemError(p.text, failed ? failed.value() : ENOENT);
  }
  if (!p.error.empty()) Kes::SetException(KesException(p.error));
}

void KesFile::MakeDir(std::string_view parent, std::string_view name) const {
  Path p = pathToWrite(parent, checkAssets(parent, name, false));
  std::error_code failed;
  if (p.error.empty()) fs::create_directories(p.text, failed);
  if (failed) p.error = systemError(p.text, failed.value());
  if (!p.error.empty()) raise("Failed to create directory: %@", p.error);
}

KesList KesFile::ListFiles(std::string_view dir) const {
  Path p = pathOf(dir, "");
  std::vector<std::string> names;
  std::error_code failed;
  if (p.error.empty()) {
    fs::directory_iterator i(p.text, failed);
    for (; !failed && i != fs::directory_iterator(); i.increment(failed))
      names.push_back(i->path().filename().string());
  }
  if (failed) p.error = systemError(p.text, failed.value());
  if (!p.error.empty()) raise("Error reading from file system: %@", p.error);
  std::sort(names.begin(), names.end());
  KesList list;
  list.Initialize();
  // A name that is no text could not be handed back to any operation.
  for (const auto& name : names)
    if (auto text = Text::fromUtf8(name)) list.Add(*text);
  return list;
}

KesInputStream KesFile::OpenInput(std::string_view dir, std::string_view name) const {
  const Path p = pathOf(dir, checkAssets(dir, name, false));
  if (!p.error.empty()) raise("Error opening stream: %@", p.error);
  auto in = fileInput(p.text);
  if (!in->error().empty()) raise("Error opening stream: %@", in->error());
  return KesInputStream::over(std::move(in));
}

KesOutputStream KesFile::OpenOutput(std::string_view dir, std::string_view name,
                                    bool append) const {
  const Path p = pathToWrite(dir, checkAssets(dir, name, true));
  if (!p.error.empty()) raise("Error opening stream: %@", p.error);
  auto out = fileOutput(p.text, append);
  if (!out->error().empty()) raise("Error opening stream: %@", out->error());
  return KesOutputStream::over(std::move(out));
}

void KesFile::Copy(std::string_view sourceDir, std::string_view sourceName,
                   std::string_view targetDir, std::string_view targetName) const {
  constexpr std::string_view kFailed = "Error copying file: %@";
  Path source = pathOf(sourceDir, checkAssets(sourceDir, sourceName, false));
  const Path target = pathToReplace(targetDir, checkAssets(targetDir, targetName, true));
  // A target is not given up for a source that cannot be had, nor for itself.
  struct stat about;
  if (!attributesOf(source, about)) raise(kFailed, source.error);
  if (!target.error.empty()) raise(kFailed, target.error);
  std::error_code failed;
  if (fs::equivalent(source.text, target.text, failed)) return;
  const auto inside = fs::path(target.text)
                          .lexically_normal()
                          .lexically_relative(fs::path(source.text).lexically_normal());
  if (S_ISDIR(about.st_mode) && !inside.empty() && *inside.begin() != "..")
    raise(kFailed, systemError(target.text, "A folder cannot be copied into itself"));
  failed.clear();
  fs::remove_all(target.text, failed);
  if (!failed) fs::copy(source.text, target.text, fs::copy_options::recursive, failed);
  if (!failed) return;
  // Which of the two it was the system does not say; the target is the likelier one
  // unless the source has become unreadable.
  const bool readable = ::access(source.text.c_str(), R_OK) == 0;
  const Text reason = systemError(readable ? target.text : source.text, failed.value());
  std::error_code ignored;
  fs::remove_all(target.text, ignored);
  raise(kFailed, reason);
}

void KesFile::Move(std::string_view sourceDir, std::string_view sourceName,
                   std::string_view targetDir, std::string_view targetName) const {
  constexpr std::string_view kFailed = "Error moving file: %@";
  const Path source = pathToReplace(sourceDir, checkAssets(sourceDir, sourceName, true));
  const Path target = pathToReplace(targetDir, checkAssets(targetDir, targetName, true));
  for (const Path* path : {&source, &target})
    if (!path->error.empty()) raise(kFailed, path->error);
  std::error_code failed;
  fs::rename(source.text, target.text, failed);
  if (failed) raise(kFailed, systemError(source.text, failed.value()));
}

void KesFile::Copy2(KesInputStream in, KesOutputStream out) {
  std::uint8_t block[kCopyBlock];
  while (const auto n = in.read(block)) out.write(std::span(block, n));
  in.Close();
}

KesMap KesFile::GetAttributes(std::string_view dir, std::string_view name) const {
  const auto about = requireAttributes(*this, dir, name);
  Dictionary::Entries entries = {
      {"NSFileType", typeName(about.st_mode)},
      {"NSFileSize", std::int64_t{about.st_size}},
      {"NSFileModificationDate", KesDateTime::TicksToNSDate(modifiedTicks(about))},
      {"NSFilePosixPermissions", static_cast<std::int32_t>(about.st_mode & 07777)},
      {"NSFileReferenceCount", static_cast<std::int64_t>(about.st_nlink)},
      {"NSFileSystemFileNumber", static_cast<std::int64_t>(about.st_ino)},
      {"NSFileOwnerAccountID", static_cast<std::int64_t>(about.st_uid)},
      {"NSFileGroupOwnerAccountID", static_cast<std::int64_t>(about.st_gid)},
  };
  KesMap map;
  map.setDict(platform::makeShared<Dictionary>(std::move(entries)));
  return map;
}

bool KesFile::IsDirectory(std::string_view dir, std::string_view name) const {
  return S_ISDIR(requireAttributes(*this, dir, name).st_mode);
}

std::int64_t KesFile::Size(std::string_view dir, std::string_view name) const {
  return requireAttributes(*this, dir, name).st_size;
}

std::int64_t KesFile::LastModified(std::string_view dir, std::string_view name) const {
  return modifiedTicks(requireAttributes(*this, dir, name));
}

void KesFile::SetExcludeFromBackup(std::string_view dir, std::string_view name,
                                   bool exclude) const {
  Path p = pathToWrite(dir, checkAssets(dir, name, true));
  struct stat about;
  if (attributesOf(p, about)) {
    constexpr std::string_view kNo = "false";
    const int result = exclude
                           ? ::setxattr(p.text.c_str(), kBackupAttribute, kNo.data(), kNo.size(), 0)
                           : ::removexattr(p.text.c_str(), kBackupAttribute);
    if (result != 0 && !(errno == ENODATA && !exclude)) p.error = systemError(p.text, errno);
  }
  if (!p.error.empty()) raise("Error setting ExcludeFromBackup flag: %@", p.error);
}

std::vector<std::uint8_t> KesFile::readBytes(std::string_view dir, std::string_view name) const {
  Path p = pathOf(dir, checkAssets(dir, name, false));
  auto bytes = contents(p);
  if (!bytes) raise("Error reading file: %@", p.error);
  return std::move(*bytes);
}

Text KesFile::ReadString2(std::string_view dir, std::string_view name,
                          std::string_view charset) const {
  KesCommon::getEncoding(charset);
  const auto bytes = readBytes(dir, name);
  try {
    return KesCommon::BytesToString(bytes, 0, static_cast<int>(bytes.size()), charset);
  } catch (const KesException&) {
    throw KesException("Error reading file. Incorrect encoding");
  }
}

void KesFile::WriteString2(std::string_view dir, std::string_view name, std::string_view text,
                           std::string_view charset) const {
  constexpr std::string_view kFailed = "Error writing file: %@";
  KesCommon::getEncoding(charset);
  // Not the rule for writing: here the assets refuse as a read-only disk would.
  const Path p = pathToWrite(dir, checkAssets(dir, name, false));
  if (!p.error.empty()) raise(kFailed, p.error);
  const auto bytes = encoded(text, charset);
  if (!bytes) {
    const std::string reason = "The text cannot be written as " + std::string(charset);
    raise(kFailed, systemError(p.text, reason));
  }
  const auto out = fileOutput(p.text, false);
  if (out->error().empty() && out->write(*bytes) >= 0) out->close();
  if (!out->error().empty()) raise(kFailed, out->error());
}

KesList KesFile::ReadList(std::string_view dir, std::string_view name) const {
  const Text text = ReadString(dir, name);
  std::vector<Value> lines;
  forEachLine(text.view(), [&](std::string_view line) { lines.emplace_back(line); });
  return KesList::of(std::move(lines));
}

void KesFile::WriteList(std::string_view dir, std::string_view name, const KesList& list) const {
  std::string text;
  for (const Value& v : list) {
    text += v.description().view();
    text += '\n';
  }
  WriteString(dir, name, text);
}

KesMap KesFile::ReadMap(std::string_view dir, std::string_view name) const {
  const Text text = ReadString(dir, name);
  KesMap map;
  map.Initialize();
  forEachLine(text.view(), [&](std::string_view line) {
    auto at = line.find('=');
    while (at != std::string_view::npos && at > 0 && line[at - 1] == '\\')
      at = line.find('=', at + 1);
    if (at == std::string_view::npos) return;
    map.Put(replaced(line.substr(0, at), "\\=", "="), line.substr(at + 1));
  });
  return map;
}

void KesFile::WriteMap(std::string_view dir, std::string_view name, const KesMap& map) const {
  if (!map.IsInitialized()) throw KesException("Object not initialized (Map)");
  std::string text;
  for (const auto& [key, value] : map.table()->entries()) {
    text += replaced(key.description().view(), "=", "\\=");
    text += '=';
    text += replaced(value.description().view(), "\n", " ");
    text += '\n';
  }
  WriteString(dir, name, text);
}

bool isPlainFileName(std::string_view name) noexcept {
  if (name.empty() || name == "." || name == ".." || name.size() > 255) return false;
  for (const char c : name)
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f) return false;
  return true;
}

}  // namespace kes
