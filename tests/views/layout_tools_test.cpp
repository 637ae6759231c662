#include <fstream>
#include <iterator>

#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"
#include "runtime/views/wrappers/web_view_wrapper.h"
#include "tools/layout_printer.h"
#include "views_fixture.h"

namespace kes {
namespace {

const std::vector<std::string> kLayouts = {
    "layatti",       "layclv",    "laycontent", "layempty", "laylbl",      "laymenu", "laymenuday",
    "laymenuscuola", "layscview", "laysv",      "layweb",   "laywebtitle", "lay_item"};

std::string sourceOf(const std::string& name) {
  std::ifstream in(std::string(LAYOUT_SOURCES) + "/" + name + ".layout");
  return {std::istreambuf_iterator<char>(in), {}};
}

// A view of every kind with every property somewhere.
const char* kEverything = R"(
# comment
variant 320x480
variant 375x667
title: "È \"qui\"\n\\"
duration: 250
dumpingRatio: 0.75
toolbar4:
  btype: 12
  font: bold 9
  tag: "t"

panel a
  eventName: "altro"
  frame 320x480: left 1 width 2.5, top 3 height 4
  frame 375x667: right -1 width 2, bottom 3 height 4
  tag: "T"
  backgroundColor: keep
  borderWidth: 1.5
  borderColor: #80112233
  label b
    frame: left 0 right 0, top 0 bottom 0
    font: "Material Icons" 20 "\u{E0CD}"
    text: "x"
custom c
  frame: left 0 right 0, top 0 bottom 0
  customType: "T"
  customProperties:
    Int: -3
    Float: 0.1
    Double: 0.1d
    Yes: yes
    Color: #010203
    Text: "testo: # no"
    Inner:
      Deep: 1
textfield d
  frame: left 0 right 0, top 0 bottom 0
  keyboardType: email
  returnKey: search
  textAlignment: justified
)";

TEST(LayoutTools, WhatWasCompiledPrintsToASourceOfTheSameBytes) {
  std::vector<std::pair<std::string, std::string>> sources{{"everything", kEverything}};
  for (const auto& name : kLayouts) sources.emplace_back(name, sourceOf(name));
  for (const auto& [name, source] : sources) {
    const std::string bytes = layouts::toBytes(layouts::compile(source, name));
    const std::string printed = layouts::print(layouts::fromBytes(bytes));
    EXPECT_EQ(layouts::toBytes(layouts::compile(printed, name)), bytes) << printed;
  }
  const auto printed = layouts::print(layouts::compile(kEverything, "e"));
  for (const char* line :
       {"  frame 375x667: right -1 width 2, bottom 3 height 4\n", "    Double: 0.1d\n",
        "    font: \"Material Icons\" 20 \"\\u{E0CD}\"\n", "  keyboardType: email\n",
        "  borderColor: #80112233\n", "title: \"È \\\"qui\\\"\\n\\\\\"\n", "      Deep: 1\n"})
    EXPECT_THAT(printed, HasSubstr(line));
}

TEST(LayoutTools, FaultsNameTheLineAndWhatIsWrong) {
  const std::string frame = "\n  frame: left 0 right 0, top 0 bottom 0\n";
  const struct {
    std::string source, message;
  } cases[] = {
      {"", "t:1: the layout needs a variant"},
      {"variant 320", "t:1: expected a size"},
      {"variant 0x5", "t:1: expected a size"},
      {"variant 1x1\nvariant 1x1", "t:2: this variant stands here twice"},
      {"variant 1x1\n\tlabel a", "t:2: indent with blanks"},
      {"variant 1x1\nlabel a\n    frame: left 0 right 0, top 0 bottom 0\n  text: \"x\"",
       "t:4: this indentation matches no line above"},
      {"  variant 1x1", "t:1: the first line must not be indented"},
      {"variant 1x1\ntavolo a", "t:2: unknown kind of view 'tavolo'; known are view, panel"},
      {"variant 1x1\nlabel 1a", "t:2: expected a name"},
      {"variant 1x1\nlabel a" + frame + "label A" + frame, "t:4: there are two views called 'A'"},
      {"variant 1x1\nlabel a", "t:2: 'label a' has no frame for 1x1"},
      {"variant 1x1\nlabel a\n  frame 2x2: left 0 right 0, top 0 bottom 0", "t:3: no variant 2x2"},
      {"variant 1x1\nlabel a\n  frame: left 0 right 0", "t:3: a frame is two parts"},
      {"variant 1x1\nlabel a\n  frame: left 0 rihgt 0, top 0 bottom 0", "found \"left 0 rihgt 0\""},
      {"variant 1x1\nlabel a\n  frame: left x right 0, top 0 bottom 0", "t:3: 'x' is no length"},
      {"variant 1x1\nlabel a" + frame + "  colour: #000000",
       "t:4: a label has no property 'colour'"},
      {"variant 1x1\ncolour: #000000", "t:2: the layout has no property 'colour'"},
      {"variant 1x1\nlabel a" + frame + "  textColor: #12345", "t:4: textColor: expected a colour"},
      {"variant 1x1\nlabel a" + frame + "  multiline: maybe", "t:4: multiline: expected yes or no"},
      {"variant 1x1\nlabel a" + frame + "  text: \"x", "t:4: text: the text has no closing quote"},
      {"variant 1x1\nlabel a" + frame + "  text: \"\\u{D800}\"", "\\u{...} needs a character"},
      {"variant 1x1\nlabel a" + frame + "  font: sytem 3", "t:4: font: expected a font"},
      {"variant 1x1\nlabel a" + frame + "  alpha: 1e999", "t:4: alpha: expected a number"},
      {"variant 1x1\nlabel a" + frame + "  textAlignment: middle", "expected one of left, center"},
      {"variant 1x1\nlabel a" + frame + "  text: \"x\"\n    deeper: 1",
       "t:5: nothing can be indented"},
      {"variant 1x1\nlabel a" + frame + "  label b" + frame, "t:4: a label holds no views"},
      {"variant 1x1\ntitle: \"a\"\ntitle: \"b\"", "t:3: 'title' stands here twice"},
      {"variant 1x1\ncustom a" + frame, "t:2: a custom view needs its customType"},
  };
  for (const auto& c : cases) {
    std::string message;
    try {
      layouts::compile(c.source, "t");
    } catch (const layouts::Error& e) {
      message = e.what();
    }
    EXPECT_THAT(message, HasSubstr(c.message)) << c.source;
  }
}

TEST(LayoutTools, TheReaderRefusesWhatIsCutOffOrGoesOn) {
  const std::string bytes = layouts::toBytes(layouts::compile(kEverything, "e"));
  for (std::size_t n = 0; n < bytes.size(); ++n)
    EXPECT_THROW(layouts::fromBytes(bytes.substr(0, n)), layouts::Error) << n;
  EXPECT_THROW(layouts::fromBytes(bytes + "x"), layouts::Error);
}

// --- The app's own.

class Anyone final : public EventNotes {
 public:
  static void describe(ClassBuilder<Anyone>& c) { c.name("Anyone"); }
};

// Scales, as the designer scripts of all layouts do; the thirteenth has none.
template <std::size_t N>
class ScaleLayout final : public Object {
 public:
  static void describe(ClassBuilder<ScaleLayout>& c) {
    c.name(kLayouts[N] == "laycontent" ? "none" : "LS_" + kLayouts[N]);
    c.template method<&ScaleLayout::general>("LS_general:::");
  }
  void general(Ref<KesLayoutData> layout, int w, int h) {
    KesLayoutBuilder::setScaleRate(0.3f);
    KesLayoutBuilder::scaleAll(layout, w, h);
  }
};

std::vector<std::string> namesIn(const ui::View& view) {
  std::vector<std::string> names;
  for (const auto& child : view.children()) {
    if (!child->name().empty()) names.push_back(child->name());
    const auto inner = namesIn(*child);
    names.insert(names.end(), inner.begin(), inner.end());
  }
  return names;
}

void expectInside(const ui::View& parent, const std::string& where) {
  for (const auto& child : parent.children()) {
    const ui::Rect f = child->frame(), all = parent.bounds();
    EXPECT_TRUE(f.x >= 0 && f.y >= 0 && f.right() <= all.width + 0.01 &&
                f.bottom() <= all.height + 0.01 && f.width > 0 && f.height > 0)
        << where << ": " << child->name() << " " << f.x << "," << f.y << " " << f.width << "x"
        << f.height;
    if (dynamic_cast<KesPanelView*>(child.get())) expectInside(*child, where);
  }
}

constexpr char kListView[] = "kes_customlistview", kSearchView[] = "kes_searchview";

TEST(AppLayouts, AllLoadWithTheirViewsOnPhonesOfEverySize) {
  ClassRegistry::instance().addAll<Anyone, Bystander<kListView>, Bystander<kSearchView>>();
  [&]<std::size_t... N>(std::index_sequence<N...>) {
    ClassRegistry::instance().addAll<ScaleLayout<N>...>();
  }
  (std::make_index_sequence<13>());
  const std::map<std::string, std::vector<std::string>> views = {
      {"layatti", {"atti_caption", "atti_oggetto"}},
      {"layclv", {"clv"}},
      {"laycontent", {"pcontent"}},
      {"layempty", {}},
      {"laylbl", {"msglbl"}},
      {"laymenu",
       {"menuheader", "menutown", "menumotto", "menubody", "lstmenu", "menufooter", "lblversion"}},
      {"laymenuday", {"logo", "ltitle", "ltel", "laddress", "menudayline", "ppost"}},
      {"laymenuscuola", {"lbltile", "schoolline", "scday", "lblvalue", "lblnote"}},
      {"layscview", {"scview", "before", "after"}},
      {"laysv", {"sv"}},
      {"layweb", {"web"}},
      {"laywebtitle", {"subtitle", "subtitleline", "web"}},
      {"lay_item", {"item_image", "item_title", "item_value", "item_note"}},
  };
  ASSERT_EQ(views.size(), 13u);
  const std::map<std::string, ui::Size> rows = {
      {"lay_item", {0, 80}}, {"layatti", {-50, 100}}, {"laylbl", {-50, 200}}};
  for (const ui::Size screen :
       {ui::Size{320, 480}, {320, 568}, {375, 667}, {414, 896}, {768, 1024}}) {
    RuntimePhone phone(screen);
    auto owner = make<Anyone>(0);
    for (const auto& [name, expected] : views) {
      const std::string where = name + " on " + std::to_string(int(screen.width));
      writeLayout(name, sourceOf(name));
      auto panel = fresh<KesPanelWrapper>(owner->bi());
      const auto row = rows.find(name);
      const ui::Size size = row == rows.end()
                                ? ui::Size{screen.width, screen.height - 64}
                                : ui::Size{screen.width + row->second.width, row->second.height};
      panel.SetLayoutAnimated(0, 1, 0, 0, size.width, size.height);
      panel.LoadLayout(name, owner->bi());
      EXPECT_EQ(namesIn(panel.view()), expected) << where;
      expectInside(panel.view(), where);
      EXPECT_EQ(panel.Color() | 0xFFFFFF, -1) << where << ": the background shows through";
    }
  }
}

TEST(AppLayouts, OnlyWhatARowOrDialogHoldsStaysAsItWasLoaded) {
  for (const auto& name : kLayouts) {
    const auto layout = layouts::compile(sourceOf(name), name);
    const auto* follows = layout.root.find("handleResizeEvent");
    const bool fixed = name == "lay_item" || name == "layatti";
    EXPECT_EQ(follows && std::get<bool>(*follows), !fixed) << name;
  }
}

}  // namespace
}  // namespace kes
