#include <zlib.h>

#include <random>

#include "runtime/data/bytes/byte_converter.h"
#include "runtime/data/bytes/compressed_streams.h"
#include "runtime/data/files/file.h"
#include "runtime/data/serialized/random_access_file.h"
#include "runtime/data/serialized/serializer.h"
#include "store_support.h"

using namespace store_test;
using kes::KesByteConverter;
using kes::KesCompressedStreams;
using kes::KesRandomAccessFile;

namespace {

class ByteTools : public StoreTest {
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

TEST_F(ByteTools, OtherProgramsReadWhatIsCompressedAndTheOtherWayRound) {
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

TEST_F(ByteTools, ConverterKeepsNumbersInEitherOrder) {
  KesByteConverter big, little;
  little.LittleEndian = true;
  const struct {
    const char* what;
    Ref<KesArray> (KesByteConverter::*to)(const Ref<KesArray>&) const;
    Ref<KesArray> (KesByteConverter::*from)(const Ref<KesArray>&) const;
    std::vector<Value> values;
    const char *bigHex, *littleHex;
  } cases[] = {
      {"shorts",
       &KesByteConverter::ShortsToBytes,
       &KesByteConverter::ShortsFromBytes,
       {std::int16_t{1}, std::int16_t{-2}},
       "0001fffe",
       "0100feff"},
      {"ints",
       &KesByteConverter::IntsToBytes,
       &KesByteConverter::IntsFromBytes,
       {1, -2},
       "00000001fffffffe",
       "01000000feffffff"},
      {"longs",
       &KesByteConverter::LongsToBytes,
       &KesByteConverter::LongsFromBytes,
       {std::int64_t{258}},
       "0000000000000102",
       "0201000000000000"},
      {"floats",
       &KesByteConverter::FloatsToBytes,
       &KesByteConverter::FloatsFromBytes,
       {1.5f},
       "3fc00000",
       "0000c03f"},
      {"doubles",
       &KesByteConverter::DoublesToBytes,
       &KesByteConverter::DoublesFromBytes,
       {-2.0},
       "c000000000000000",
       "00000000000000c0"},
  };
  for (const auto& c : cases) {
    for (const auto* converter : {&big, &little}) {
      auto bytes = (converter->*c.to)(numbers(c.values));
      EXPECT_EQ(toHex(bytes), converter == &big ? c.bigHex : c.littleHex) << c.what;
      bytes->bytesData().push_back(9);  // too little for another number
      const auto back = (converter->*c.from)(bytes);
      EXPECT_EQ(back->objectsData(), c.values) << c.what;
      EXPECT_EQ(back->objectsData()[0].numberType(), c.values[0].numberType()) << c.what;
    }
  }
  EXPECT_EQ(thrownBy([&] { big.IntsToBytes(arrayOf("x")); }), "An array of numbers is expected.");
}

TEST_F(ByteTools, ConverterKeepsTextsAndDigits) {
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

TEST_F(ByteTools, ArrayCopyStaysInsideItsArrays) {
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

TEST_F(ByteTools, RandomAccessFileKeepsNumbersAtTheirPlaces) {
  const auto& documents = phone.folders().documents;
  for (const bool little : {false, true}) {
    kes::File().Delete(documents, "raf");
    KesRandomAccessFile file;
    file.Initialize2(documents, "raf", false, little);
    EXPECT_EQ(file.CurrentPosition, 0);
    file.WriteShort(-2, file.CurrentPosition);
    file.WriteInt(258, file.CurrentPosition);
    file.WriteLong(-3, file.CurrentPosition);
    file.WriteByte(-1, file.CurrentPosition);
    file.WriteDouble(-2.0, file.CurrentPosition);
    EXPECT_EQ(file.CurrentPosition, 23);
    EXPECT_EQ(file.Size(), 23);
    file.WriteFloat(1.5f, file.CurrentPosition);
    EXPECT_EQ(file.CurrentPosition, 27);
    EXPECT_EQ(file.Size(), 31) << "a float writes eight bytes";
    file.WriteShort(7, file.CurrentPosition);
    file.Flush();
    EXPECT_EQ(file.Size(), 31);
    EXPECT_EQ(toHex(bytesOf(phone.read(documents + "raf"))), little ? "feff"
                                                                      "02010000"
                                                                      "fdffffffffffffff"
                                                                      "ff"
                                                                      "00000000000000c0"
                                                                      "0000c03f"
                                                                      "0700"
                                                                      "0000"
                                                                    : "fffe"
                                                                      "00000102"
                                                                      "fffffffffffffffd"
                                                                      "ff"
                                                                      "c000000000000000"
                                                                      "3fc00000"
                                                                      "0007"
                                                                      "0000");
    file.Close();
    EXPECT_EQ(thrownBy([&] { file.Size(); }), "Object was not initialized (NSFileHandle)");

    file.Initialize2(documents, "raf", true, little);
    EXPECT_EQ(file.ReadShort(0), -2);
    EXPECT_EQ(file.ReadInt(2), 258);
    EXPECT_EQ(file.ReadLong(6), -3);
    EXPECT_EQ(file.ReadUnsignedByte(14), 255);
    EXPECT_EQ(file.ReadSignedByte(14), -1);
    EXPECT_EQ(file.ReadDouble(15), -2.0);
    EXPECT_EQ(file.ReadFloat(23), 1.5f);
    EXPECT_EQ(file.CurrentPosition, 27);
    EXPECT_EQ(file.ReadInt(29), 0) << "behind the end are zeros";
    EXPECT_EQ(file.CurrentPosition, 33);
    EXPECT_EQ(file.ReadLong(std::int64_t{1} << 40), 0);

    const auto buffer = KesArray::initBytes({6});
    EXPECT_EQ(file.ReadBytes(buffer, 1, 5, 27), 4) << "only what is there";
    EXPECT_EQ(file.CurrentPosition, 31);
    EXPECT_EQ(toHex(buffer), little ? "000700000000" : "000007000000");
    EXPECT_EQ(thrownBy([&] { file.ReadBytes(buffer, 2, 5, 0); }),
              "Out of bounds. Index=7 Length=6");
    EXPECT_EQ(thrownBy([&] { file.WriteInt(1, 0); }),
              "Error writing to file: documents/raf: Bad file descriptor");
    EXPECT_EQ(thrownBy([&] { file.ReadInt(-1); }),
              "Error seeking in file: documents/raf: Invalid argument");
  }
}

TEST_F(ByteTools, RandomAccessFileSaysWhatItDidNotFind) {
  const auto& folders = phone.folders();
  KesRandomAccessFile file;
  EXPECT_EQ(thrownBy([&] { file.ReadInt(0); }), "Object was not initialized (NSFileHandle)");
  for (const bool readOnly : {true, false}) {
    EXPECT_EQ(thrownBy([&] { file.Initialize(folders.documents, "no/such", readOnly); }),
              "File not found: " + folders.documents + "no/such");
    EXPECT_EQ(thrownBy([&] { file.Initialize(phone.root().string(), "documents", readOnly); }),
              "File not found: " + (phone.root() / "documents").string());
  }
  EXPECT_EQ(thrownBy([&] { file.Initialize(folders.documents, "none", true); }),
            "File not found: " + folders.documents + "none");
  // A name neither leads out of its folder nor stands for another one.
  EXPECT_EQ(thrownBy([&] { file.Initialize(folders.documents, "../out", false); }),
            "File not found: " + folders.documents + "../out");
  EXPECT_FALSE(std::filesystem::exists(phone.root() / "out"));
  EXPECT_EQ(thrownBy([&] {
              file.Initialize(folders.documents, {"cut\0", 4}, false);
            }),
            "File not found: " + folders.documents + "cut");
  EXPECT_EQ(kes::File().ListFiles(folders.documents).Size(), 0);
  phone.write(folders.assets + "/logo.bin", "\x01\x02");
  file.Initialize(folders.assets, "Logo.BIN", true);
  EXPECT_EQ(file.ReadShort(0), 258);
}

TEST_F(ByteTools, MemoryHandleIsTheArrayAndCannotGrow) {
  const auto array = KesArray::initBytes({12});
  KesRandomAccessFile file;
  file.Initialize3(array, true);
  file.WriteInt(-1, 0);
  file.WriteBytes(arrayOf("xyz"), 1, 2, 4);
  EXPECT_EQ(toHex(array), "ffffffff797a000000000000");
  file.WriteFloat(1.0f, 4);
  EXPECT_EQ(toHex(array), "ffffffff0000803f00000000");
  file.WriteByte(1, 11);
  EXPECT_EQ(file.CurrentPosition, 12);
  const auto before = toHex(array);
  for (const auto position : {9, 12, 100})
    EXPECT_EQ(thrownBy([&] { file.WriteInt(7, position); }), "Out of bounds. Index=12 Length=12");
  EXPECT_EQ(thrownBy([&] { file.WriteFloat(7, 8); }), "Out of bounds. Index=12 Length=12")
      << "its eight bytes count";
  EXPECT_EQ(thrownBy([&] { file.ReadInt(-4); }), "Out of bounds. Index=-4 Length=12");
  EXPECT_EQ(toHex(array), before) << "a refused write changes nothing";
  EXPECT_EQ(file.ReadInt(10), 0x0100);
  EXPECT_EQ(file.ReadInt(50), 0);
  EXPECT_EQ(file.Size(), 12);
}

TEST_F(ByteTools, ObjectsInFilesStandBehindTheirLength) {
  const auto& documents = phone.folders().documents;
  KesMap map;
  map.Initialize().Put("zona", "B");
  for (const bool little : {false, true}) {
    KesRandomAccessFile file;
    file.Initialize2(documents, "objects", false, little);
    file.WriteKexObject(map, 3);
    const auto end = file.CurrentPosition;
    EXPECT_EQ(file.Size(), end);
    const auto length = static_cast<std::int32_t>(end - 8);
    EXPECT_EQ(file.ReadInt(3), length);
    EXPECT_EQ(file.ReadUnsignedByte(7), 1);
    EXPECT_EQ(file.ReadKexObject(3), Value(map));
    EXPECT_EQ(file.CurrentPosition, end);

    // Not compressed, as the flag may say.
    const auto plain = kes::KesSerializator::write(map, false);
    file.WriteInt(static_cast<std::int32_t>(plain.size()), 0);
    file.WriteByte(0, 4);
    file.WriteBytes(KesArray::initBytesWithData(plain), 0, static_cast<std::int32_t>(plain.size()),
                    5);
    EXPECT_EQ(file.ReadKexObject(0), Value(map));

    // A length that the file does not hold costs nothing and says what is missing.
    file.WriteInt(0x7fffffff, end);
    file.WriteByte(1, end + 4);
    EXPECT_EQ(thrownBy([&] { file.ReadKexObject(end); }), "Error decompressing data");
    file.WriteInt(-1, end);
    file.WriteByte(0, end + 4);
    EXPECT_EQ(thrownBy([&] { file.ReadKexObject(end); }), "Unknown type in readObject: 255");
    file.Close();
    kes::File().Delete(documents, "objects");
  }
}
