#include "runtime/data/serialized/random_access_file.h"

#include "data_fixture.h"
#include "runtime/data/files/file.h"
#include "runtime/data/serialized/serializer.h"

using kes::KesRandomAccessFile;

namespace {

class RandomAccessFiles : public DataTest {};

}  // namespace

TEST_F(RandomAccessFiles, KeepNumbersAtTheirPlaces) {
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

TEST_F(RandomAccessFiles, SayWhatTheyDidNotFind) {
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

TEST_F(RandomAccessFiles, InMemoryAreTheArrayAndCannotGrow) {
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

TEST_F(RandomAccessFiles, KeepObjectsBehindTheirLength) {
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
