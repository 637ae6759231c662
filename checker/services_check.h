// What is served besides documents, where the town's address serves it: news, newsletter,
// acts, events. One thread.
#pragma once

#include "checker/town_reader.h"

namespace check {

void checkServices(TownReader& town);

}  // namespace check
