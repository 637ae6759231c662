// Numbers as bytes in a chosen order, whatever the processor. Unaligned pointers are
// fine; the caller answers for the room behind them. Any thread.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace kes {

enum class ByteOrder : bool { Big, Little };

namespace detail {
template <class T>
void orderBytes(unsigned char (&bytes)[sizeof(T)], ByteOrder order) {
  if ((order == ByteOrder::Little) != (std::endian::native == std::endian::little))
    std::reverse(bytes, bytes + sizeof(T));
}
}  // namespace detail

template <class T>
void storeNumber(void* to, T v, ByteOrder order) {
  unsigned char bytes[sizeof(T)];
  std::memcpy(bytes, &v, sizeof v);
  detail::orderBytes<T>(bytes, order);
  std::memcpy(to, bytes, sizeof v);
}

template <class T>
T loadNumber(const void* from, ByteOrder order) {
  unsigned char bytes[sizeof(T)];
  std::memcpy(bytes, from, sizeof bytes);
  detail::orderBytes<T>(bytes, order);
  T v;
  std::memcpy(&v, bytes, sizeof v);
  return v;
}

}  // namespace kes
