// A body in a content coding: a line with the coding, then the body. In whatever pieces it
// comes, the same has to come out of it.
#include "platform/url/content_decoder.h"

#include "target.h"

using platform::ContentDecoder;

namespace {

constexpr std::size_t kEnough = std::size_t{4} << 20;

struct Outcome {
  std::string plain;
  bool whole = false;
};

Outcome decoded(std::string_view coding, std::string_view body, std::size_t piece) {
  Outcome o;
  const auto decoder = ContentDecoder::make(coding, [&](std::string_view plain) {
    fuzz::require(!plain.empty(), "a piece holds something");
    o.plain.append(plain);
    return o.plain.size() < kEnough;
  });
  if (!decoder) return o;
  bool good = true;
  for (; good && !body.empty(); body.remove_prefix(std::min(piece, body.size())))
    good = decoder->write(body.substr(0, piece));
  o.whole = good && decoder->end();
  fuzz::require(o.whole || o.plain.size() >= kEnough || !decoder->error().empty(),
                "a failure has its reason");
  return o;
}

}  // namespace

void fuzz::coding(Bytes input) {
  auto body = textOf(input);
  const auto coding = takeLine(body);
  const auto whole = decoded(coding, body, body.size() + 1);
  if (whole.plain.size() >= kEnough) return;
  const auto pieces = decoded(coding, body, 3);
  require(pieces.whole == whole.whole, "pieces make no difference");
  // How much comes out before damage is found may differ.
  require(!whole.whole || pieces.plain == whole.plain, "nor in what comes out");
}
