// Described: what is no Object of the runtime and yet has a text form of its own.
#pragma once

#include "runtime/core/text.h"

namespace kes {

class Described {
 public:
  virtual Text description() const = 0;

 protected:
  ~Described() = default;
};

}  // namespace kes
