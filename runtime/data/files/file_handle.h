// FileHandle: bytes with a position that can be read and overwritten anywhere: a file on
// disk, or an array in memory (KesMemoryHandle).
//
// Owned by one KesRandomAccessFile, used by one thread at a time. Positions and lengths
// are bytes. Failures are KesExceptions with the system's reason.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "runtime/core/object.h"

namespace kes {

class FileHandle : public Object {
 public:
  // What is there from the position on, at most so many bytes; none at the end.
  virtual std::vector<std::uint8_t> readDataOfLength(std::size_t length) = 0;
  // All of it, or an exception.
  virtual void writeData(std::span<const std::uint8_t> bytes) = 0;
  virtual void seekToFileOffset(std::int64_t offset) = 0;
  virtual std::int64_t size() const = 0;
  virtual void synchronizeFile() = 0;
  virtual void closeFile() = 0;
};

// A file on disk; null when it cannot be opened. For update it is made when
// missing, for this user's eyes only.
Ref<FileHandle> openFileHandle(const std::string& path, bool readOnly);

}  // namespace kes
