#include "app/infocitta/cinfocitta.h"

namespace varlo {

void kes_cinfocitta::describe(ClassBuilder<kes_cinfocitta>& c) {
  c.name("kes_cinfocitta");
  c.sub<&kes_cinfocitta::_initialize>("initialize");
  c.field<&kes_cinfocitta::_entity>("entity");
}

void kes_cinfocitta::_initialize(Ref<Kes>, Text name) {
  initializeClassModule();
  _entity.Initialize();
  _entity.Put("Name", name);
}

KesList kes_cinfocitta::section(const char* key) {
  if (!_entity.ContainsKey(key)) {
    KesList fresh;
    fresh.Initialize();
    _entity.Put(key, fresh);
  }
  return KesList::fromBoxed(_entity.Get(key));
}

void kes_cinfocitta::_aggiungitelefono(const Text& title, const Text& value, const Text& note) {
  section("Contacts").Add(c().createMap({"Title", title, "Value", value, "Note", note, "Type", 0}));
}

void kes_cinfocitta::_aggiungiindirizzo(const Text& title, const Text& value, const Text& note,
                                        const Value& latitude, const Value& longitude) {
  KesMap address = c().createMap({"Title", title, "Value", value, "Note", note});
  // A place without coordinates is shown and leads nowhere.
  if (latitude.isNumber() && longitude.isNumber()) {
    address.Put("Latitude", latitude);
    address.Put("Longitude", longitude);
  }
  section("Addresses").Add(address);
}

}  // namespace varlo
