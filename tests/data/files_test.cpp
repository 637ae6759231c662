#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "data_fixture.h"
#include "runtime/core/language/common.h"
#include "runtime/data/dates/platform_date.h"
#include "runtime/data/files/file.h"
#include "runtime/data/serialized/random_access_file.h"

namespace fs = std::filesystem;
using kes::File;
using kes::KesFile;
using kes::KesInputStream;
using kes::KesOutputStream;

namespace {

class FilesTest : public DataTest {
 protected:
  void TearDown() override { File().virtualAssetsFolder = Text(); }

  Text documents() const { return File().DirDocuments(); }
  Text temp() const { return File().DirTemp(); }
  Text assets() const { return File().DirAssets(); }
  fs::path at(const Text& dir, std::string_view name) const { return fs::path(dir.str()) / name; }
  void put(const Text& dir, std::string_view name, std::string_view bytes) {
    TestPlatform::write(at(dir, name), bytes);
  }
  std::string get(const Text& dir, std::string_view name) {
    return TestPlatform::read(at(dir, name));
  }
};

TEST_F(FilesTest, JoinsPathsByComponents) {
  const struct {
    std::string_view dir, name, joined;
  } cases[] = {
      {"/a", "b", "/a/b"}, {"/a/", "b", "/a/b"}, {"/a/", "/b", "/a/b"}, {"/a//c", "b/", "/a/c/b"},
      {"", "b", "b"},      {"/a", "", "/a"},     {"/", "b", "/b"},      {"/a", "x/y", "/a/x/y"},
      {"/", "", "/"},      {"", "", ""},         {"/a", "..", "/a/.."}, {"", "/b", "/b"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(KesFile::Combine(c.dir, c.name), c.joined) << c.dir << " + " << c.name;
  EXPECT_TRUE(documents().EndsWith("/"));
  EXPECT_TRUE(File().DirLibrary().EndsWith("/"));
}

TEST_F(FilesTest, AssetsAreReadOnlyAndLowerCase) {
  put(assets(), "logo.png", "png");
  EXPECT_TRUE(File().Exists(assets(), "Logo.PNG"));
  EXPECT_EQ(File().ReadString(assets(), "LOGO.png"), "png");
  EXPECT_EQ(File().Size(assets(), "Logo.png"), 3);
  EXPECT_FALSE(File().Exists(documents(), "Logo.PNG"));
  // Case is kept elsewhere.
  put(documents(), "Logo.PNG", "p");
  EXPECT_TRUE(File().Exists(documents(), "Logo.PNG"));
  EXPECT_FALSE(File().Exists(documents(), "logo.png"));

  const std::string rule = "The assets folder is readonly.";
  const Text withSeparator = assets() + Text("/");
  for (const Text& dir : {assets(), withSeparator}) {
    EXPECT_EQ(thrownBy([&] { File().Delete(dir, "logo.png"); }), rule);
    EXPECT_EQ(thrownBy([&] { File().OpenOutput(dir, "new", false); }), rule);
    EXPECT_EQ(thrownBy([&] { File().OpenOutput(dir, "new", true); }), rule);
    EXPECT_EQ(thrownBy([&] { File().Copy(documents(), "Logo.PNG", dir, "new"); }), rule);
    EXPECT_EQ(thrownBy([&] { File().SetExcludeFromBackup(dir, "logo.png", true); }), rule);
  }
  // Elsewhere among the assets, and for what has no part in the rule, they are like a disk
  // that may only be read, though this one could be written.
  const Text inside = KesFile::Combine(assets(), "maps"),
             roundabout = KesFile::Combine(documents(), "../assets");
  TestPlatform::write(at(inside, "a"), "a");
  const std::string disk = ": Read-only file system";
  kes::KesRandomAccessFile random;
  for (const Text& dir : {inside, roundabout}) {
    EXPECT_THAT(thrownBy([&] { File().OpenOutput(dir, "new", false); }), HasSubstr(disk));
    EXPECT_THAT(thrownBy([&] { File().Copy(documents(), "Logo.PNG", dir, "a"); }), HasSubstr(disk));
    EXPECT_THAT(thrownBy([&] { random.Initialize(dir, "a", false); }), HasSubstr("not found"));
    File().Delete(dir, "a");
    EXPECT_THAT(kes::KesCommon::shared().LastException().Message().str(), HasSubstr(disk));
  }
  EXPECT_THAT(thrownBy([&] { random.Initialize(assets(), "logo.png", false); }),
              HasSubstr("not found"));
  random.Initialize(assets(), "Logo.png", true);
  for (const Text& dir : {assets(), inside, roundabout}) {
    EXPECT_THAT(thrownBy([&] { File().WriteString(dir, "new", "x"); }),
                testing::AllOf(StartsWith("Error writing file: "), HasSubstr(disk)));
    EXPECT_THAT(thrownBy([&] { File().MakeDir(dir, "new"); }), HasSubstr(disk));
  }
  EXPECT_EQ(File().ListFiles(assets()).Size(), 2);
  EXPECT_EQ(textsOf(File().ListFiles(inside)), std::vector<std::string>{"a"});
}

TEST_F(FilesTest, VirtualAssetsTakeThePlaceOfTheFolderAndItsRule) {
  put(assets(), "a", "original");
  put(temp(), "other/a", "virtual");
  const Text former = assets();
  File().virtualAssetsFolder = KesFile::Combine(temp(), "other");
  EXPECT_EQ(File().ReadString(assets(), "A"), "virtual");
  EXPECT_EQ(thrownBy([&] { File().Delete(assets(), "a"); }), "The assets folder is readonly.");
  File().Delete(former, "a");
  EXPECT_FALSE(fs::exists(at(former, "a")));
}

TEST_F(FilesTest, FailuresNameTheFileAndTheReason) {
  put(documents(), "file", "x");
  const std::string none = ": No such file or directory";
  const struct {
    std::function<void()> call;
    std::string message;
  } cases[] = {
      {[&] { File().OpenInput(assets(), "LayMenu.kil"); },
       "Error opening stream: assets/laymenu.kil" + none},
      {[&] { File().OpenInput(documents(), ""); },
       "Error opening stream: documents: Is a directory"},
      {[&] { File().OpenOutput(documents(), "no/way", false); },
       "Error opening stream: documents/no/way" + none},
      {[&] { File().ReadString(temp(), "gone"); }, "Error reading file: temporary/gone" + none},
      {[&] { File().ReadString(documents(), ""); },
       "Error reading file: documents: Is a directory"},
      {[&] { File().WriteString(documents(), "no/way", "x"); },
       "Error writing file: documents/no/way" + none},
      {[&] { File().Copy(documents(), "gone", temp(), "b"); },
       "Error copying file: documents/gone" + none},
      {[&] { File().Copy(documents(), "file", temp(), "no/way"); },
       "Error copying file: temporary/no/way" + none},
      {[&] { File().ListFiles("/nowhere"); }, "Error reading from file system: /nowhere" + none},
      {[&] { File().ListFiles(KesFile::Combine(documents(), "file")); },
       "Error reading from file system: documents/file: Not a directory"},
      {[&] { File().MakeDir(documents(), "file/below"); },
       "Failed to create directory: documents/file/below: Not a directory"},
      {[&] { File().GetAttributes(File().DirLibrary(), "gone"); },
       "Error getting attributes: library/gone" + none},
      {[&] { File().IsDirectory(documents(), "gone"); },
       "Error getting attributes: documents/gone" + none},
      {[&] { File().SetExcludeFromBackup(documents(), "gone", true); },
       "Error setting ExcludeFromBackup flag: documents/gone" + none},
      {[&] { File().ReadString2(documents(), "file", "klingon"); }, "Invalid CharSet klingon"},
      {[&] { File().WriteString2(documents(), "file", "x", "klingon"); },
       "Invalid CharSet klingon"},
      {[&] { File().ReadString(documents(), std::string_view("fi\0le", 5)); },
       "Error reading file: documents/fi: The name holds a zero byte"},
  };
  for (const auto& c : cases) EXPECT_EQ(thrownBy(c.call), c.message);
  EXPECT_FALSE(File().Exists(documents(), std::string_view("file\0x", 6)));
}

TEST_F(FilesTest, DeleteKeepsItsFailureToItself) {
  kes::Kes::shared().setLastError(Value());
  File().Delete(documents(), "gone");
  EXPECT_EQ(kes::KesCommon::shared().LastException().Message(),
            "documents/gone: No such file or directory");

  kes::Kes::shared().setLastError(Value());
  put(documents(), "folder/inner/file", "x");
  File().Delete(documents(), "folder");
  EXPECT_FALSE(fs::exists(at(documents(), "folder")));
  EXPECT_FALSE(kes::KesCommon::shared().LastException().IsInitialized());
}

// Names reach these operations from services.
TEST_F(FilesTest, NamesDoNotLeadOutOfTheirFolder) {
  put(temp(), "secret", "s");
  put(documents(), "own", "o");
  const Text inner = KesFile::Combine(documents(), "cache");
  File().MakeDir(documents(), "cache");
  for (const char* name : {"../secret", "a/../../secret", "../../temporary/secret", "..", "./.."}) {
    SCOPED_TRACE(name);
    const std::string out = ": The name leads out of its folder";
    EXPECT_THAT(thrownBy([&] { File().OpenOutput(inner, name, false); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().WriteString(inner, name, "x"); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().WriteMap(inner, name, KesMap().Initialize()); }),
                HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().MakeDir(inner, name); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().Copy(documents(), "own", inner, name); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().SetExcludeFromBackup(inner, name, true); }), HasSubstr(out));
    // Nor is anything read there: it could be on its way to somebody.
    EXPECT_THAT(thrownBy([&] { File().OpenInput(inner, name); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().ReadString(inner, name); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().Size(inner, name); }), HasSubstr(out));
    EXPECT_THAT(thrownBy([&] { File().Copy(inner, name, documents(), "copy"); }), HasSubstr(out));
    EXPECT_FALSE(File().Exists(inner, name));
    File().Delete(inner, name);
    EXPECT_THAT(kes::KesCommon::shared().LastException().Message().str(), HasSubstr(out));
  }
  EXPECT_EQ(get(temp(), "secret"), "s");
  EXPECT_EQ(get(documents(), "own"), "o");

  // What stays inside is a path like any other.
  File().MakeDir(inner, "a/b");
  File().WriteString(inner, "a/../c.txt", "in");
  EXPECT_EQ(get(inner, "c.txt"), "in");
  EXPECT_TRUE(File().IsDirectory(inner, "a/b"));
}

// Only folders that the test made: where this fails, they are gone.
TEST_F(FilesTest, NamedFoldersAreNeitherDeletedNorReplaced) {
  put(documents(), "a", "1");
  for (const auto& [dir, name] :
       std::initializer_list<std::pair<Text, Text>>{{documents(), ""},
                                                    {documents(), "."},
                                                    {phone.root().string(), "documents"},
                                                    {phone.root().string(), ""}}) {
    File().Delete(dir, name);
    EXPECT_THAT(thrownBy([&, dir = dir, name = name] { File().Copy(documents(), "a", dir, name); }),
                HasSubstr("The folder belongs to the system"))
        << dir.view() << " " << name.view();
  }
  EXPECT_EQ(get(documents(), "a"), "1");
  // The root only where the system itself refuses: a guard that fails must not empty a disk.
  EXPECT_THAT(thrownBy([&] { File().Move("/", "", temp(), "a"); }),
              HasSubstr("The folder belongs to the system"));
}

TEST_F(FilesTest, PlainFileNames) {
  for (const char* name : {"a", "a.txt", ".hidden", "a..b", "città.png", "a b"})
    EXPECT_TRUE(kes::isPlainFileName(name)) << name;
  for (const std::string& name :
       {std::string(), std::string("."), std::string(".."), std::string("a/b"), std::string("a\\b"),
        std::string("a\0b", 3), std::string("a\nb"), std::string("a\x7f"), std::string(300, 'a')})
    EXPECT_FALSE(kes::isPlainFileName(name)) << name;
}

TEST_F(FilesTest, CopyReplacesTheTarget) {
  put(documents(), "a", "new");
  put(temp(), "b", "old and longer");
  File().Copy(documents(), "a", temp(), "b");
  EXPECT_EQ(get(temp(), "b"), "new");
  EXPECT_EQ(get(documents(), "a"), "new");

  put(documents(), "folder/in/file", "deep");
  File().Copy(documents(), "folder", temp(), "b");
  EXPECT_EQ(get(temp(), "b/in/file"), "deep");
  File().Copy(documents(), "a", temp(), "b");
  EXPECT_EQ(get(temp(), "b"), "new");

  // A source that is not there, the file itself, a folder into itself: nothing is lost.
  thrownBy([&] { File().Copy(documents(), "gone", temp(), "b"); });
  EXPECT_EQ(get(temp(), "b"), "new");
  File().Copy(temp(), "b", temp(), "b");
  EXPECT_EQ(get(temp(), "b"), "new");
  EXPECT_THAT(thrownBy([&] { File().Copy(documents(), "folder", documents(), "folder/in/x"); }),
              StartsWith("Error copying file: documents/folder/in/x"));
  EXPECT_EQ(get(documents(), "folder/in/file"), "deep");
}

TEST_F(FilesTest, AttributesSayWhatTheFileIs) {
  put(documents(), "a", "12345");
  const auto path = at(documents(), "a");
  const timespec times[2] = {{1510734600, 250000000}, {1510734600, 250000000}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(File().LastModified(documents(), "a"), 1510734600250);
  EXPECT_EQ(File().Size(documents(), "a"), 5);
  EXPECT_FALSE(File().IsDirectory(documents(), "a"));
  EXPECT_TRUE(File().IsDirectory(phone.root().string(), "documents"));

  KesMap all = File().GetAttributes(documents(), "a");
  EXPECT_TRUE(all.IsReadOnly());
  EXPECT_EQ(all.Get("NSFileType").asText(), "NSFileTypeRegular");
  EXPECT_EQ(all.Get("NSFileSize").asInt64(), 5);
  const auto date = all.Get("NSFileModificationDate").as<kes::PlatformDate>();
  ASSERT_TRUE(date);
  EXPECT_DOUBLE_EQ(date->secondsSince1970(), 1510734600.25);
  EXPECT_EQ(date->description(), "2017-11-15 08:30:00 +0000");
}

TEST_F(FilesTest, BackupFlagIsSetAndTakenBack) {
  put(documents(), "a", "x");
  const auto path = at(documents(), "a").string();
  if (::setxattr(path.c_str(), "user.trial", "1", 1, 0) != 0)
    GTEST_SKIP() << "This file system keeps no attributes of users";
  const auto flag = [&] {
    char value[16] = {};
    return ::getxattr(path.c_str(), "user.xdg.robots.backup", value, sizeof value) > 0
               ? std::string(value)
               : std::string();
  };
  File().SetExcludeFromBackup(documents(), "a", true);
  EXPECT_EQ(flag(), "false");
  File().SetExcludeFromBackup(documents(), "a", false);
  EXPECT_EQ(flag(), "");
  File().SetExcludeFromBackup(documents(), "a", false);
}

TEST_F(FilesTest, ListsTheEntriesOfAFolder) {
  put(documents(), "b", "x");
  put(documents(), "a", "x");
  put(documents(), "folder/inner", "x");
  EXPECT_THAT(textsOf(File().ListFiles(documents())), ElementsAre("a", "b", "folder"));
  EXPECT_EQ(File().ListFiles(temp()).Size(), 0);
}

TEST_F(FilesTest, TextsInCharsets) {
  File().WriteString2(documents(), "latin", "città €", "windows-1252");
  EXPECT_EQ(get(documents(), "latin"), "citt\xE0 \x80");
  EXPECT_EQ(File().ReadString2(documents(), "latin", "windows-1252"), "città €");
  File().WriteString2(documents(), "wide", "è 😀", "UTF-16");
  EXPECT_EQ(File().ReadString2(documents(), "wide", "UTF-16"), "è 😀");
  EXPECT_EQ(thrownBy([&] { File().ReadString(documents(), "latin"); }),
            "Error reading file. Incorrect encoding");
  // A text that the charset cannot hold is not written in part, nor over what was there.
  EXPECT_EQ(thrownBy([&] { File().WriteString2(documents(), "latin", "😀", "ISO-8859-1"); }),
            "Error writing file: documents/latin: The text cannot be written as ISO-8859-1");
  const Text half = Text("😀").SubString2(0, 1);
  EXPECT_EQ(thrownBy([&] { File().WriteString(documents(), "latin", half); }),
            "Error writing file: documents/latin: The text cannot be written as UTF8");
  EXPECT_EQ(get(documents(), "latin"), "citt\xE0 \x80");

  File().WriteString(documents(), "latin", "");
  EXPECT_EQ(File().ReadString(documents(), "latin"), "");
  EXPECT_EQ(File().Size(documents(), "latin"), 0);
}

TEST_F(FilesTest, ListFiles) {
  put(documents(), "l", "\n\none\r\ntwo\r\r\n three \n\n");
  EXPECT_THAT(textsOf(File().ReadList(documents(), "l")), ElementsAre("one", "two", " three "));
  KesList list = KesList::of({"a", 5, 2.5, "", "è"});
  File().WriteList(documents(), "l", list);
  EXPECT_EQ(get(documents(), "l"), "a\n5\n2.5\n\nè\n");
  put(documents(), "l", "");
  EXPECT_EQ(File().ReadList(documents(), "l").Size(), 0);
}

TEST_F(FilesTest, MapFilesKeepKeysAndValuesButNotLineBreaks) {
  KesMap map =
      kes::KesCommon::createMap({"a=b", "c=d", "==", "=", 5, 2.5, "lines", "one\ntwo\n", "blank",
                                 "  x ", "empty", "", "città", "è 😀", "back\\slash", "\\="});
  File().WriteMap(documents(), "m", map);
  const KesMap back = File().ReadMap(documents(), "m");
  EXPECT_FALSE(back.IsReadOnly());
  EXPECT_EQ(back.Size(), 8);
  const std::pair<const char*, const char*> expected[] = {
      {"a=b", "c=d"},    {"==", "="},   {"5", "2.5"},     {"lines", "one two "},
      {"blank", "  x "}, {"empty", ""}, {"città", "è 😀"}, {"back\\slash", "\\="},
  };
  for (const auto& [key, value] : expected) EXPECT_EQ(back.Get(key).asText(), value) << key;
  EXPECT_THAT(get(documents(), "m"), HasSubstr("a\\=b=c=d\n"));

  // Only line feeds are seen to: other line ends split the line.
  map.Initialize().Put("a\nb", "c\rd=e");
  File().WriteMap(documents(), "m", map);
  EXPECT_EQ(File().ReadMap(documents(), "m").Size(), 2);
  EXPECT_EQ(File().ReadMap(documents(), "m").Get("b").asText(), "c");
  EXPECT_EQ(File().ReadMap(documents(), "m").Get("d").asText(), "e");

  EXPECT_EQ(thrownBy([&] { File().WriteMap(documents(), "m2", KesMap()); }),
            "Object not initialized (Map)");
}

TEST_F(FilesTest, MapFilesOfOthers) {
  const struct {
    std::string_view bytes;
    std::vector<std::pair<std::string, std::string>> entries;
  } cases[] = {
      {"", {}},
      {"no sign\n# remark\n", {}},
      {"a\\=b\n", {}},                    // only an escaped sign
      {"=v", {{"", "v"}}},                // an empty key
      {"k=1\r\nk=2\n", {{"k", "2"}}},     // the last one wins
      {"k=a=b\\=c", {{"k", "a=b\\=c"}}},  // the value as it stands
      {"\\==v", {{"=", "v"}}},
      {"a\\\\=v=w", {{"a\\=v", "w"}}},  // a doubled backslash escapes as well
      {" k = v ", {{" k ", " v "}}},
  };
  for (const auto& c : cases) {
    put(documents(), "m", c.bytes);
    const KesMap map = File().ReadMap(documents(), "m");
    EXPECT_EQ(static_cast<std::size_t>(map.Size()), c.entries.size()) << c.bytes;
    for (const auto& [key, value] : c.entries) EXPECT_EQ(map.Get(key).asText(), value) << c.bytes;
  }
}

TEST_F(FilesTest, StreamsReadAndWriteParts) {
  const auto bytes = KesArray::initBytesWithData({'a', 'b', 'c', 'd', 'e'});
  auto out = File().OpenOutput(documents(), "s", false);
  out.WriteBytes(bytes, 1, 3);
  out.Close();
  out = File().OpenOutput(documents(), "s", true);
  out.WriteBytes(bytes, 4, 1);
  out.WriteBytes(bytes, 5, 0);
  out.Close();
  EXPECT_EQ(get(documents(), "s"), "bcde");
  File().OpenOutput(documents(), "s", false).Close();
  EXPECT_EQ(get(documents(), "s"), "");

  put(documents(), "s", "12345");
  auto in = File().OpenInput(documents(), "s");
  const auto buffer = KesArray::initBytesWithData({'.', '.', '.', '.', '.'});
  KesInputStream same = in;
  EXPECT_EQ(in.ReadBytes(buffer, 1, 2), 2);
  EXPECT_EQ(same.ReadBytes(buffer, 3, 2), 2);
  EXPECT_EQ(std::string(buffer->bytesData().begin(), buffer->bytesData().end()), ".1234");
  EXPECT_EQ(in.ReadBytes(buffer, 0, 5), 1);
  EXPECT_EQ(in.ReadBytes(buffer, 0, 5), 0);
  in.Close();
  EXPECT_EQ(thrownBy([&] { same.ReadBytes(buffer, 0, 1); }),
            "Error reading from stream: The stream is closed");
  EXPECT_EQ(thrownBy([&] { out.WriteBytes(bytes, 0, 1); }),
            "Error writing to stream: The stream is closed");

  const struct {
    std::int32_t offset, length;
    const char* message;
  } outside[] = {{-1, 1, "Out of bounds. Index=-1 Length=5"},
                 {0, -1, "Out of bounds. Index=0 Length=5"},
                 {0, 6, "Out of bounds. Index=6 Length=5"},
                 {5, 1, "Out of bounds. Index=6 Length=5"},
                 {2147483647, 2147483647, "Out of bounds. Index=4294967294 Length=5"}};
  for (const auto& c : outside) {
    KesInputStream memory;
    EXPECT_EQ(thrownBy([&] { memory.InitializeFromBytesArray(bytes, c.offset, c.length); }),
              c.message);
    EXPECT_EQ(thrownBy([&] { out.WriteBytes(bytes, c.offset, c.length); }), c.message);
  }
  EXPECT_THAT(thrownBy([&] { KesInputStream().Close(); }),
              StartsWith("Object was not initialized ("));
}

TEST_F(FilesTest, StreamsMayBeClosedTwiceAndOutliveTheirFile) {
  put(documents(), "s", "12345");
  auto in = File().OpenInput(documents(), "s");
  auto out = File().OpenOutput(documents(), "s", true);
  out.write(KesArray::initBytesWithData({'6'})->bytesData());
  File().Delete(documents(), "s");
  out.write(KesArray::initBytesWithData({'7'})->bytesData());
  EXPECT_EQ(in.readAll(), (std::vector<std::uint8_t>{'1', '2', '3', '4', '5', '6', '7'}));
  for (int i = 0; i < 2; ++i) {
    in.Close();
    out.Close();
  }
  EXPECT_FALSE(File().Exists(documents(), "s"));
  // What copies from a closed stream says so, and writes nothing.
  KesOutputStream memory;
  memory.InitializeToBytesArray(0);
  EXPECT_EQ(thrownBy([&] { KesFile::Copy2(in, memory); }),
            "Error reading from stream: The stream is closed");
  EXPECT_EQ(memory.ToBytesArray()->Length(), 0);
}

TEST_F(FilesTest, StreamsInMemory) {
  KesOutputStream out;
  out.InitializeToBytesArray(-5);
  const auto bytes = KesArray::initBytesWithData({1, 2, 3, 4});
  out.WriteBytes(bytes, 0, 4);
  out.WriteBytes(bytes, 2, 2);
  out.Close();
  EXPECT_THAT(out.ToBytesArray()->bytesData(), ElementsAre(1, 2, 3, 4, 3, 4));

  KesInputStream in;
  in.InitializeFromBytesArray(bytes, 1, 2);
  bytes->setByteFast(1, 99);  // the stream reads what was there when it was made
  EXPECT_THAT(in.readAll(), ElementsAre(2, 3));
  EXPECT_THAT(thrownBy([&] { File().OpenOutput(documents(), "f", false).ToBytesArray(); }),
              StartsWith("Invalid object type|Expected: "));
}

// Gives what it is told, in pieces, and notes what was asked for.
class PiecewiseInput final : public kes::InputStream {
 public:
  explicit PiecewiseInput(std::vector<std::ptrdiff_t> pieces) : pieces_(std::move(pieces)) {}
  std::ptrdiff_t read(std::span<std::uint8_t> into) override {
    asked.push_back(into.size());
    const auto n = pieces_.empty() ? 0 : pieces_.front();
    if (!pieces_.empty()) pieces_.erase(pieces_.begin());
    if (n < 0) return fail("The cable was cut");
    std::fill_n(into.begin(), n, 'x');
    return n;
  }
  void close() override { closed = true; }
  std::vector<std::size_t> asked;
  bool closed = false;

 private:
  std::vector<std::ptrdiff_t> pieces_;
};

TEST_F(FilesTest, Copy2GoesBlockByBlockAndClosesTheInputOnly) {
  auto source = makeShared<PiecewiseInput>(std::vector<std::ptrdiff_t>{8192, 1, 8192, 0});
  KesOutputStream out;
  out.InitializeToBytesArray(0);
  KesFile::Copy2(KesInputStream::over(source), out);
  EXPECT_THAT(source->asked, ElementsAre(8192, 8192, 8192, 8192));
  EXPECT_TRUE(source->closed);
  EXPECT_EQ(out.ToBytesArray()->Length(), 8192 + 1 + 8192);
  out.WriteBytes(KesArray::initBytesWithData({1}), 0, 1);
  EXPECT_EQ(out.ToBytesArray()->Length(), 8192 + 1 + 8192 + 1);

  auto failing = makeShared<PiecewiseInput>(std::vector<std::ptrdiff_t>{5, -1});
  EXPECT_EQ(thrownBy([&] { KesFile::Copy2(KesInputStream::over(failing), out); }),
            "Error reading from stream: The cable was cut");
}

TEST_F(FilesTest, FullDiskIsSaid) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "No device that is always full";
  EXPECT_EQ(thrownBy([&] { File().WriteString("/dev", "full", "x"); }),
            "Error writing file: /dev/full: No space left on device");
  auto out = File().OpenOutput("/dev", "full", false);
  EXPECT_EQ(thrownBy([&] { out.WriteBytes(KesArray::initBytesWithData({1}), 0, 1); }),
            "Error writing to stream: /dev/full: No space left on device");
}

}  // namespace
