#include "runtime/data/store/key_value_store.h"

#include <filesystem>
#include <thread>

#include "data_fixture.h"
#include "runtime/data/files/file.h"
#include "runtime/data/serialized/serializer.h"

using kes::kes_keyvaluestore;
using kes::KesBitmap;
using kes::KesInputStream;

namespace {

const std::string kPng = "\x89PNG\r\n\x1a\nrest";
const std::string kJpeg = "\xFF\xD8\xFF\xE0rest";

// Ends the transaction that it is read in, then fails.
struct Saboteur final : kes::InputStream {
  explicit Saboteur(kes::sqlite::Database& database) : database(database) {}
  std::ptrdiff_t read(std::span<std::uint8_t>) override {
    database.rollback();
    return fail("sabotage");
  }
  void close() override {}
  kes::sqlite::Database& database;
};

class KeyValueStore : public RecordedTest {
 protected:
  KeyValueStore() { store->_initialize(recorder->bi(), documents, "infovarlo.db"); }
  // What the sqlite3 program finds in the file.
  std::string table() {
    return outputOf("sqlite3 " + documents +
                    "infovarlo.db 'SELECT key, typeof(value), hex(value) FROM main ORDER BY key'");
  }
  static KesInputStream streamOf(std::string_view text) {
    KesInputStream s;
    s.InitializeFromBytesArray(arrayOf(text), 0, static_cast<std::int32_t>(text.size()));
    return s;
  }

  const std::string documents = phone.folders().documents;
  Ref<kes_keyvaluestore> store = kes::make<kes_keyvaluestore>();
};

}  // namespace

TEST_F(KeyValueStore, KeepsEachKindOfValueInOneTable) {
  store->_putsimple("zona", "Zona B");
  store->_putsimple("zona", "Zona è");
  store->_putsimple("numero", 7);
  store->_putsimple("si", true);
  store->_putsimple("nulla", {});
  store->_putsimple("byte", arrayOf("\xFF"));
  store->_putbitmap("foto", KesBitmap::over(bytesOf(kPng)));
  auto stream = streamOf("da lontano");
  store->_putinputstream("flusso", stream);
  EXPECT_EQ(thrownBy([&] { stream.read({}); }), "Error reading from stream: The stream is closed");

  EXPECT_EQ(table(),
            "byte|blob|FF\n"
            "flusso|blob|6461206C6F6E74616E6F\n"
            "foto|blob|89504E470D0A1A0A72657374\n"
            "nulla|null|\n"
            "numero|integer|37\n"
            "si|integer|31\n"
            "zona|text|5A6F6E6120C3A8\n");
  EXPECT_EQ(outputOf("sqlite3 " + documents + "infovarlo.db .schema"),
            "CREATE TABLE main(key TEXT PRIMARY KEY, value NONE);\n");

  EXPECT_EQ(store->_getsimple("zona"), "Zona è");
  EXPECT_EQ(store->_getsimple("numero"), "7");
  EXPECT_EQ(store->_getsimple("nulla"), "");
  EXPECT_EQ(store->_getsimple("byte"), "") << "bytes that are no text";
  EXPECT_EQ(store->_getsimple("flusso"), "da lontano");
  EXPECT_EQ(textOf(*store->_getbitmap("foto").native()->bytes()), kPng);
  EXPECT_EQ(textOf(store->_getinputstream("flusso").readAll()), "da lontano");

  EXPECT_EQ(store->_getsimple("assente"), "");
  EXPECT_TRUE(store->_getobject("assente").isNil());
  EXPECT_FALSE(store->_getbitmap("assente").IsInitialized());
  EXPECT_FALSE(store->_getinputstream("assente").IsInitialized());
  EXPECT_TRUE(store->_getencryptedobject("assente", "pw").isNil());
  EXPECT_FALSE(phone.logged("Not supported."));
  EXPECT_TRUE(store->_getencryptedobject("zona", "pw").isObject());
  EXPECT_TRUE(phone.logged("Not supported."));
  EXPECT_EQ(thrownBy([&] { store->_getbitmap("zona"); }), "Error loading image.");
  EXPECT_EQ(thrownBy([&] { store->_getobject("zona"); }), "Unknown type in readObject: 195");
  EXPECT_EQ(thrownBy([&] { store->_getobject("nulla"); }), "Unknown type in readObject: 255");
}

TEST_F(KeyValueStore, AnObjectIsLengthFlagAndCompressedForm) {
  KesMap map;
  map.Initialize().Put("n", KesList::of({1, 2.5, "tre"}));
  store->_putobject("o", map);
  const auto packed = kes::KesSerializator::write(map, true);
  char length[9];
  std::snprintf(length, sizeof length, "%08zX", packed.size());
  std::string hex = toHex(packed);
  for (auto& c : hex) c = static_cast<char>(std::toupper(c));
  EXPECT_EQ(table(), "o|blob|" + std::string(length) + "01" + hex + "\n");
  EXPECT_EQ(store->_getobject("o"), Value(map));
  EXPECT_FALSE(store->_getobject("o").as<KesMap>()->IsReadOnly());
  store->_putobject("o", {});
  EXPECT_TRUE(store->_getobject("o").isNil());
  EXPECT_TRUE(store->_containskey("o"));
}

TEST_F(KeyValueStore, KeysComeAndGo) {
  store->_putsimple("b", 1);
  store->_putsimple("a", 2);
  store->_remove("assente");
  EXPECT_TRUE(store->_containskey("a"));
  EXPECT_EQ(store->_listkeys().Size(), 2);
  EXPECT_NE(store->_listkeys().IndexOf("b"), -1);
  store->_remove("a");
  EXPECT_FALSE(store->_containskey("a"));
  store->_deleteall();
  EXPECT_EQ(store->_listkeys().Size(), 0);
  store->_deleteall();
  store->_putsimple("'; DROP TABLE main; --", "x");
  EXPECT_EQ(store->_listkeys().Get(0), Value("'; DROP TABLE main; --"));
}

TEST_F(KeyValueStore, SaysSoWhenItWasNeverOpened) {
  const auto fresh = kes::make<kes_keyvaluestore>();
  fresh->_putsimple("k", "lost");
  EXPECT_TRUE(phone.logged("Error saving object: Object was not initialized (KesSQL)"));
  for (const auto& call : std::vector<std::function<void()>>{
           [&] { fresh->_getsimple("k"); }, [&] { fresh->_getobject("k"); },
           [&] { fresh->_remove("k"); }, [&] { fresh->_listkeys(); }, [&] { fresh->_deleteall(); }})
    EXPECT_EQ(thrownBy(call), "Object was not initialized (KesSQL)");
  fresh->_close();
}

TEST_F(KeyValueStore, ClosesAndOpensAgain) {
  store->_putsimple("k", "v");
  const auto first = store->_sql1->db;
  store->_initialize(recorder->bi(), documents, "infovarlo.db");
  EXPECT_FALSE(first->isOpen()) << "the former one is closed";
  EXPECT_EQ(store->_getsimple("k"), "v");
  store->_initialize(recorder->bi(), documents, "other.db");
  EXPECT_EQ(store->_getsimple("k"), "");
  store->_close();
  store->_putsimple("k", "lost");
  EXPECT_TRUE(phone.logged("Error saving object: BeginTransaction error: the database is closed"));
  EXPECT_EQ(thrownBy([&] { store->_getsimple("k"); }), "ExecQuery error: the database is closed");
  store->_initialize(recorder->bi(), documents, "infovarlo.db");
  EXPECT_EQ(store->_getsimple("k"), "v");
}

// Symptom: a damaged file locked the citizen out of the page that keeps its zone there.
TEST_F(KeyValueStore, ADamagedFileIsSetAsideAndAFreshOneBegun) {
  namespace fs = std::filesystem;
  const fs::path folder = documents;
  store->_putsimple("k", std::string(20000, 'x'));
  store->_close();
  const auto good = TestPlatform::read(folder / "infovarlo.db");
  const auto altered = [&](std::size_t at, std::string_view bytes) {
    return std::string(good).replace(at, bytes.size(), bytes);
  };
  const struct {
    const char* what;
    std::string bytes;
    const char* reason;
  } cases[] = {
      {"no database", "Comune di Varlo", "file is not a database"},
      {"cut off", good.substr(0, 9000), "malformed"},
      {"a page overwritten", altered(4096, std::string(64, '\xA5')), "database main *** Page"},
      {"a format to come", altered(44, std::string("\0\0\0\x63", 4)), "unsupported file format"},
      {"another table", altered(good.find("value NONE"), "other"), "its table is another one"},
  };
  const std::string aside = "infovarlo.db.damaged-2017-11-15";
  int number = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    phone.clearLog();
    TestPlatform::write(folder / "infovarlo.db", c.bytes);
    TestPlatform::write(folder / "infovarlo.db-shm", "of the damaged one");
    const auto name = ++number == 1 ? aside : aside + "-" + std::to_string(number);
    store->_initialize(recorder->bi(), documents, "infovarlo.db");
    EXPECT_TRUE(phone.logged("The store infovarlo.db is damaged (")) << phone.lines().size();
    EXPECT_TRUE(phone.logged(c.reason));
    EXPECT_TRUE(phone.logged("It was set aside as " + name + "."));
    EXPECT_EQ(TestPlatform::read(folder / name), c.bytes);
    EXPECT_EQ(TestPlatform::read(folder / (name + "-shm")), "of the damaged one");
    EXPECT_EQ(store->_listkeys().Size(), 0);
    store->_putsimple("k", "fresh");
    store->_initialize(recorder->bi(), documents, "infovarlo.db");
    EXPECT_EQ(store->_getsimple("k"), "fresh") << "a sound one stays";
    store->_close();
  }
  // What is only held up is not damaged.
  kes::KesSQL other;
  other.Initialize(documents, "infovarlo.db", false);
  other.BeginTransaction();
  EXPECT_EQ(thrownBy([&] { store->_initialize(recorder->bi(), documents, "infovarlo.db"); }),
            "Initialize error: database is locked");
  other.Rollback();
  store->_initialize(recorder->bi(), documents, "infovarlo.db");
  EXPECT_EQ(store->_getsimple("k"), "fresh");
}

TEST_F(KeyValueStore, IsForItsOwnerOnlyAndLeavesNothingElse) {
  namespace fs = std::filesystem;
  const auto file = fs::path(documents) / "infovarlo.db";
  const auto mine = fs::perms::owner_read | fs::perms::owner_write;
  EXPECT_EQ(fs::status(file).permissions(), mine);
  store->_putobject("o", "x");
  EXPECT_TRUE(fs::is_empty(phone.folders().temporary));
  fs::permissions(file, fs::perms(0644));
  store->_initialize(recorder->bi(), documents, "infovarlo.db");
  EXPECT_EQ(fs::status(file).permissions(), mine);
  store->_sql1->BeginTransaction();
  store->_sql1->ExecNonQuery("DELETE FROM main");
  EXPECT_EQ(fs::status(file.string() + "-journal").permissions(), mine);
  store->_sql1->Rollback();
}

TEST_F(KeyValueStore, APutThatFailsIsLoggedAndLeavesTheFormerValue) {
  store->_putsimple("k", "former");
  const struct {
    const char* what;
    std::function<void()> put;
    const char* line;
  } cases[] = {
      {"an object that no tag stands for",
       [&] { store->_putobject("k", makeShared<kes::Object>()); },
       "Error saving object: Cannot serialize: <Object>"},
      {"a bitmap of another format",
       [&] { store->_putbitmap("k", KesBitmap::over(bytesOf(kJpeg))); },
       "Error saving object: Cannot write image as PNG"},
      {"no bitmap", [&] { store->_putbitmap("k", {}); },
       "Error saving object: Object was not initialized (UIImage)"},
      {"a stream that was closed",
       [&] {
         auto stream = streamOf("x");
         stream.Close();
         store->_putinputstream("k", stream);
       },
       "Error saving object: Error reading from stream: The stream is closed"},
      {"an array of objects", [&] { store->_putsimple("k", KesArray::initObjectsWithData({1})); },
       "Error saving object: ExecNonQuery error: an array of objects cannot be stored"},
      {"no room",
       [&] {
         const auto limit = [&](const char* pages) {
           store->_sql1->ExecQuerySingleResult(std::string("PRAGMA max_page_count = ") + pages);
         };
         limit("4");
         store->_putsimple("k", std::string(100000, 'x'));
         limit("1000000");
       },
       "Error saving object: ExecNonQuery error: database or disk is full"},
      {"another thread's transaction",
       [&] {
         store->_sql1->limits.lock = std::chrono::milliseconds(20);
         std::thread([&] { store->_sql1->BeginTransaction(); }).join();
         store->_putsimple("k", "x");
       },
       "Error saving object: Error acquiring lock. Make sure that all transactions are closed."},
  };
  for (const auto& c : cases) {
    phone.clearLog();
    EXPECT_EQ(thrownBy(c.put), "") << c.what;
    EXPECT_THAT(phone.lines(), ElementsAre(c.line)) << c.what;
    if (store->_sql1->db->inTransaction()) continue;  // of the thread that is gone
    EXPECT_EQ(store->_getsimple("k"), "former") << c.what;
    store->_putsimple("other", "fine");
    EXPECT_EQ(store->_getsimple("other"), "fine") << c.what;
  }
  EXPECT_TRUE(store->_sql1->db->inTransaction()) << "it was not ours to end";
}

TEST_F(KeyValueStore, NotEvenAFailureToUndoReachesTheCaller) {
  const auto stream = KesInputStream::over(makeShared<Saboteur>(*store->_sql1->db));
  EXPECT_EQ(thrownBy([&] { store->_putinputstream("k", stream); }), "");
  EXPECT_THAT(phone.lines(),
              ElementsAre("Error saving object: Error reading from stream: sabotage",
                          "Rollback error: cannot rollback - no transaction is active"));
}

TEST_F(KeyValueStore, BitmapsAreTheBytesOfTheirFiles) {
  const auto& assets = phone.folders().assets;
  phone.write(assets + "/logo.png", kPng);
  phone.write(assets + "/logo@2x.png", kPng + "double");
  phone.write(assets + "/photo.jpg", kJpeg);
  phone.write(assets + "/empty.png", "");

  KesBitmap bitmap;
  bitmap.Initialize(assets, "Logo.png");
  EXPECT_EQ(bitmap.native()->bytes()->size(), kPng.size());
  EXPECT_EQ(bitmap.native()->scale(), 1);
  KesBitmap::screenScale = [] { return 2.0; };
  bitmap.Initialize(assets, "Logo.png");
  EXPECT_EQ(bitmap.native()->bytes()->size(), kPng.size() + 6);
  EXPECT_EQ(bitmap.native()->scale(), 2);
  bitmap.Initialize(assets, "photo.jpg");
  EXPECT_EQ(bitmap.native()->scale(), 1) << "there is no double one";
  EXPECT_EQ(bitmap.native()->format(), "JPEG");
  KesBitmap::screenScale = nullptr;
  EXPECT_EQ(thrownBy([&] { bitmap.Initialize(assets, "empty.png"); }), "Error loading image.");
  EXPECT_THAT(thrownBy([&] { bitmap.Initialize(assets, "none.png"); }),
              StartsWith("Error reading file: "));

  kes::KesOutputStream out;
  out.InitializeToBytesArray(10);
  bitmap.WriteToStream(out, 80, "jpeg");
  EXPECT_EQ(textOf(out.ToBytesArray()->bytesData()), kJpeg);
  KesBitmap::encoder = [](const kes::EncodedImage& image, std::string_view format, int quality) {
    return bytesOf(std::string(image.format()) + " as " + std::string(format) + " at " +
                   std::to_string(quality));
  };
  store->_putbitmap("k", bitmap);
  KesBitmap::encoder = nullptr;
  EXPECT_EQ(store->_getsimple("k"), "JPEG as PNG at 100");
}
