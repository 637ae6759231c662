// A charset's name in a line, then a text to escape and to unescape.
#include "runtime/net/string_utils.h"
#include "target.h"

using kes::iStringUtils;

void fuzz::url(Bytes input) {
  if (!kes::isUtf8(textOf(input))) return;
  auto text = textOf(input);
  const auto charset = takeLine(text);
  require(iStringUtils::DecodeUrl(iStringUtils::EncodeUrl(text, "UTF8"), "UTF8") == text,
          "an escaped text comes back");
  accepts([&] { iStringUtils::DecodeUrl(text, charset); });
  accepts([&] {
    const auto escaped = iStringUtils::EncodeUrl(text, charset);
    require(escaped.view().find_first_of(" /?#&=+\"<>\n") == std::string_view::npos,
            "nothing that means something in a URL is left");
  });
}
