// What the system says of a file, for a person: "assets/logo.png: No such file or
// directory". Any thread; throws nothing.
#pragma once

#include <string>

#include "runtime/core/text.h"

namespace kes {

// A path as messages show it: from its named folder on ("documents/a.txt") when it lies in
// one, else as it stands. Bytes that are no text become "?".
Text displayPath(std::string_view path);

Text systemError(std::string_view path, int code);
Text systemError(std::string_view path, std::string_view reason);

}  // namespace kes
