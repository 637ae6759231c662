// What readers are told goes through here. The toolkit's items and the browser engine raise
// events about accessible objects of their own, which would lead a reader past the tree: to
// other names, without our actions, in places as if a page began at the window's corner. They
// are retold about what stands for those objects in the AccessibleTree; what nothing stands
// for, its reader never hears of. Main thread.
#pragma once

#include <QAccessible>

namespace qt {

// One hook for the process, set with its first tree and gone with its last.
void relayEvents(bool on);
// Hears one, as the toolkit's hook does.
void relayEvent(QAccessibleEvent& event);
// Hands one to readers as it is, if any listens.
void handOn(QAccessibleEvent& event);

}  // namespace qt
