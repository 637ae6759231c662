// Bytes as servers compress them, made by zlib itself.
#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>

enum class Frame { Zlib = 15, None = -15, Gzip = 31 };

inline std::string deflated(std::string_view plain, Frame frame, int level = 6) {
  z_stream z{};
  if (deflateInit2(&z, level, Z_DEFLATED, static_cast<int>(frame), 8, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::runtime_error("deflateInit2");
  std::string out(deflateBound(&z, plain.size()), '\0');
  z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
  z.avail_in = static_cast<uInt>(plain.size());
  z.next_out = reinterpret_cast<Bytef*>(out.data());
  z.avail_out = static_cast<uInt>(out.size());
  deflate(&z, Z_FINISH);
  out.resize(z.total_out);
  deflateEnd(&z);
  return out;
}
