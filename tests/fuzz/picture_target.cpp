// A file that says it is a picture.
#include "platform/pictures/picture.h"
#include "target.h"

void fuzz::picture(Bytes input) {
  try {
    const auto size = pictures::sizeOf(input);
    require(size.width > 0 && size.height > 0, "a picture has a size");
    for (const pictures::Extent wanted : {pictures::Extent{7, 3}, {64, 64}}) {
      const auto bitmap = pictures::decode(input, wanted);
      require(bitmap.size.width <= wanted.width && bitmap.size.height <= wanted.height,
              "no larger than wanted");
    }
  } catch (const pictures::Unreadable&) {
    // Refused, as it may be.
  }
}
