#include "runtime/data/store/key_value_store.h"

#include "runtime/data/files/file.h"
#include "runtime/data/serialized/random_access_file.h"
#include "runtime/data/store/set_aside.h"

namespace kes {

namespace {
constexpr std::int32_t kStreamSize = 100;
constexpr std::int32_t kBestQuality = 100;
}  // namespace

void kes_keyvaluestore::describe(ClassBuilder<kes_keyvaluestore>& c) {
  using Me = kes_keyvaluestore;
  c.name("kes_keyvaluestore");
  c.sub<&Me::_initialize>("initialize");
  c.sub<&Me::_close>("close");
  c.sub<&Me::_putsimple>("putsimple");
  c.sub<&Me::_getsimple>("getsimple");
  c.sub<&Me::_putobject>("putobject");
  c.sub<&Me::_getobject>("getobject");
  c.sub<&Me::_getencryptedobject>("getencryptedobject");
  c.sub<&Me::_putbitmap>("putbitmap");
  c.sub<&Me::_getbitmap>("getbitmap");
  c.sub<&Me::_putinputstream>("putinputstream");
  c.sub<&Me::_getinputstream>("getinputstream");
  c.sub<&Me::_remove>("remove");
  c.sub<&Me::_containskey>("containskey");
  c.sub<&Me::_listkeys>("listkeys");
  c.sub<&Me::_deleteall>("deleteall");
  c.field<&Me::_sql1>("sql1");
  c.field<&Me::_tempfolder>("tempfolder");
  c.field<&Me::_tempfile>("tempfile");
}

void kes_keyvaluestore::_class_globals() {
  _tempfolder = File().DirTemp();
  _tempfile = "key_value_temp.dat";
}

void kes_keyvaluestore::_initialize(const Ref<Kes>&, const Text& dir, const Text& fileName) {
  initializeClassModule();
  if (_sql1->IsInitialized()) _sql1->Close();
  _sql1->Initialize(dir, fileName, true);
  if (const auto why = damage(); !why.empty()) {
    const auto path = _sql1->path();
    _sql1->Close();
    const Text kept = setAside(path);
    KesCommon::Log(formatText("The store %@ is damaged (%@). It was set aside as %@.",
                              {fileName, Text(why).Replace("\n", " "), kept}));
    _sql1->Initialize(dir, fileName, true);
  }
  _createtable();
}

// Why the store can't be used as it is; empty when it can, or is new.
std::string kes_keyvaluestore::damage() {
  auto why = _sql1->damage();
  if (!why.empty()) return why;
  const auto columns = _sql1->ExecQuerySingleResult(
      "SELECT count(*) || ' ' || total(name IN ('key', 'value')) FROM pragma_table_info('main')");
  const auto found = columns.textView();
  return found == "0 0.0" || found == "2 2.0" ? "" : "its table is another one";
}

void kes_keyvaluestore::_close() { _sql1->Close(); }

void kes_keyvaluestore::_createtable() {
  _sql1->ExecNonQuery("CREATE TABLE IF NOT EXISTS main(key TEXT PRIMARY KEY, value NONE)");
}

KesResultSet kes_keyvaluestore::_getcursor(const Text& key) {
  return _sql1->ExecQuery2("SELECT value FROM main WHERE key = ?", KesList::of({key}));
}

Ref<KesArray> kes_keyvaluestore::blobOf(const Text& key) {
  auto cursor = _getcursor(key);
  if (!cursor.NextRow()) return nullptr;
  auto blob = cursor.GetBlob2(0);
  cursor.Close();
  return blob ? blob : KesArray::initBytesWithData({});
}

void kes_keyvaluestore::_start(const Text& key) {
  _sql1->BeginTransaction();
  const Value arguments[] = {key};
  _sql1->execute("DELETE FROM main WHERE key = ?", arguments);
}

void kes_keyvaluestore::_insertquery(const Text& key, const Value& value) {
  const Value arguments[] = {key, value};
  _sql1->execute("INSERT INTO main VALUES(?, ?)", arguments);
}

void kes_keyvaluestore::_complete(bool success) {
  if (success) return _sql1->TransactionSuccessful();
  KesCommon::Log("Error saving object: " + c().LastException().description());
  // Where not even the transaction could begin there is nothing to undo, and what
  // another thread has open is not ours to undo.
  if (!_sql1->lock || !_sql1->lock->isMine()) return;
  try {
    _sql1->Rollback();
  } catch (const std::exception& e) {
    KesCommon::Log(e.what());
  }
}

template <class MakeValue>
void kes_keyvaluestore::put(const Text& key, MakeValue makeValue) {
  try {
    _start(key);
    _insertquery(key, makeValue());
    _complete(true);
  } catch (const std::exception& e) {
    Kes::SetException(e);
    _complete(false);
  }
}

void kes_keyvaluestore::_putsimple(const Text& key, const Value& value) {
  put(key, [&] { return value; });
}

Text kes_keyvaluestore::_getsimple(const Text& key) {
  const Value arguments[] = {key};
  return _sql1->singleResult("SELECT value FROM main WHERE key = ?", arguments).asText();
}

void kes_keyvaluestore::_putobject(const Text& key, const Value& object) {
  put(key, [&]() -> Value {
    File().Delete(_tempfolder, _tempfile);
    KesRandomAccessFile file;
    file.Initialize(_tempfolder, _tempfile, false);
    // It lives on for whoever has it open, and for nobody else.
    File().Delete(_tempfolder, _tempfile);
    file.WriteKexObject(object, file.CurrentPosition);
    file.Flush();
    const auto length = static_cast<std::int32_t>(file.CurrentPosition);
    auto bytes = KesArray::initBytes({length});
    file.ReadBytes(bytes, 0, length, 0);
    file.Close();
    return bytes;
  });
}

Value kes_keyvaluestore::_getobject(const Text& key) {
  const auto blob = blobOf(key);
  if (!blob) return {};
  KesRandomAccessFile file;
  file.Initialize3(blob, false);
  Value object = file.ReadKexObject(file.CurrentPosition);
  file.Close();
  return object;
}

Value kes_keyvaluestore::_getencryptedobject(const Text& key, const Text&) {
  if (!blobOf(key)) return {};
  KesCommon::Log("Not supported.");
  return platform::makeShared<Object>();
}

void kes_keyvaluestore::_putbitmap(const Text& key, const KesBitmap& bitmap) {
  put(key, [&] {
    KesOutputStream out;
    out.InitializeToBytesArray(kStreamSize);
    bitmap.WriteToStream(out, kBestQuality, "PNG");
    return Value(out.ToBytesArray());
  });
}

KesBitmap kes_keyvaluestore::_getbitmap(const Text& key) {
  const auto blob = blobOf(key);
  return blob ? KesBitmap::over(blob->bytesData()) : KesBitmap();
}

void kes_keyvaluestore::_putinputstream(const Text& key, const KesInputStream& stream) {
  put(key, [&] {
    KesOutputStream out;
    out.InitializeToBytesArray(kStreamSize);
    KesFile::Copy2(stream, out);
    return Value(out.ToBytesArray());
  });
}

KesInputStream kes_keyvaluestore::_getinputstream(const Text& key) {
  KesInputStream stream;
  if (const auto blob = blobOf(key)) stream.InitializeFromBytesArray(blob, 0, blob->Length());
  return stream;
}

void kes_keyvaluestore::_remove(const Text& key) {
  _sql1->ExecNonQuery2("DELETE FROM main WHERE key = ?", KesList::of({key}));
}

bool kes_keyvaluestore::_containskey(const Text& key) {
  const auto count = _sql1->ExecQuerySingleResult2("SELECT count(key) FROM main WHERE key = ?",
                                                   KesList::of({key}));
  return Kes::ObjectToLongNumber(count) != 0;
}

KesList kes_keyvaluestore::_listkeys() {
  KesList keys;
  keys.Initialize();
  auto cursor = _sql1->ExecQuery("SELECT key FROM main");
  while (cursor.NextRow()) keys.Add(cursor.GetString2(0));
  return keys;
}

void kes_keyvaluestore::_deleteall() {
  _sql1->ExecNonQuery("DROP TABLE main");
  _createtable();
}

}  // namespace kes
