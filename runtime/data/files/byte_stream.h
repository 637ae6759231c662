// InputStream and OutputStream: the platform's byte streams, which the wrappers
// KesInputStream and KesOutputStream hold. Files and memory are here; whoever has
// another source of bytes (a body, a decompressor) derives from them.
//
// Held by Ref, used by one thread at a time, any thread. Nothing here throws: a stream
// that failed says so by -1 and keeps the reason in error().
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "runtime/core/object.h"

namespace kes {

class InputStream : public Object {
 public:
  std::string_view className() const override { return "NSInputStream"; }

  // The count read, 0 at the end, -1 on failure or when the stream is closed.
  virtual std::ptrdiff_t read(std::span<std::uint8_t> into) = 0;
  virtual void close() = 0;
  // Empty as long as all went well.
  const Text& error() const { return error_; }

 protected:
  std::ptrdiff_t fail(Text reason) {
    error_ = std::move(reason);
    return -1;
  }

 private:
  Text error_;
};

class OutputStream : public Object {
 public:
  std::string_view className() const override { return "NSOutputStream"; }

  // The count written, which is all of it, or -1 on failure or when it is closed.
  virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes) = 0;
  // What a file had not yet reported as failed may fail here: error() tells.
  virtual void close() = 0;
  const Text& error() const { return error_; }

 protected:
  std::ptrdiff_t fail(Text reason) {
    error_ = std::move(reason);
    return -1;
  }

 private:
  Text error_;
};

class MemoryOutputStream final : public OutputStream {
 public:
  std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
  void close() override { closed_ = true; }
  const std::vector<std::uint8_t>& bytes() const { return bytes_; }
  void reserve(std::size_t n) { bytes_.reserve(n); }

 private:
  std::vector<std::uint8_t> bytes_;
  bool closed_ = false;
};

// Never null; error() is set when the file could not be opened.
Ref<InputStream> fileInput(const std::string& path);
Ref<OutputStream> fileOutput(const std::string& path, bool append);
Ref<InputStream> memoryInput(std::vector<std::uint8_t> bytes);

}  // namespace kes
