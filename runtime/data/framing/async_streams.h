// KesAsyncStreams: messages over a stream of bytes, read in the background.
//
// A message travels as its length, a signed 32-bit number in the byte order chosen at
// initialisation, and that many bytes. Held by Ref, used on the main thread, where it
// raises prefix + "_newdata:" with a KesArray of bytes for each message, and at last one
// of "_terminated", when the other side ended between two messages, and "_error", when it
// did not, sent a length below 0 or above the limit, or the stream failed; LastException
// tells why. The module has to handle all three: "%@%@ event not found.". Events that are
// under way when it is closed still arrive. Write only queues; messages that are not
// written when it is closed are lost. When the main thread falls behind, reading pauses.
#pragma once

#include "runtime/data/bytes/byte_order.h"
#include "runtime/data/framing/byte_channel.h"

namespace kes {

class Kes;

class KesAsyncStreams final : public Object {
 public:
  static constexpr std::int32_t kLongestMessage = 16 << 20;

  KesAsyncStreams() = default;
  ~KesAsyncStreams() override;  // closes
  std::string_view className() const override { return "KesAsyncStreams"; }

  void Initialize(const Ref<Kes>& bi, const Text& eventPrefix, const KesInputStream& in,
                  const KesOutputStream& out, bool littleEndian) {
    start(bi, eventPrefix, streamChannel(in, out),
          littleEndian ? ByteOrder::Little : ByteOrder::Big);
  }
  // The same over any channel, with a limit of its own for a message.
  void start(const Ref<Kes>& bi, const Text& eventPrefix, std::unique_ptr<ByteChannel> channel,
             ByteOrder order, std::int32_t longestMessage = kLongestMessage);

  bool IsInitialized() const { return line_ != nullptr; }
  // "Message too long: %@" above the limit. Nothing happens once the stream has ended.
  void Write(const Ref<KesArray>& bytes);
  // Messages that wait to be written.
  std::int32_t OutputQueueSize() const;
  // Ends both threads before it returns.
  void Close();

 private:
  class Line;
  std::shared_ptr<Line> line_;
};

}  // namespace kes
