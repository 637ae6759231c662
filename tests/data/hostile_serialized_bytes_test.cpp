// Bytes that nobody wrote: the reader answers each with a value or an exception, in
// memory and time that the bytes justify.
#include <pthread.h>

#include "data_fixture.h"
#include "runtime/data/bytes/compressed_streams.h"
#include "runtime/data/serialized/serializer.h"
#include "runtime/data/serialized/value_reader.h"

#include "tests/support/live_bytes.h"

using kes::KesSerializator;
using testing_support::largestRequest;
using testing_support::requestedBytes;

namespace {

struct Node : kes::Object {
  bool isInitialized = true;
  Value next;
  static void describe(kes::ClassBuilder<Node>& c) {
    c.name("_node");
    c.storedField<&Node::isInitialized>("_IsInitialized");
    c.field<&Node::next>("next");
  }
};

class HostileBytes : public DataTest {
 protected:
  HostileBytes() { kes::ClassRegistry::instance().add<Node>(); }

  // Reads, and writes what was read: neither may do worse than throw.
  static bool survives(const Bytes& bytes) {
    try {
      const Value v = KesSerializator::read(bytes, false);
      KesSerializator::write(v, false);
    } catch (const KesException&) {
    }
    return true;
  }

  static Bytes everyTag() {
    KesMap map = kes::KesCommon::createMap(
        {"text", "perché", 3,
         KesList::of({1.5, 2.5f, std::int16_t{3}, std::int64_t{4}, true, u'x', Value()}), "bytes",
         arrayOf("abcdef"), "objects", KesArray::initObjectsWithData({std::uint8_t{7}, "o"})});
    auto node = makeShared<Node>();
    node->next = KesMap(map);
    KesMap outer = kes::KesCommon::createMap({"node", node, "n", 1});
    return KesSerializator::write(outer, false);
  }
};

Bytes repeated(const Bytes& unit, std::size_t times, const Bytes& end) {
  Bytes all;
  for (std::size_t i = 0; i < times; ++i) all.insert(all.end(), unit.begin(), unit.end());
  all.insert(all.end(), end.begin(), end.end());
  return all;
}

// Runs on a thread with little stack: what recurses on nested values overflows it.
template <class Call>
void onASmallStack(Call call) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{512} << 10), 0);
  pthread_t thread;
  const auto run = [](void* p) -> void* {
    (*static_cast<Call*>(p))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &call), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace

TEST_F(HostileBytes, EachTagInThePlaceOfEachByteIsAnswered) {
  const Bytes whole = everyTag();
  ASSERT_NO_THROW(KesSerializator::read(whole, false));
  largestRequest = 0;
  for (std::size_t i = 0; i < whole.size(); ++i)
    for (const int b : {0, 1, 2, 3, 5, 7, 8, 10, 14, 20, 21, 22, 23, 24, 25, 126, 127, 128, 255}) {
      Bytes altered = whole;
      altered[i] = static_cast<std::uint8_t>(b);
      ASSERT_TRUE(survives(altered));
    }
  EXPECT_LT(largestRequest, std::size_t{1} << 20);
}

TEST_F(HostileBytes, CountsThatTheBytesDoNotHoldTakeNoMemory) {
  for (const char* hex : {"15 ffffff7f", "16 ffffff7f", "14 ffffff7f", "01 ffffff7f", "17 ffffff7f",
                          "15 00000080", "14 ffffffff", "18 01 05000000 5f6e6f6465 ffffff7f",
                          "18 01 05000000 5f6e6f6465 ffffffff", "18 18 18 18", "18 15 ffffff7f"}) {
    largestRequest = 0;
    survives(fromHex(hex));
    EXPECT_LT(largestRequest, 65536u) << hex;
  }
  // Each level claims all that is left; together they may not reserve its square.
  const Bytes unit = fromHex("15 ffff0f00");
  const Bytes nested = repeated(unit, 20000, {});
  requestedBytes = 0;
  survives(nested);
  EXPECT_LT(requestedBytes, nested.size() * 200);
}

TEST_F(HostileBytes, ABombIsDefusedEarly) {
  // Empty maps take far more room than their bytes.
  Bytes maps = fromHex("15 00100000");
  for (int i = 0; i < 0x1000; ++i) maps.insert(maps.end(), {0x14, 0, 0, 0, 0});
  EXPECT_EQ(thrownBy([&] { kes::ValueReader(maps, 1 << 20).read(); }),
            "Serialized value too large");
  EXPECT_EQ(thrownBy([&] { kes::ValueReader(maps, 2 << 20).read(); }), "");

  const Bytes tooLong(KesSerializator::kLargestDocument + 1, 0);
  const Bytes packed = kes::KesCompressedStreams::compress(tooLong, "zlib");
  EXPECT_LT(packed.size(), std::size_t{1} << 17);
  largestRequest = 0;
  EXPECT_EQ(thrownBy([&] { KesSerializator::read(packed, true); }), "Error decompressing data");
  EXPECT_LE(largestRequest, KesSerializator::kLargestDocument);
  // What could not be read back is not written.
  EXPECT_EQ(thrownBy([&] { KesSerializator::write(KesArray::initBytesWithData(tooLong), true); }),
            "Error compressing data");
}

TEST_F(HostileBytes, NestingNeedsNoStack) {
  constexpr std::size_t kLevels = 100'000;
  const struct {
    const char *what, *unit;
  } cases[] = {
      {"lists", "15 01000000"},
      {"object arrays", "16 01000000"},
      {"maps", "14 01000000 00"},
      {"lists in maps", "14 01000000 00 15 01000000"},
      {"custom types in lists",
       "15 01000000 18 01 05000000 5f6e6f6465 01000000 01 05000000"
       "5f6e657874"},
  };
  for (const auto& c : cases) {
    const Bytes bytes = repeated(fromHex(c.unit), kLevels, {0});
    onASmallStack([&] {
      Value v = KesSerializator::read(bytes, false);
      // Only custom types come out with all their fields.
      if (std::string_view(c.unit).find("18") == std::string_view::npos)
        EXPECT_EQ(KesSerializator::write(v, false), bytes) << c.what;
      else
        EXPECT_NO_THROW(KesSerializator::write(v, false)) << c.what;
      v = {};
    });
  }

  // Where nesting would cost stack or time all the same, it is refused.
  onASmallStack([&] {
    EXPECT_EQ(thrownBy([] {
                KesSerializator::read(repeated(fromHex("14 01000000"), kLevels, {0}), false);
              }),
              "Map key nested too deeply");
    EXPECT_EQ(thrownBy([] { KesSerializator::read(repeated(fromHex("18"), kLevels, {0}), false); }),
              "Custom types nested too deeply");
    EXPECT_EQ(thrownBy([] {
                KesSerializator::read(
                    repeated(fromHex("18 01 05000000 5f6e6f6465 01000000 01 05000000 5f6e657874"),
                             kLevels, {0}),
                    false);
              }),
              "Custom types nested too deeply");
  });
}

TEST_F(HostileBytes, ManyContainerKeysAreRefusedBeforeTheyCostTime) {
  Bytes bytes = fromHex("14 00000100");
  for (std::uint32_t i = 0; i < 0x10000; ++i) {
    const Bytes key = fromHex("15 01000000 03");
    bytes.insert(bytes.end(), key.begin(), key.end());
    for (int shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<std::uint8_t>(i >> shift));
    bytes.push_back(0);
  }
  EXPECT_EQ(thrownBy([&] { KesSerializator::read(bytes, false); }),
            "Too many map keys that are objects");
}
