// The region's open-data service wants to know who asks: its address gets the town's
// token, and no other address does. Main thread.
#pragma once

#include "runtime/core/text.h"

namespace varlo {

// The address, with the token if its scheme, host and port are those of the service.
kes::Text openDataAddress(const kes::Text& address);

}  // namespace varlo
