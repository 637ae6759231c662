#include <random>

#include "data_fixture.h"
#include "runtime/data/bytes/byte_converter.h"
#include "runtime/data/bytes/compressed_streams.h"

using kes::KesByteConverter;
using kes::KesCompressedStreams;

namespace {

class BytesTest : public DataTest {
 protected:
  std::string pathOf(const char* name) const { return (phone.root() / name).string(); }

  // Repetitive text, noise, nothing, and sizes around the steps of the buffers.
  static std::vector<Bytes> samples() {
    std::vector<Bytes> all;
    std::mt19937 random(7);
    for (const std::size_t size : {0, 1, 16383, 16384, 16385, 100000}) {
      Bytes text(size), noise(size);
      for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<std::uint8_t>("la farmacia di turno "[i % 21]);
        noise[i] = static_cast<std::uint8_t>(random());
      }
      all.push_back(std::move(text));
      all.push_back(std::move(noise));
    }
    return all;
  }
};

Ref<KesArray> numbers(std::vector<Value> items) {
  return KesArray::initObjectsWithData(std::move(items));
}

}  // namespace

TEST_F(BytesTest, OtherProgramsReadWhatIsCompressedAndTheOtherWayRound) {
  const std::string perl = "perl -MCompress::Zlib -e 'binmode STDIN; binmode STDOUT; undef $/; ";
  for (const auto& sample : samples()) {
    const auto in = pathOf("in"), out = pathOf("out");
    phone.write(in, textOf(sample));

    phone.write(out, textOf(KesCompressedStreams::compress(sample, "gzip")));
    EXPECT_EQ(outputOf("gzip -dc < " + out), textOf(sample)) << sample.size();
    const auto gzipped = bytesOf(outputOf("gzip -c < " + in));
    EXPECT_EQ(KesCompressedStreams::decompress(gzipped, "gzip"), sample) << sample.size();
    EXPECT_EQ(KesCompressedStreams::decompress(gzipped, "any other name"), sample);

    phone.write(out, textOf(KesCompressedStreams::compress(sample, "zlib")));
    EXPECT_EQ(outputOf(perl + "print uncompress(<STDIN>)' < " + out), textOf(sample));
    const auto deflated = bytesOf(outputOf(perl + "print compress(<STDIN>)' < " + in));
    EXPECT_EQ(KesCompressedStreams::decompress(deflated, "zlib"), sample) << sample.size();
    EXPECT_EQ(KesCompressedStreams::decompress(deflated, "gzip"), sample) << "either is found";
    EXPECT_EQ(thrownBy([&] { KesCompressedStreams::decompress(gzipped, "zlib"); }),
              "Error decompressing data");
  }
  // What follows the stream is ignored, what is missing is not.
  auto bytes = KesCompressedStreams::compress(bytesOf("abc"), "zlib");
  bytes.push_back('!');
  EXPECT_EQ(textOf(KesCompressedStreams::decompress(bytes, "zlib")), "abc");
  EXPECT_EQ(toHex(KesCompressedStreams::CompressBytes(arrayOf(""), "zlib")), "789c030000000001");
  EXPECT_EQ(thrownBy([] { KesCompressedStreams::DecompressBytes(arrayOf(""), "zlib"); }),
            "Error decompressing data");
}

TEST_F(BytesTest, ConverterKeepsNumbersInEitherOrder) {
  KesByteConverter big, little;
  little.LittleEndian = true;
  using C = KesByteConverter;
  const struct {
    Ref<KesArray> (C::*to)(const Ref<KesArray>&) const;
    Ref<KesArray> (C::*from)(const Ref<KesArray>&) const;
    std::vector<Value> values;
    const char *bigHex, *littleHex;
  } cases[] = {
      {&C::ShortsToBytes, &C::ShortsFromBytes, {std::int16_t{-2}}, "fffe", "feff"},
      {&C::IntsToBytes, &C::IntsFromBytes, {1, -2}, "00000001fffffffe", "01000000feffffff"},
      {&C::LongsToBytes,
       &C::LongsFromBytes,
       {INT64_C(258)},
       "0000000000000102",
       "0201000000000000"},
      {&C::FloatsToBytes, &C::FloatsFromBytes, {1.5f}, "3fc00000", "0000c03f"},
      {&C::DoublesToBytes, &C::DoublesFromBytes, {-2.0}, "c000000000000000", "00000000000000c0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.bigHex);
    for (const auto* converter : {&big, &little}) {
      auto bytes = (converter->*c.to)(numbers(c.values));
      EXPECT_EQ(toHex(bytes), converter == &big ? c.bigHex : c.littleHex);
      bytes->bytesData().push_back(9);  // too little for another number
      const auto back = (converter->*c.from)(bytes);
      EXPECT_EQ(back->objectsData(), c.values);
      EXPECT_EQ(back->objectsData()[0].numberType(), c.values[0].numberType());
    }
  }
  EXPECT_EQ(thrownBy([&] { big.IntsToBytes(arrayOf("x")); }), "An array of numbers is expected.");
}

TEST_F(BytesTest, ConverterKeepsTextsAndDigits) {
  EXPECT_EQ(toHex(KesByteConverter::StringToBytes("è", "UTF8")), "c3a8");
  EXPECT_EQ(toHex(KesByteConverter::StringToBytes("è", "ISO-8859-1")), "e8");
  EXPECT_EQ(KesByteConverter::StringFromBytes(arrayOf("\xe8"), "ISO-8859-1"), "è");
  EXPECT_EQ(thrownBy([] { KesByteConverter::StringToBytes("a", "no such"); }),
            "Invalid CharSet no such");
  EXPECT_EQ(KesByteConverter::HexFromBytes(KesArray::initBytesWithData({0, 0x0f, 0xab, 0xff})),
            "000FABFF");
  const struct {
    const char *hex, *bytes;
  } cases[] = {{"000FabFF", "000fabff"}, {"", ""},     {"A", ""},       {"0A1", "0a"},
               {"zz7f", "007f"},         {"1z", "01"}, {"èf0a", "000a"}};
  for (const auto& c : cases)
    EXPECT_EQ(toHex(KesByteConverter::HexToBytes(c.hex)), c.bytes) << c.hex;
  const auto encodings = KesByteConverter::SupportedEncodings();
  EXPECT_EQ(encodings.get(), KesByteConverter::SupportedEncodings().get());
  EXPECT_THAT(encodings->objectsData(), testing::Contains(Value("UTF-8")));
}

TEST_F(BytesTest, ArrayCopyStaysInsideItsArrays) {
  const auto array = arrayOf("abcdef");
  KesByteConverter::ArrayCopy(array, 0, array, 2, 4);
  EXPECT_EQ(textOf(array->bytesData()), "ababcd");
  KesByteConverter::ArrayCopy(array, 2, array, 0, 4);
  EXPECT_EQ(textOf(array->bytesData()), "abcdcd");
  const auto objects = numbers({1, 2, 3});
  KesByteConverter::ArrayCopy(objects, 1, objects, 0, 2);
  EXPECT_EQ(objects->objectsData(), (std::vector<Value>{2, 3, 3}));
  const struct {
    std::int32_t from, to, count;
    const char* thrown;
  } cases[] = {{0, 0, 7, "Out of bounds. Index=7 Length=6"},
               {5, 0, 2, "Out of bounds. Index=7 Length=6"},
               {-1, 0, 2, "Out of bounds. Index=-1 Length=6"},
               {0, -1, 2, "Out of bounds. Index=-1 Length=6"},
               {2, 0, -1, "Out of bounds. Index=2 Length=6"},
               {0, 2147483647, 1, "Out of bounds. Index=2147483648 Length=6"}};
  for (const auto& c : cases)
    EXPECT_EQ(thrownBy([&] { KesByteConverter::ArrayCopy(array, c.from, array, c.to, c.count); }),
              c.thrown);
  EXPECT_EQ(textOf(array->bytesData()), "abcdcd");
  EXPECT_EQ(thrownBy([&] { KesByteConverter::ArrayCopy(array, 0, objects, 0, 1); }),
            "Two arrays of one kind are expected.");
}
