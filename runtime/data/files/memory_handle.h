// KesMemoryHandle: an array of bytes that is used like a file. It shares the very array it
// was made on, reads and overwrites it and cannot grow: a write past its end changes
// nothing and throws "Out of bounds. Index=%d Length=%d", as does a position below 0.
// Owned by one KesRandomAccessFile, used by one thread at a time. Positions are bytes.
#pragma once

#include "runtime/core/array.h"
#include "runtime/data/files/file_handle.h"

namespace kes {

class KesMemoryHandle final : public FileHandle {
 public:
  explicit KesMemoryHandle(Ref<KesArray> bytes);
  std::string_view className() const override { return "KesMemoryHandle"; }

  std::vector<std::uint8_t> readDataOfLength(std::size_t length) override;
  void writeData(std::span<const std::uint8_t> bytes) override;
  void seekToFileOffset(std::int64_t offset) override;
  std::int64_t size() const override;
  void synchronizeFile() override {}
  void closeFile() override {}

  std::int64_t position = 0;
  Ref<KesArray> ms;
};

}  // namespace kes
