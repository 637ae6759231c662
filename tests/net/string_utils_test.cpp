#include "runtime/net/string_utils.h"

#include "net_fixture.h"

TEST(UrlTexts, AreEscapedByteByByteAndBack) {
  const struct {
    const char *text, *charset;
    const char* escaped;
  } cases[] = {
      {"", "UTF8", ""},
      {"AZaz09-._~", "UTF8", "AZaz09-._~"},
      {"!*'();:@&=+$,/?%#[]", "UTF8", "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D"},
      {" \"<>\\^`{|}\n", "UTF8", "%20%22%3C%3E%5C%5E%60%7B%7C%7D%0A"},
      {"è😀", "UTF8", "%C3%A8%F0%9F%98%80"},
      {"è", "ISO-8859-1", "%E8"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(iStringUtils::EncodeUrl(c.text, c.charset), c.escaped);
    EXPECT_EQ(iStringUtils::DecodeUrl(c.escaped, c.charset), c.text);
  }
  EXPECT_EQ(iStringUtils::DecodeUrl("100%, a+b %zz %4", "UTF8"), "100%, a+b %zz %4");
  EXPECT_EQ(iStringUtils::DecodeUrl("è%c3%a8", "UTF8"), "èè");
  EXPECT_THROW(iStringUtils::DecodeUrl("%ff", "UTF8"), KesException);
  EXPECT_THROW(iStringUtils::EncodeUrl("a", "no-such-charset"), KesException);
}
