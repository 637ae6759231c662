// The town's words and colour where the platform speaks and paints by itself. Set by the
// program's main, on the main thread, before it makes its screen.
#pragma once

namespace varlo {

void setBranding();

}  // namespace varlo
