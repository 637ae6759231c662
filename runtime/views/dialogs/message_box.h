// Message boxes: a title, a text and buttons. Texts are the text forms of the values.
// The answer is an event from the queue, its parameter the text of the button pressed.
// Main thread. Without a window nothing is shown and no event comes; nothing throws.
#pragma once

#include "runtime/core/kes.h"
#include "runtime/core/list.h"

namespace kes {

// One button "OK", no event.
void Msgbox(const Value& message, const Value& title);
// Raises prefix + "_click:".
void Msgbox2(const Ref<Kes>& bi, const Text& eventPrefix, const Value& message, const Value& title,
             const KesList& buttons);
// Raises "msgbox_result:" with the object given back as its sender.
Value Msgbox2Async(const Ref<Kes>& bi, const Value& message, const Value& title,
                   const KesList& buttons);

}  // namespace kes
