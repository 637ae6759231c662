// The one gate to the outside: which addresses leave the application, and in what form.
//
// Addresses come from documents and pages that anybody may have written. Only http, https,
// tel and mailto pass, each reduced to what it is for: a telephone number is digits and a
// leading "+", a letter has an address and a subject and nothing else, a web address names
// a host and has every byte escaped that does not belong into one. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ui {

// The address as it may be handed to the desktop, or nothing where it may not be.
std::optional<std::string> outgoingLink(std::string_view address);

// The scheme in lower case, without its colon; empty where the address has none.
std::string schemeOf(std::string_view address);

}  // namespace ui
