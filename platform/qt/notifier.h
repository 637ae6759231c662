// Notifications on the desktop, through its notification service on the session bus.
// Where there is no bus or no service nothing is shown. Never blocks. Main thread.
#pragma once

#include "platform/ui/screen.h"

namespace qt {

// Whether it was handed to a bus.
bool notifyDesktop(const ui::Notification& notification);

}  // namespace qt
