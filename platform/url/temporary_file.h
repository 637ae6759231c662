// A file of its own in a folder, under a name that nobody can guess, that goes away
// with the object.
//
// Open for writing until close(). Used by one thread at a time. create() and the
// writers report a failure by giving false; error() is then the system's text.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// 128 bits of the system's own randomness as text; empty when it has none to give.
std::string randomName();

class TemporaryFile {
 public:
  TemporaryFile() = default;
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool create(const std::string& folder);
  bool created() const { return !path_.empty(); }
  bool write(std::string_view bytes);
  // Back to an empty file.
  bool truncate();
  // Nothing more is written; the file stays. False when the last bytes got lost.
  bool close();
  void remove();

  const std::string& path() const { return path_; }
  const std::string& error() const { return error_; }

 private:
  bool fail(int code);

  int fd_ = -1;
  std::string path_;
  std::string error_;
};

}  // namespace platform
