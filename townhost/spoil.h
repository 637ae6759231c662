// Carries out a fault on an answer that is otherwise ready to be sent.
//
// Pure function, any thread, nothing is thrown. A delay is none of its business:
// that one waits, the others change the answer.
#pragma once

#include "townhost/engine.h"
#include "townhost/faults.h"

namespace town {

void spoil(Answer& answer, const Fault& fault);

}  // namespace town
