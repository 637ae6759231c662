// kes_cinfocitta: builds an entity of the city directory in code, for features whose
// places do not come from a directory document. The result is `_entity`, in the form
// that the entity page shows. Main thread.
#pragma once

#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"

namespace varlo {

using namespace kes;

class kes_cinfocitta final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_cinfocitta>& c);

  void _initialize(Ref<Kes> bi, Text name);
  void _aggiungitelefono(const Text& title, const Text& value, const Text& note);
  // The coordinates are numbers, or nil where the place has none.
  void _aggiungiindirizzo(const Text& title, const Text& value, const Text& note,
                          const Value& latitude, const Value& longitude);

  KesMap _entity;

 private:
  KesList section(const char* key);
};

}  // namespace varlo
