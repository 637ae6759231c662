#include "runtime/core/exception.h"

namespace kes {

Text formatText(std::string_view format, std::initializer_list<std::string_view> pieces) {
  std::string out;
  auto piece = pieces.begin();
  for (std::size_t at = 0;;) {
    const std::size_t hole = piece == pieces.end() ? std::string_view::npos : format.find("%@", at);
    out.append(format.substr(at, hole == std::string_view::npos ? hole : hole - at));
    if (hole == std::string_view::npos) return Text(out);
    out.append(*piece++);
    at = hole + 2;
  }
}

}  // namespace kes
