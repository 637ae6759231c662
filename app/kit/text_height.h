// Heights that hold text, in points at the citizen's text size. Main thread.
#pragma once

#include "runtime/core/language/common.h"
#include "runtime/views/base/device.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace varlo {

// A height of the design; never less than it was designed.
inline double textHeight(double dip) {
  return kes::device::textHeight(kes::KesCommon::DipToCurrent(dip));
}

// How high all of a label's words are in its width, in their whole size.
inline double wordsHeight(const kes::KesLabelWrapper& label) {
  return label.Text().empty() ? 0 : label.view().sizeThatFits({label.Width(), 0}).height;
}

}  // namespace varlo
