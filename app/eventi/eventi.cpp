// Coming events of the town and of its sports clubs, from their public pages.
#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_fbeventi_scarica(Text, Text) {
  c().Log("Menu row " + std::to_string(_imenu) + " has no feature yet.");
  co_return;
}

void kes_main::_fbeventi_leggidati(Text, Text) {}

Resumable<> kes_main::_fbeventi_sport() {
  c().Log("Menu row 32 has no feature yet.");
  co_return;
}

Resumable<> kes_main::_fbeventi_apri(Text) { co_return; }

}  // namespace varlo
