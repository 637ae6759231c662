// The Qt side of the simulated phone. The header is free of the toolkit.
#pragma once

#include <memory>

#include "simulator/side.h"

namespace sim {

// Throws std::runtime_error with one line that says what to do where there is no display.
std::unique_ptr<Side> makeQtSide(platform::Platform& platform, const Options& options);

}  // namespace sim
