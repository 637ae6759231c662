#include "platform/url/content_decoder.h"

#include <gtest/gtest.h>

#include "coded.h"

using platform::ContentDecoder;

namespace {

struct Outcome {
  bool whole = false;
  std::string plain;
  std::string error;
};

Outcome decoded(std::string_view coding, std::string_view bytes, std::size_t piece) {
  Outcome o;
  const auto decoder = ContentDecoder::make(coding, [&](std::string_view plain) {
    o.plain.append(plain);
    return true;
  });
  if (!decoder) return {true, std::string(bytes), ""};
  bool good = true;
  for (; good && !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
    good = decoder->write(bytes.substr(0, piece));
  o.whole = good && decoder->end();
  o.error = decoder->error();
  return o;
}

std::string longText() {
  std::string text;
  for (int i = 0; text.size() < 70'000; ++i) text += "La città di Varlo, n. " + std::to_string(i);
  return text;
}

}  // namespace

TEST(ContentDecoder, UndoesWhatItKnowsAndPassesOnTheRest) {
  const auto text = longText();
  const auto gzip = deflated(text, Frame::Gzip), zlib = deflated(text, Frame::Zlib);
  const struct {
    const char* coding;
    std::string bytes, plain;
  } cases[] = {
      {"gzip", gzip, text},
      {"X-GZip", gzip, text},
      {"deflate", zlib, text},
      {"deflate", deflated(text, Frame::None), text},
      {"deflate", deflated("stored", Frame::None, 0), "stored"},
      {" identity ,\tgzip", gzip, text},
      {"deflate, gzip", deflated(zlib, Frame::Gzip), text},
      {"gzip", gzip + deflated(" and more", Frame::Gzip), text + " and more"},
      {"gzip", gzip + std::string(600, '\0'), text},
      {"gzip", deflated("", Frame::Gzip), ""},
      {"gzip", "", ""},
      {"identity", "as it is", "as it is"},
      {"", "as it is", "as it is"},
      {"utf-8", "as it is", "as it is"},
      {"br", "as it is", "as it is"},
      {"gzip, utf-8", gzip, gzip},
  };
  for (const auto& c : cases)
    for (const std::size_t piece : {std::size_t{1}, std::size_t{1000}, c.bytes.size() + 1}) {
      SCOPED_TRACE(std::string(c.coding) + " in pieces of " + std::to_string(piece));
      const auto o = decoded(c.coding, c.bytes, piece);
      EXPECT_TRUE(o.whole) << o.error;
      EXPECT_TRUE(o.plain == c.plain) << o.plain.size() << " bytes";
    }
}

TEST(ContentDecoder, RefusesWhatIsCutOffOrDamaged) {
  const std::string text = "Comune di Varlo, Comune di Varlo";
  for (const auto& [coding, bytes] :
       {std::pair{"gzip", deflated(text, Frame::Gzip)}, {"deflate", deflated(text, Frame::Zlib)}}) {
    SCOPED_TRACE(coding);
    for (std::size_t n = 1; n < bytes.size(); ++n)
      EXPECT_EQ(decoded(coding, bytes.substr(0, n), 7).error, "The body's compression breaks off.")
          << n;
    EXPECT_FALSE(decoded(coding, bytes + bytes.substr(0, 12), 7).whole &&
                 std::string_view(coding) == "gzip")
        << "a second member is cut off";
  }
  EXPECT_EQ(decoded("gzip", "plain after all", 100).error, "The body's compression is damaged.");
  EXPECT_EQ(decoded("gzip, gzip, gzip, gzip", "x", 1).error,
            "The body is compressed too many times.");
  const auto sinkSaysNo = ContentDecoder::make("gzip", [](auto) { return false; });
  EXPECT_FALSE(sinkSaysNo->write(deflated(text, Frame::Gzip)));
  EXPECT_EQ(sinkSaysNo->error(), "");
}
