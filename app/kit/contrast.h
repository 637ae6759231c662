// The town's colour, and text that can be read on one that a document chose. Main thread.
#pragma once

#include <cstdint>

namespace varlo {

// How well two colours (ARGB, alpha not looked at) stand apart: 1 for the same, 21 for
// black on white, 4.5 for what small text needs.
double contrast(std::int32_t a, std::int32_t b);

// What the bars are painted in; dialogs of the app's own making take it too.
std::int32_t townColor();

// Black, or white where black could not be read.
std::int32_t readableOn(std::int32_t background);

}  // namespace varlo
