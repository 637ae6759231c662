#include "runtime/data/serialized/serializer.h"

#include "platform/base/work_queue.h"
#include "runtime/core/background_event.h"
#include "runtime/data/bytes/byte_range.h"
#include "runtime/data/bytes/compressed_streams.h"
#include "runtime/data/serialized/value_reader.h"
#include "runtime/data/serialized/value_writer.h"

namespace kes {

std::vector<std::uint8_t> KesSerializator::write(const Value& object, bool compress) {
  auto bytes = ValueWriter().write(object);
  if (!compress) return bytes;
  // It could not be read again.
  if (bytes.size() > kLargestDocument) throw KesException("Error compressing data");
  return KesCompressedStreams::compress(bytes, "zlib");
}

Value KesSerializator::read(std::span<const std::uint8_t> bytes, bool compressed) {
  if (!compressed) return ValueReader(bytes).read();
  const auto whole = KesCompressedStreams::decompress(bytes, "zlib", kLargestDocument);
  return ValueReader(whole).read();
}

Ref<KesArray> KesSerializator::WriteObject(const Value& object, bool compress) {
  return KesArray::initBytesWithData(write(object, compress));
}

Value KesSerializator::ReadObject(const Ref<KesArray>& bytes, bool compressed) {
  return read(wholeBytes(bytes), compressed);
}

void KesSerializator::ConvertObjectToBytesAsync(const Ref<Kes>& bi, const Value& object,
                                                const Text& eventPrefix) {
  convertAsync(bi, eventPrefix.ToLowerCase() + "_objecttobytes::", [object] {
    return Value(KesArray::initBytesWithData(write(object, true)));
  });
}

void KesSerializator::ConvertBytesToObjectAsync(const Ref<Kes>& bi, const Ref<KesArray>& bytes,
                                                const Text& eventPrefix) {
  convertAsync(bi, eventPrefix.ToLowerCase() + "_bytestoobject::", [bytes] {
    return read(wholeBytes(bytes), true);
  });
}

void KesSerializator::convertAsync(const Ref<Kes>& bi, const Text& event,
                                   std::function<Value()> convert) {
  const Ref<KesSerializator> me(references() ? this : new KesSerializator(*this));
  // What the conversion holds belongs to the main thread and goes back there to end.
  auto work = std::make_shared<std::function<Value()>>(std::move(convert));
  auto done = std::make_shared<BackgroundEvent>(bi, me, event, work);
  auto* const run = work.get();
  platform::globalPost([run, done = std::move(done)]() mutable {
    std::vector<Value> result;
    try {
      result = {1, (*run)()};
    } catch (const std::exception& e) {
      Kes::SetException(e);
      result = {0, Value::null()};
    }
    done->raise(std::move(result));
    done.reset();
  });
}

}  // namespace kes
