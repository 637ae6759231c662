// textHeight(): a height of the design that holds text, in points at the citizen's text
// size; never less than it was designed. Main thread.
#pragma once

#include "runtime/core/language/common.h"
#include "runtime/views/base/device.h"

namespace varlo {

inline double textHeight(double dip) {
  return kes::device::textHeight(kes::KesCommon::DipToCurrent(dip));
}

}  // namespace varlo
