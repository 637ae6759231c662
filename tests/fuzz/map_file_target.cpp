// A file of "key=value" lines.
#include "runtime/data/files/file.h"
#include "target.h"
#include "tests/support/test_platform.h"

void fuzz::map_file(Bytes input) {
  const auto folder = kes::File().DirTemp();
  testing_support::TestPlatform::write(kes::File().Combine(folder, "map").str(), textOf(input));
  const bool read = accepts([&] {
    const auto map = kes::File().ReadMap(folder, "map");
    kes::File().WriteMap(folder, "copy", map);
    require(kes::File().ReadMap(folder, "copy").isEqual(map), "a written map reads back");
  });
  require(read == kes::isUtf8(textOf(input)), "what is text is read, and nothing else");
  accepts([&] { kes::File().ReadList(folder, "map"); });
}
