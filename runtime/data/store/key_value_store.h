// kes_keyvaluestore: a persistent dictionary, the table "main" of one SQLite file.
//
// A class instance of the module that keeps it; main thread. Not opened, by _initialize,
// it throws "Object was not initialized (KesSQL)". Each put is a transaction
// that replaces the key's former value. A put that fails writes "Error saving object: "
// and the reason to the log, throws nothing and leaves the former value. The other
// operations throw what KesSQL, KesSerializator and KesBitmap throw. An object is stored
// as a KesRandomAccessFile would write it, in big-endian order at position 0.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/data/files/bitmap.h"
#include "runtime/data/store/sql.h"

namespace kes {

class kes_keyvaluestore final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_keyvaluestore>& c);

  // Opens the file, which is made when missing; an open store is closed first. A damaged one
  // is set aside under a name with the date, which the log tells, and a fresh one begun.
  void _initialize(const Ref<Kes>& ba, const Text& dir, const Text& fileName);
  void _class_globals() override;
  void _close();

  void _putsimple(const Text& key, const Value& value);
  Text _getsimple(const Text& key);  // "" when absent
  void _putobject(const Text& key, const Value& object);
  Value _getobject(const Text& key);  // nil when absent
  // There is no encryption: logs "Not supported." and gives a bare object.
  Value _getencryptedobject(const Text& key, const Text& password);
  void _putbitmap(const Text& key, const KesBitmap& bitmap);  // as PNG
  KesBitmap _getbitmap(const Text& key);                      // not initialised when absent
  // Reads the stream to its end and closes it.
  void _putinputstream(const Text& key, const KesInputStream& stream);
  KesInputStream _getinputstream(const Text& key);  // not initialised when absent

  void _remove(const Text& key);
  bool _containskey(const Text& key);
  KesList _listkeys();
  void _deleteall();

  Ref<KesSQL> _sql1 = platform::makeShared<KesSQL>();
  Text _tempfolder;
  Text _tempfile;

 private:
  void _createtable();
  std::string damage();
  KesResultSet _getcursor(const Text& key);
  void _start(const Text& key);
  void _insertquery(const Text& key, const Value& value);
  void _complete(bool success);
  template <class MakeValue>
  void put(const Text& key, MakeValue makeValue);
  // The blob of the key, or null when the key is absent.
  Ref<KesArray> blobOf(const Text& key);
};

}  // namespace kes
