#include <cmath>

#include "runtime/views/layout/geometry.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "views_fixture.h"

namespace kes {
namespace {

// A custom view of the application, and one of the runtime: both note what they are told.
class Badge final : public KesClass {
 public:
  static void describe(ClassBuilder<Badge>& c) {
    c.name("Badge");
    c.sub<&Badge::_initialize>("initialize");
    c.sub<&Badge::create>("designercreateview");
    c.sub<&Badge::resize>("base_resize");
  }
  void _initialize(Ref<Kes>, Value callback, Text eventName) {
    initializeClassModule();
    trace.push_back("for " + std::string(callback.object()->className()) + " as " +
                    eventName.str());
  }
  void create(KesPanelWrapper base, KesLabelWrapper label, KesMap properties) {
    trace.push_back("label " + label.Text().str() + ", " + std::to_string(base.NumberOfViews()) +
                    " views");
    trace.push_back("Height " + properties.Get("Height").description().str() + ", page " +
                    std::to_string(properties.ContainsKey("page")));
    width = base.Width();
  }
  void resize(double w, double) { trace.push_back("width " + std::to_string(int(w))); }
  Trace trace;
  double width = 0;
};

class NativeBadge final : public Object {
 public:
  static void describe(ClassBuilder<NativeBadge>& c) {
    c.name("NativeBadge");
    c.method<&NativeBadge::create>("DesignerCreateView:::");
    c.method<&NativeBadge::resize>("base_resize::");
  }
  void create(KesPanelWrapper, KesLabelWrapper, KesMap) { trace.push_back("created"); }
  void resize(double w, double) { trace.push_back("width " + std::to_string(int(w))); }
  Trace trace;
};

class LayoutOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<LayoutOwner>& c) {
    c.name("LayoutOwner");
    c.sub<&LayoutOwner::note<"click">>("press_click");
    c.sub<&LayoutOwner::note<"resize", Value, Value>>("home_resize");
    c.field<&LayoutOwner::label>("title");
    c.field<&LayoutOwner::any>("any");
    c.field<&LayoutOwner::kex>("kex");
    c.field<&LayoutOwner::field>("wrong");
    c.field<&LayoutOwner::badge>("badge");
    c.field<&LayoutOwner::native>("native");
    c.field<&LayoutOwner::panel>("panel");
  }
  KesLabelWrapper label;
  KesViewWrapper any;
  KexViewWrapper kex;
  KesTextFieldWrapper field;
  Ref<Badge> badge;
  Ref<NativeBadge> native;
  KesPanelWrapper panel;
};

// The script of "scaled" and "follows", as the layouts of an app have it.
template <int N>
class ScaleScript final : public Object {
 public:
  static void describe(ClassBuilder<ScaleScript>& c) {
    c.name(N ? "LS_follows" : "LS_scaled");
    c.template method<&ScaleScript::general>("LS_general:::");
  }
  void general(Ref<KesLayoutData> layout, int w, int h) {
    KesLayoutBuilder::setScaleRate(0.3f);
    KesLayoutBuilder::scaleAll(layout, w, h);
  }
};

class VariantScript final : public Object {
 public:
  static void describe(ClassBuilder<VariantScript>& c) {
    c.name("LS_byvariant");
    c.method<&VariantScript::small>("LS_320x480:::");
    c.method<&VariantScript::other>("LS_375x667:::");
  }
  void small(Ref<KesLayoutData> layout, int, int) {
    layout->setText("Title", "small");
    layout->setTextSize("title", 40);
    layout->setText("press", layout->getTextSize("title"));
  }
  void other(Ref<KesLayoutData> layout, int, int) { layout->setText("title", "other"); }
};

class LayoutsTest : public ViewsTest {
 protected:
  LayoutsTest() {
    ClassRegistry::instance()
        .addAll<LayoutOwner, Badge, NativeBadge, ScaleScript<0>, ScaleScript<1>, VariantScript>();
    owner = make<LayoutOwner>(0);
    panel.Initialize(owner->bi(), "panel");
    panel.SetLayoutAnimated(0, 1, 0, 0, 320, 480);
  }
  KesLayoutValues load(const std::string& name, std::string_view source) {
    writeLayout(Text(name).ToLowerCase().str(), source);
    return panel.LoadLayout(name, owner->bi());
  }
  ui::Rect frameOf(int i) { return panel.GetView(i).view().frame(); }

  Ref<LayoutOwner> owner;
  KesPanelWrapper panel;
};

TEST_F(LayoutsTest, DistanceOfAVariantToTheScreen) {
  struct Case {
    KesLayoutValues variant, device;
    float distance;
  };
  constexpr float unusable = 3.4028235E38f;
  const Case cases[] = {
      {{320, 480}, {320, 568}, 88},
      {{320, 480}, {375, 667}, 242},
      {{480, 320}, {320, 480}, unusable},
      {{340, 500}, {320, 480}, 140},
      {{384, 480}, {320, 480}, 114},  // a fifth larger is still usable, and penalised
      {{385, 480}, {320, 480}, unusable},
      {{320, 480}, {568, 320}, unusable},
      {{480, 320}, {568, 320}, 88},
      {{300, 380}, {400, 320}, 310},  // enlarged by 50, the other way round than the screen
      {{2147483647, -2147483647}, {320, 480}, unusable},
  };
  for (const auto& c : cases)
    EXPECT_EQ(KesLayoutBuilder::distance(c.variant, c.device), c.distance)
        << c.variant.description().str() << " on " << c.device.description().str();
}

TEST_F(LayoutsTest, TheVariantChosenIsKeptBetweenLayouts) {
  auto& s = KesLayoutBuilder::state();
  const struct {
    const char* what;
    std::vector<KesLayoutValues> variants;
    KesLayoutValues chosen;
    int index;
  } cases[] = {
      // on 320x568, one after the other
      {"the very first is taken whatever it is", {{900, 900}}, {900, 900}, 0},
      {"ties stay with the earlier", {{320, 500}, {320, 500}, {320, 400}}, {320, 500}, 0},
      {"the nearest, wherever it stands", {{320, 400}, {320, 568}}, {320, 568}, 1},
      {"all unusable: index 0, the former object", {{900, 900}, {800, 800}}, {320, 568}, 0},
  };
  for (const auto& c : cases) {
    KesLayoutBuilder::findBestVariant(c.variants);
    EXPECT_EQ(s.chosen->description(), c.chosen.description()) << c.what;
    EXPECT_EQ(s.chosenIndex, c.index) << c.what;
  }
  EXPECT_TRUE(KesLayoutBuilder::isPortrait());
  phone.turn({568, 568});
  EXPECT_FALSE(KesLayoutBuilder::isPortrait()) << "a square is not portrait";
}

TEST_F(LayoutsTest, AnchorsHoldAViewAtItsEdgesAndScaleLeavesTheParentAlone) {
  const struct {
    float left, width;
    int anchor;
    float scale;
    double x, w;
  } cases[] = {
      {10, 100, 0, 1, 10, 100},   {10, 100, 1, 1, 210, 100},    {10, 10, 2, 1, 10, 300},
      {10, 10, 2, 1.2f, 12, 296}, {10, 100, 1, 1.2f, 188, 120}, {10, 100, 0, 1.2f, 12, 120},
      {-10, 0, 2, 1, -10, 330},   {10, 100, 7, 1, 10, 100},
  };
  for (const auto& c : cases) {
    auto view = ui::makeShared<ui::View>();
    Dictionary map;
    for (const auto& [key, v] : {std::pair{"left", Value(c.left)},
                                 {"top", Value(c.left)},
                                 {"width", Value(c.width)},
                                 {"height", Value(c.width)},
                                 {"hanchor", Value(c.anchor)},
                                 {"vanchor", Value(c.anchor)}})
      map.put(key, v);
    applyGeometry(*view, map, {.size = {320.9, 320.9}, .scale = c.scale});
    EXPECT_NEAR(view->frame().x, c.x, 1e-4) << c.left << " " << c.width << " anchor " << c.anchor;
    EXPECT_NEAR(view->frame().width, c.w, 1e-4);
    EXPECT_NEAR(view->frame().y, c.x, 1e-4);
    EXPECT_NEAR(view->frame().height, c.w, 1e-4);
  }
}

TEST(Layouts, HeightsGrowWithTheTextAndWidthsByLess) {
  RuntimePhone phone({320, 568}, 2);
  auto view = ui::makeShared<ui::View>();
  Dictionary map;
  for (const auto& [key, v] : {std::pair{"left", 10}, {"top", 10}, {"width", 20}, {"height", 30}})
    map.put(key, v);
  applyGeometry(*view, map, {.size = {300, 300}});
  const ui::Rect grown = view->frame();
  EXPECT_EQ(grown.y, 20);
  EXPECT_EQ(grown.height, 60);
  EXPECT_GT(grown.x, 10);
  EXPECT_LT(grown.right(), 60);
  map.put("vanchor", 1);
  applyGeometry(*view, map, {.size = {300, 300}});
  EXPECT_EQ(view->frame().bottom(), 280) << "the distance to an edge is one of the heights";
}

TEST_F(LayoutsTest, TheScriptScalesGeometryAndFontsByTheDiagonals) {
  const char* source = R"(
variant 320x480
panel box
  frame: left 10 right 10, top 20 height 100
  label title
    frame: right 8 width 50, bottom 4 height 20
    font: "Material Icons" 10 "\u{E0CD}"
)";
  panel.SetLayoutAnimated(0, 1, 0, 0, 300, 400);
  load("scaled", source);
  const double page = std::sqrt(300.0 * 300 + 400 * 400) / 160;
  const float d =
      static_cast<float>(static_cast<float>(std::sqrt(320.0 * 320 + 480 * 480) / 160) - 0.3);
  const double scale = (1 + 0.3f * (page / 3.7f - 1)) / (1 + 0.3f * (d / 3.7f - 1));
  EXPECT_NE(scale, 1);
  EXPECT_NEAR(KesLayoutBuilder::state().autoscale, scale, 1e-6);
  EXPECT_NEAR(frameOf(0).x, 10 * scale, 1e-4);
  EXPECT_NEAR(frameOf(0).width, 300 - 20 * scale, 1e-4);
  EXPECT_NEAR(frameOf(0).height, 100 * scale, 1e-4);
  // Inside, against the size that the parent has by now, cut to whole points.
  const double boxWidth = std::floor(300 - 20 * scale);
  const auto inner = owner->label.view().frame();
  EXPECT_NEAR(inner.x, boxWidth - 58 * scale, 1e-3);
  EXPECT_NEAR(owner->label.Font().Size(), 10 * scale, 1e-4);
  EXPECT_EQ(owner->label.Font().font().family(), "Material Icons");
  EXPECT_TRUE(owner->label.Text() == "\uE0CD");

  // The page never counts as larger than the screen was when first asked for.
  panel.RemoveAllViews();
  panel.SetLayoutAnimated(0, 1, 0, 0, 2000, 2000);
  load("scaled", source);
  EXPECT_EQ(KesLayoutBuilder::getPageSize(), std::sqrt(320.0 * 320 + 568 * 568) / 160);

  // With the page as large as the variant less 0.3 the factor is 1 up to rounding.
  KesLayoutBuilder::state().pageSize = d;
  KesLayoutBuilder::setScaleRate(0.3f);
  EXPECT_NEAR(KesLayoutBuilder::state().autoscale, 1, 1e-6);
}

TEST_F(LayoutsTest, ScriptsAreFoundByFileAndVariant) {
  for (const auto& [file, name] : {std::pair{"lay item.kil", "LS_lay_item"},
                                   {"LayMenu.kil", "LS_laymenu"},
                                   {"a-b2.c.kil", "LS_a_b2_c"},
                                   {"kil", "LS_"}})
    EXPECT_EQ(KesLayoutBuilder::fileToDesignerScriptClassName(file), Text(name));
  EXPECT_TRUE(KesLayoutBuilder::variantToMethod(std::nullopt) == "LS_general:::");
  load("byvariant", R"(
variant 320x480
variant 375x667
label title
  frame: left 0 width 9, top 0 height 9
button press
  frame: left 0 width 9, top 0 height 9
)");
  EXPECT_TRUE(owner->label.Text() == "small");
  EXPECT_EQ(owner->label.Font().Size(), 40);
  EXPECT_TRUE(KesButtonWrapper::fromBoxed(panel.GetView(1)).Text() == "40");
}

TEST_F(LayoutsTest, ViewsAreBoundToVariablesOfAnyFittingKind) {
  const char* source = R"(
variant 320x480
backgroundColor: #336699
label TITLE
  frame: left 1 width 2, top 3 height 4
  eventName: "press"
  tag: "eti"
button any
  frame: left 0 width 9, top 0 height 9
  eventName: "press"
  enabled: no
panel kex
  frame: left 0 width 9, top 0 height 9
  visible: no
  alpha: 0.5
  label nobody
    frame: left 0 width 9, top 0 height 9
    text: "x"
)";
  owner->any.setObject(ui::makeShared<ui::View>());
  EXPECT_TRUE(load("BOUND", source).description() == "320 x 480 (normalized scale)");
  EXPECT_EQ(panel.Color(), static_cast<std::int32_t>(0xFF336699));
  EXPECT_TRUE(owner->label.Text() == "TITLE") << "a label without text shows its name";
  EXPECT_TRUE(owner->label.Tag() == Value("eti"));
  EXPECT_EQ(owner->any.object(), panel.GetView(1).object()) << "bound anew";
  EXPECT_FALSE(owner->any.view().enabled());
  EXPECT_FALSE(owner->kex.Visible());
  EXPECT_EQ(owner->kex.Alpha(), 0.5);
  EXPECT_EQ(owner->kex.NumberOfViews(), 1);
  owner->label.view().tap({});
  phone.pump.drain();
  EXPECT_THAT(owner->trace, ElementsAre("click"));

  EXPECT_EQ(thrownBy([&] {
              load("wrong",
                   "variant 320x480\nlabel wrong\n  frame: left 0 width 1, top 0 height 1");
            }),
            "Invalid object type|Expected: UITextField, object type: UILabel");
}

TEST_F(LayoutsTest, AnUnknownKindOfViewIsLeftOutWithItsChildren) {
  auto layout = layouts::compile(R"(
variant 320x480
panel gone
  frame: left 0 width 9, top 0 height 9
  label title
    frame: left 0 width 9, top 0 height 9
label kept
  frame: left 0 width 9, top 0 height 9
)",
                                 "t");
  auto& kids = *std::get<std::unique_ptr<layouts::Map>>(layout.root.entries.back().value);
  auto& gone = *std::get<std::unique_ptr<layouts::Map>>(kids.entries[0].value);
  for (const char* type : {"KesGone", "LayoutOwner", "", "NSBundle"}) {
    gone.entries[0].value = std::string(type);
    writeLayout("t", layout);
    panel.RemoveAllViews();
    panel.LoadLayout("t", owner->bi());
    EXPECT_EQ(panel.NumberOfViews(), 1) << type;
    EXPECT_FALSE(owner->label.IsInitialized());
  }
}

TEST_F(LayoutsTest, CustomViewsAreHandedToTheirObjectsOnceTheyHaveTheirSize) {
  const char* source = R"(
variant 320x480
custom badge
  frame: left 0 right 0, top 0 height 50
  customType: "Badge"
  text: "modello"
  customProperties:
    Height: 50
custom native
  frame: left 0 right 10, top 60 height 50
  customType: "NativeBadge"
custom any
  frame: left 0 width 1, top 0 height 1
  customType: "NativeBadge"
)";
  KesPage page = phone.showPage(owner->bi(), "home");
  panel = page.RootPanel();
  load("scaled", source);
  ASSERT_TRUE(owner->badge);
  EXPECT_THAT(owner->badge->trace, ElementsAre("for LayoutOwner as badge", "label modello, 0 views",
                                               "Height 50, page 1"));
  EXPECT_EQ(owner->badge->width, 320);
  EXPECT_TRUE(owner->any.IsInitialized()) << "a plain variable gets the panel";
  owner->badge->trace.clear();
  phone.pump.drain();
  EXPECT_THAT(owner->badge->trace, ElementsAre("width 320"));
  EXPECT_THAT(owner->native->trace, ElementsAre("created", testing::StartsWith("width 3")));

  // The panel keeps its object; the object must not keep the panel.
  const WeakRef<Badge> badge(owner->badge);
  owner->badge = nullptr;
  EXPECT_FALSE(badge.expired());
  panel.RemoveAllViews();
  owner->any = {};
  phone.pump.drain();
  EXPECT_TRUE(badge.expired());

  auto layout = layouts::compile(source, "t");
  auto& kids = *std::get<std::unique_ptr<layouts::Map>>(layout.root.entries.back().value);
  std::erase_if(std::get<std::unique_ptr<layouts::Map>>(kids.entries[0].value)->entries,
                [](const auto& e) { return e.key == "customType"; });
  writeLayout("t", layout);
  EXPECT_EQ(thrownBy([&] { panel.LoadLayout("t", owner->bi()); }),
            "CustomView CustomType property was not set.");
  std::string unknown(source);
  unknown.replace(unknown.rfind("NativeBadge"), 11, "NotThere");
  EXPECT_EQ(thrownBy([&] { load("unknown", unknown.c_str()); }),
            "CustomView class not found: NotThere");
}

TEST_F(LayoutsTest, AResizableLayoutFollowsItsPanel) {
  const char* source = R"(
variant 320x480
variant 480x320
handleResizeEvent: yes
panel panel
  frame 320x480: left 0 right 0, top 0 height 100
  frame 480x320: left 0 width 100, top 0 bottom 0
  label title
    frame: left 10 right 10, top 10 height 20
label kex
  frame: left 0 right 0, bottom 0 height 40
)";
  KesPage page = phone.showPage(owner->bi(), "home");
  panel = page.RootPanel();
  load("follows", source);
  const double tall = owner->panel.Height();
  EXPECT_EQ(owner->panel.Width(), 320);
  phone.turn({568, 320});
  EXPECT_EQ(owner->trace.size(), 2u) << "once at first, once when turned";
  EXPECT_EQ(owner->panel.Height(), 300) << "the other variant, below the status bar";
  EXPECT_NE(owner->panel.Width(), 568);
  EXPECT_EQ(owner->kex.Width(), 568);
  EXPECT_NEAR(owner->kex.Top() + owner->kex.Height(), 300, 1e-4);
  EXPECT_LT(owner->label.Width(), owner->panel.Width());
  const auto wide = owner->label.view().frame();

  // A view that was removed and let go of is passed over, with what it holds.
  const Ref<ui::View> inner(&owner->label.view());
  owner->panel.RemoveViewFromParent();
  owner->panel = {};
  owner->label = {};
  inner->removeFromParent();
  phone.turn({320, 568});
  EXPECT_EQ(inner->frame(), wide);
  EXPECT_EQ(owner->kex.Width(), 320);
  EXPECT_GT(tall, 0);

  auto plain = fresh<KesPanelWrapper>(owner->bi());
  EXPECT_FALSE(KesLayoutBuilder().resizeLayout(owner->bi(), plain));
  EXPECT_TRUE(phone.test.logged("ResizeLayout: Layout data not found."));
}

TEST_F(LayoutsTest, AnAnimatedRelayoutTakesItsTimeFromTheFile) {
  panel.setWidth(300);
  KesPage page = phone.showPage(owner->bi(), "home");
  page.RootPanel().AddView(panel, 0, 0, 300, 400);
  phone.pump.drain();
  load("slow", R"(
variant 320x480
handleResizeEvent: yes
duration: 400
dumpingRatio: 0.5
panel panel
  frame: left 0 right 0, top 0 height 50
)");
  phone.pump.settle();
  panel.setWidth(100);
  phone.pump.drain();
  EXPECT_EQ(owner->panel.Width(), 100);
  EXPECT_GT(owner->panel.view().presented().size.width, 100) << "on its way";
  phone.pump.settle();
  EXPECT_EQ(owner->panel.view().presented().size.width, 100);
}

TEST_F(LayoutsTest, APanelWithoutASizeIsTakenForTheScreen) {
  panel.SetLayoutAnimated(0, 1, 0, 0, 0, 480);
  load("sized", "variant 320x480\npanel panel\n  frame: left 0 right 0, top 0 bottom 0");
  EXPECT_EQ(frameOf(0), (ui::Rect{0, 0, 320, 568}));
}

}  // namespace
}  // namespace kes
