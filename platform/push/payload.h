// What a message may be: the text of one JSON object of at most 64 KiB that nests at most
// 64 levels deep. docs/push.md describes it to whoever sends one. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace push {

inline constexpr std::size_t kLargestPayload = 64 * 1024;  // bytes
inline constexpr std::size_t kDeepestPayload = 64;         // levels

struct Payload {
  std::string refusal;  // why it is refused; empty: it is not
  std::string id;       // its member "id" where that is a text or a whole number
};
Payload readPayload(std::string_view bytes);

// A short name of some bytes, the same on every machine; no secret (64-bit FNV-1a, hex).
std::string digest(std::string_view bytes);

}  // namespace push
