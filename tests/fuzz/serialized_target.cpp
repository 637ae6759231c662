// Bytes as one serialized value, and as one that a random access file holds.
#include "runtime/data/serialized/random_access_file.h"
#include "runtime/data/serialized/serializer.h"
#include "target.h"

using kes::KesSerializator;

void fuzz::serialized(Bytes input) {
  accepts([&] {
    const auto value = KesSerializator::read(input, false);
    accepts([&] {
      // What came in goes out, and is then stable.
      const auto bytes = KesSerializator::write(value, false);
      const auto again = KesSerializator::write(KesSerializator::read(bytes, false), false);
      require(again.size() == bytes.size(), "a value that was read is written the same again");
    });
  });
  kes::KesRandomAccessFile file;
  file.Initialize3(kes::KesArray::initBytesWithData({input.begin(), input.end()}), true);
  accepts([&] { file.ReadKexObject(0); });
}
