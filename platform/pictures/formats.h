// What each format can do for picture.h, which is their only user: say whether a file is
// theirs, read its header, and decode it. Extents are those of the file, before any turn.
#pragma once

#include "platform/pictures/picture.h"

namespace pictures {

struct Header {
  Extent stored;
  int orientation = 1;  // as in EXIF, 1 to 8
};

// decode() gives exactly the wanted size, which is nowhere larger than the stored one.
struct Format {
  bool (*is)(Bytes file);
  Header (*header)(Bytes file);
  Bitmap (*decode)(Bytes file, Extent wanted);
};

extern const Format kPng, kJpeg, kGif, kWebp, kBmp;

std::vector<std::uint8_t> encodePng(const Bitmap& bitmap);
std::vector<std::uint8_t> encodeJpeg(const Bitmap& bitmap, int quality);

// The orientation noted in an EXIF block (which begins with its byte order); 1 if none is.
int orientationOf(Bytes exif);

// Refuses what would take more memory than is allowed while it is decoded.
void limitWork(std::int64_t bytes);

inline bool startsWith(Bytes file, std::string_view magic) {
  return file.size() >= magic.size() &&
         std::string_view(reinterpret_cast<const char*>(file.data()), magic.size()) == magic;
}

}  // namespace pictures
