// What a damaged layout file can do: nothing but fail, with a bounded use of memory.
#include "runtime/views/layout/data_input_stream.h"
#include "views_fixture.h"

namespace kes {
namespace {

using Bytes = std::string;

void putInt(Bytes& out, std::int64_t v) {
  for (int i = 0; i < 4; ++i) out += static_cast<char>(v >> (8 * i) & 0xFF);
}
void putText(Bytes& out, std::string_view text) {
  putInt(out, static_cast<std::int64_t>(text.size()));
  out += text;
}
KesDataInputStream streamOf(const Bytes& bytes) {
  return KesDataInputStream(KesInputStream::over(memoryInput({bytes.begin(), bytes.end()})));
}

TEST(LayoutFile, EveryTypeOfValueIsReadAsDescribed) {
  const std::vector<Text> table{"a", "testo"};
  struct Case {
    const char* what;
    Bytes value;  // type byte and value
    Value read;
    NumberType type;
  };
  using namespace std::string_literals;
  const Case cases[] = {
      {"integer", "\x01\xFE\xFF\xFF\xFF"s, -2, NumberType::Int},
      {"text in place", "\x02\x03\0\0\0\xC3\xA8!"s, "è!", {}},
      {"true", "\x05\x01"s, 1, NumberType::Int},
      {"neither true nor 1", "\x05\x02"s, 0, NumberType::Int},
      {"colour, alpha first", "\x06\x80\x01\x02\x03"s, 0x80010203u, NumberType::UnsignedInt},
      {"float", "\x07\0\0\xC0\x3F"s, 1.5f, NumberType::Float},
      {"text of the table", "\x09\x01\0\0\0"s, "testo", {}},
      {"double", "\x0A\0\0\0\0\0\0\xF8\x3F"s, 1.5, NumberType::Double},
  };
  for (const auto& c : cases) {
    auto in = streamOf("\0\0\0\0"s + c.value + "\0\0\0\0\x04"s);
    const Value read = *in.readMap(table)->find(std::string_view("a"));
    EXPECT_EQ(read, c.read) << c.what;
    if (read.isNumber()) {
      EXPECT_EQ(read.numberType(), c.type) << c.what;
    }
  }
  const std::pair<int, const char*> unknown[] = {{0, "0"}, {8, "8"}, {11, "11"}, {200, "-56"}};
  for (const auto& [tag, shown] : unknown) {
    auto in = streamOf(Bytes(4, '\0') + static_cast<char>(tag) + Bytes(20, '\0'));
    EXPECT_EQ(thrownBy([&] { in.readMap(table); }), std::string("Unknown type: ") + shown);
  }
}

TEST(LayoutFile, AShortStreamReadsAsNothingAndEndsAsAnUnknownType) {
  auto in = streamOf("\x01\x02");
  EXPECT_EQ(in.readInt(), 0);
  EXPECT_TRUE(in.atEnd());
  EXPECT_EQ(in.readByte(), -1);
  EXPECT_EQ(in.readLong(), 0);
  EXPECT_EQ(thrownBy([&] { in.readMap({}); }), "Unknown type: -1");
}

TEST(LayoutFile, PromisesOfSizeAreNotBelieved) {
  const auto expectFailure = [](const Bytes& bytes, auto read, const char* text) {
    auto in = streamOf(bytes);
    EXPECT_THAT(thrownBy([&] { read(in); }), HasSubstr(text));
  };
  Bytes negative, huge;
  putInt(negative, -1);
  putInt(huge, 0x7FFFFFFF);
  expectFailure(
      negative, [](auto& in) { in.readString(); }, "Invalid text length: -1");
  expectFailure(
      negative, [](auto& in) { in.readStringTable(); }, "Invalid number of texts: -1");
  expectFailure(
      huge, [](auto& in) { in.readMap({}); }, "Invalid text number: 2147483647");
  Bytes bad;
  putText(bad, "\xFF\xFE");
  expectFailure(
      bad, [](auto& in) { in.readString(); }, "Error decoding data as string.");
  // Two thousand million texts, or bytes, of which none is there.
  auto table = streamOf(huge);
  EXPECT_LE(table.readStringTable().size(), 1u);
  auto text = streamOf(huge + "abc");
  EXPECT_TRUE(text.readString().empty());
  auto skipped = streamOf("abc");
  skipped.readAndDiscard(std::int64_t{1} << 40);
  EXPECT_TRUE(skipped.atEnd());

  // Without a table keys stand in place, in maps within maps too.
  Bytes plain;
  putText(plain, "box");
  plain += '\x03';
  putText(plain, "larghezza");
  plain += '\x01';
  putInt(plain, 7);
  for (int i = 0; i < 2; ++i) {
    putText(plain, "fine");
    plain += '\x04';
  }
  const auto outer = streamOf(plain).readMap();
  const auto inner = outer->find(std::string_view("box"))->as<Dictionary>();
  ASSERT_TRUE(inner);
  EXPECT_TRUE(*inner->find(std::string_view("larghezza")) == Value(7));

  // Each level: key, map; a hundred thousand of them.
  Bytes deep;
  for (int i = 0; i < 100000; ++i) {
    putInt(deep, 0);
    deep += '\x03';
  }
  auto in = streamOf(deep);
  EXPECT_THAT(thrownBy([&] { in.readMap({Text("k")}); }), HasSubstr("nested deeper"));
}

constexpr char kSomebody[] = "Somebody";

class DamagedLayout : public ViewsTest {
 protected:
  DamagedLayout() {
    ClassRegistry::instance().add<Bystander<kSomebody>>();
    bytes = layouts::toBytes(layouts::compile(R"(
variant 320x480
variant 375x667
title: "Pagina"
handleResizeEvent: yes
duration: 100
topRight0:
  btype: -1
  text: "x"
panel box
  frame: left 10 right 10, top 20 height 100
  label title
    frame: right 8 width 50, bottom 4 height 20
    font: "FontAwesome" 20 "\u{F015}"
custom other
  frame: left 0 width 10, top 0 height 10
  customType: "Somebody"
  customProperties:
    A: 1.5
    B: 2.5d
    C: "c"
slider s
  frame: left 0 width 10, top 0 height 10
)",
                                              "t"));
    page = phone.showPage(nullptr, "page");
  }
  // True when it loaded; fails the test for anything but the runtime's own exception.
  bool loads(const Bytes& file) {
    writeLayoutBytes("t", file);
    page.RootPanel().RemoveAllViews();
    try {
      page.RootPanel().LoadLayout("t", nullptr);
    } catch (const KesException&) {
      return false;
    }
    phone.pump.drain();
    return true;
  }

  Bytes bytes;
  KesPage page;
};

TEST_F(DamagedLayout, NoPrefixLoads) {
  ASSERT_TRUE(loads(bytes));
  EXPECT_EQ(page.RootPanel().NumberOfViews(), 3);
  for (std::size_t n = 0; n < bytes.size(); ++n)
    EXPECT_FALSE(loads(bytes.substr(0, n))) << n << " bytes";
  EXPECT_TRUE(loads(bytes + "rest"));
  EXPECT_EQ(thrownBy([&] {
              writeLayoutBytes("t", "");
              page.RootPanel().LoadLayout("t", nullptr);
            }),
            "t.kil|Unknown type: -1");
  EXPECT_TRUE(phone.test.logged("Layout file t.kil is damaged: Unknown type: -1"));
}

TEST_F(DamagedLayout, AMissingFileIsNamed) {
  const std::string text = thrownBy([&] { page.RootPanel().LoadLayout("LayNiente", nullptr); });
  EXPECT_THAT(text, testing::StartsWith("Error opening stream: "));
  EXPECT_THAT(text, HasSubstr("layniente.kil"));
  Bytes none;
  for (int i = 0; i < 3; ++i) putInt(none, 0);
  putInt(none, 0);  // no variant
  putInt(none, 0);
  EXPECT_FALSE(loads(none));
}

}  // namespace
}  // namespace kes
