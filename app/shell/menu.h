// The left menu: one table, top to bottom, of what the app has. Nothing else lists the
// features. Main thread.
#pragma once

#include <cstdint>
#include <span>

#include "runtime/core/value.h"
#include "runtime/views/base/font.h"

namespace varlo {

class kes_main;

struct MenuRow {
  kes::KesFont (*font)(float size);
  std::int32_t icon;  // a character of the font
  const char* label;
  std::int32_t value;  // what the shell knows the row by
  // What a tap on the row shows; null for what the app does not have.
  void (*open)(kes_main& app);
  // What a tap on a row of the list that it shows does; null where there is nothing to tap.
  void (*tap)(kes_main& app, const kes::Value& value);
  // What is read aloud, where the label alone would not tell.
  const char* spoken = nullptr;
};

std::span<const MenuRow> menu();
// Null for a value that no row has.
const MenuRow* menuRow(std::int64_t value);

}  // namespace varlo
