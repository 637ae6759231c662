
#include "platform/pictures/formats.h"

namespace pictures {

namespace {

// A block of the camera's notes, in whichever byte order it says it has. Reading beyond its
// end gives 0.
class Notes {
 public:
  explicit Notes(Bytes bytes) : bytes_(bytes), little_(startsWith(bytes, "II")) {}
  bool valid() const { return (little_ || startsWith(bytes_, "MM")) && word(2) == 42; }
  unsigned word(std::size_t at) const {
    if (at + 2 > bytes_.size()) return 0;
    return little_ ? bytes_[at] | bytes_[at + 1] << 8u : bytes_[at] << 8u | bytes_[at + 1];
  }
  std::size_t offset(std::size_t at) const {
    return little_ ? word(at) | std::size_t{word(at + 2)} << 16u
                   : std::size_t{word(at)} << 16u | word(at + 2);
  }

 private:
  Bytes bytes_;
  bool little_;
};

constexpr unsigned kOrientation = 0x0112;
constexpr std::size_t kEntrySize = 12, kValueAt = 8;

}  // namespace

int orientationOf(Bytes exif) {
  const Notes notes(exif);
  if (!notes.valid()) return 1;
  const std::size_t directory = notes.offset(4);
  const unsigned entries = notes.word(directory);
  for (std::size_t i = 0; i < entries && directory + 2 + i * kEntrySize < exif.size(); ++i) {
    const std::size_t entry = directory + 2 + i * kEntrySize;
    if (notes.word(entry) != kOrientation) continue;
    const unsigned turn = notes.word(entry + kValueAt);
    return turn >= 1 && turn <= 8 ? static_cast<int>(turn) : 1;
  }
  return 1;
}

}  // namespace pictures
