// ByteChannel: bytes in both directions, for one reading and one writing thread.
//
// Owned by whoever runs the two threads. read() and write() block; interrupt() may be
// called from any thread and ends both for good. Counts are bytes. Failures are
// KesExceptions: "Error opening stream: %@", "Error reading from stream: %@", "Error
// writing to stream: %@", with the system's reason.
#pragma once

#include <memory>
#include <span>

#include "runtime/data/files/input_stream.h"
#include "runtime/data/files/output_stream.h"

namespace kes {

class ByteChannel {
 public:
  virtual ~ByteChannel() = default;
  // The count read; 0 at the end and once interrupted.
  virtual std::size_t read(std::span<std::uint8_t> into) = 0;
  // False when it was interrupted before all was written.
  virtual bool write(std::span<const std::uint8_t> bytes) = 0;
  virtual void interrupt() = 0;
};

// Over a socket, a pipe or a terminal, which is taken over and made non-blocking.
std::unique_ptr<ByteChannel> descriptorChannel(int fd);
// Over two streams, either of which may have no stream. A read that is under way is not
// cut short.
std::unique_ptr<ByteChannel> streamChannel(const KesInputStream& in, const KesOutputStream& out);

}  // namespace kes
