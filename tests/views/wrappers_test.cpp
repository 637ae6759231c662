#include "runtime/views/base/properties.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/image_view_wrapper.h"
#include "runtime/views/wrappers/indicator_wrappers.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/picker_wrappers.h"
#include "runtime/views/wrappers/table_view_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "runtime/views/wrappers/text_view_wrapper.h"
#include "runtime/views/wrappers/value_controls.h"
#include "runtime/views/wrappers/web_view_wrapper.h"
#include "views_fixture.h"

namespace kes {
namespace {

// Hears everything under the prefix "a", nothing under any other.
class Listener final : public EventNotes {
 public:
  static void describe(ClassBuilder<Listener>& c) {
    c.name("Listener");
    c.sub<&Listener::note<"click">>("a_click");
    c.sub<&Listener::note<"long">>("a_longclick");
    c.sub<&Listener::note<"touch", int, double, double>>("a_touch");
    c.sub<&Listener::note<"size", double, double>>("a_resize");
    c.sub<&Listener::note<"scroll", double, double>>("a_scrollchanged");
    c.sub<&Listener::note<"text", Text, Text>>("a_textchanged");
    c.sub<&Listener::note<"enter">>("a_enterpressed");
    c.sub<&Listener::note<"begin">>("a_beginedit");
    c.sub<&Listener::note<"end">>("a_endedit");
    c.sub<&Listener::note<"value", Value>>("a_valuechanged");
    c.sub<&Listener::note<"index", int>>("a_indexchanged");
    c.sub<&Listener::note<"item", int, int>>("a_itemselected");
    c.sub<&Listener::note<"row", int, int>>("a_selectedchanged");
    c.sub<&Listener::note<"finished", bool, Text>>("a_pagefinished");
    c.sub<&Listener::ask<"url", Text>>("a_overrideurl");
    c.sub<&Listener::note<"link", Text>>("a_linkclick");
  }
};

class WrappersTest : public ViewsTest {
 protected:
  WrappersTest() {
    ClassRegistry::instance().add<Listener>();
    owner = make<Listener>(0);
    page = phone.showPage(owner->bi(), "page");
  }
  template <class W>
  W placed(const char* prefix = "a", double height = 100) {
    W w;
    w.KesViewWrapper::Initialize(owner->bi(), prefix);
    page.RootPanel().AddView(w, 10, 10, 200, height);
    phone.pump.drain();
    owner->trace.clear();
    return w;
  }
  Trace happened() { return phone.heardBy(*owner); }

  Ref<Listener> owner;
  KesPage page;
};

TEST_F(WrappersTest, GeometryKeepsTheEdgeThatIsNotChanged) {
  auto v = placed<KesViewWrapper>();
  v.setWidth(50);
  v.setHeight(30);
  EXPECT_EQ(v.view().frame(), (ui::Rect{10, 10, 50, 30}));
  v.setLeft(5);
  v.setTop(7);
  EXPECT_EQ(v.view().frame(), (ui::Rect{5, 7, 50, 30}));
  EXPECT_EQ(v.Left() + v.Top() + v.Width() + v.Height(), 92);

  v.SetLayoutAnimated(0, 1, 1, 2, 3, 4);
  EXPECT_EQ(v.view().presented().frame(), (ui::Rect{1, 2, 3, 4})) << "no time, no animation";
  v.SetLayoutAnimated(300, 1, 101, 2, 3, 4);
  EXPECT_EQ(v.Left(), 101);
  EXPECT_EQ(v.view().presented().frame().x, 1);
  phone.pump.settle();
  EXPECT_EQ(v.view().presented().frame().x, 101);
}

TEST_F(WrappersTest, AWrapperWithoutAViewSaysWhichKindItWants) {
  const std::pair<std::string, std::string> cases[] = {
      {thrownBy([] { KesLabelWrapper().setText("x"); }), "UILabel"},
      {thrownBy([] { KesPanelWrapper().RemoveAllViews(); }), "KesPanelView"},
      {thrownBy([] { KesPage().setTitle("x"); }), "UIViewController"},
      {thrownBy([] { KexViewWrapper().setLeft(1); }), "UIView"},
  };
  for (const auto& [text, kind] : cases)
    EXPECT_EQ(text, "Object was not initialized (" + kind + ")");
  const Value label = ui::makeShared<ui::Label>();
  EXPECT_EQ(thrownBy([&] { KesButtonWrapper::fromBoxed(label); }),
            "Invalid object type|Expected: UIButton, object type: UILabel");
  EXPECT_EQ(thrownBy([&] { KesControlWrapper::fromBoxed(label); }),
            "Invalid object type|Expected: UIControl, object type: UILabel");
  EXPECT_EQ(thrownBy([&] { KexViewWrapper::fromBoxed(label).ScrollViewOffsetY(); }),
            "Invalid object type|Expected: UIScrollView, object type: UILabel");
  EXPECT_THAT(thrownBy([&] { page.RootPanel().GetView(0); }), HasSubstr("0 views"));
}

TEST_F(WrappersTest, ColoursReachThePageBehindAndSpareTheReservedOne) {
  auto root = page.RootPanel();
  root.setColor(0x11223344);
  EXPECT_EQ(page.native()->view().background().argb, 0x11223344u);
  root.setColor(props::kKeepColor);
  EXPECT_EQ(root.Color(), 0x11223344);
  auto inner = placed<KesPanelWrapper>();
  inner.setColor(KesColors::Red);
  EXPECT_EQ(page.native()->view().background().argb, 0x11223344u);
  inner.SetColorAnimated(100, KesColors::Green);
  EXPECT_EQ(inner.Color(), KesColors::Green);
  inner.SetBorder(2, KesColors::Black, 0);
  inner.view().setClipsToBounds(false);
  inner.SetBorder(2, KesColors::Black, 5);
  EXPECT_TRUE(inner.view().clipsToBounds());
  inner.SetShadow(KesColors::Black, 1, 2, 0.5, true);
  EXPECT_FALSE(inner.view().clipsToBounds());
  EXPECT_TRUE(inner.view().shadow().rectangular);
}

TEST_F(WrappersTest, TapsComeFromTheQueueAndALongPressOnce) {
  auto label = placed<KesLabelWrapper>();
  phone.down({20, 50});
  phone.up({20, 50});
  EXPECT_THAT(owner->trace, IsEmpty());
  EXPECT_THAT(happened(), ElementsAre("click"));
  phone.down({20, 50});
  phone.pump.advance(2000);
  EXPECT_THAT(happened(), ElementsAre("long"));
  phone.up({20, 50});
  EXPECT_THAT(happened(), IsEmpty());
  // Without a handler a label lets the finger through.
  EXPECT_FALSE(placed<KesLabelWrapper>("b").UserInteractionEnabled());
  EXPECT_EQ(Value(label.Parent()).as<KesViewWrapper>()->object(), page.RootPanel().object());
}

TEST_F(WrappersTest, APanelTellsOfTouchesAndOfItsLastSize) {
  auto panel = placed<KesPanelWrapper>();
  phone.down({15, 40});
  phone.move({25, 41});
  phone.app.pointer(ui::PointerPhase::Cancelled, 1, 25, 41);
  EXPECT_THAT(owner->trace, ElementsAre("touch 0,5,10", "touch 2,15,11", "touch 1,15,11"));
  owner->trace.clear();

  panel.setWidth(50);
  phone.app.layoutIfNeeded();
  panel.setWidth(60);
  phone.app.layoutIfNeeded();
  EXPECT_THAT(owner->trace, IsEmpty()) << "never inside a layout pass";
  EXPECT_THAT(happened(), ElementsAre("size 60,100"));
  EXPECT_EQ(KesCommon::shared().getSize(), (std::pair{60.0, 100.0}));
  panel.setLeft(100);
  EXPECT_THAT(happened(), IsEmpty()) << "only the size counts";

  panel.setWidth(70);
  phone.app.layoutIfNeeded();
  page.RootPanel().RemoveAllViews();
  panel = {};
  EXPECT_THAT(happened(), IsEmpty()) << "a panel that has gone tells nothing";
}

TEST_F(WrappersTest, PanelsListWhatTheyHoldDepthFirst) {
  auto outer = placed<KesPanelWrapper>("x");
  auto inner = fresh<KesPanelWrapper>(owner->bi());
  auto first = fresh<KesLabelWrapper>(), second = fresh<KesLabelWrapper>();
  outer.AddView(inner, 0, 0, 10, 10);
  inner.AddView(first, 0, 0, 10, 10);
  outer.AddView(second, 1, 2, 3, 4);
  EXPECT_EQ(second.view().frame(), (ui::Rect{1, 2, 3, 4}));
  const KesList all = page.RootPanel().GetAllViewsRecursive();
  EXPECT_THAT(std::vector<Value>(all.begin(), all.end()),
              ElementsAre(outer.object(), inner.object(), first.object(), second.object()));
  outer.RemoveViewAt(0);
  EXPECT_EQ(outer.NumberOfViews(), 1);
  inner.AddView(second, 0, 0, 1, 1);  // moves it
  EXPECT_EQ(outer.NumberOfViews(), 0);
}

TEST_F(WrappersTest, ControlsTellWhatTheUserDoesAndNotWhatTheProgramSets) {
  auto field = placed<KesTextFieldWrapper>();
  field.setText("uno");
  phone.tap(field.view());
  phone.app.input().text("!");
  field.native()->userPressedEnter();
  field.ResignFocus();
  EXPECT_THAT(happened(), ElementsAre("begin", "click", "text uno,uno!", "enter", "end"));

  auto slider = placed<KesSliderWrapper>();
  slider.setMaxValue(10);
  slider.setValue(3);
  slider.native()->userSet(4.5);
  auto toggle = placed<KesSwitchWrapper>();
  toggle.setValue(true);
  phone.tap(toggle.view());
  EXPECT_FALSE(toggle.Value());
  EXPECT_THAT(happened(), ElementsAre("value 0"));
  slider.native()->userSet(5.5);
  EXPECT_THAT(happened(), ElementsAre("value 5.5"));

  auto stepper = placed<KesStepperWrapper>();
  stepper.setStepValue(2);
  stepper.native()->adjust(1);
  EXPECT_THAT(happened(), ElementsAre("value 2"));
  auto segments = placed<KesSegmentedControlWrapper>();
  segments.SetItems(KesList::of({"Oggi", 2}));
  segments.setSelectedIndex(0);
  segments.native()->userSelect(1);
  EXPECT_THAT(happened(), ElementsAre("index 1"));
  EXPECT_TRUE(segments.GetItems().Get(1) == Value("2"));

  auto picker = placed<KesPickerWrapper>();
  picker.SetItems(0, KesList::of({"a", "b", "c"}));
  picker.SelectRow(0, 1, false);
  picker.native()->userSelect(0, 2);
  EXPECT_THAT(happened(), ElementsAre("item 0,2"));
  EXPECT_TRUE(picker.GetSelectedItem(0) == Value("c"));

  auto scroll = placed<KesScrollView>();
  scroll.setContentHeight(500);
  scroll.setScrollOffsetY(40);
  EXPECT_THAT(owner->trace, ElementsAre("scroll 0,40")) << "in place, whoever scrolls";
  scroll.setScrollOffsetY(900);
  EXPECT_EQ(scroll.ScrollOffsetY(), 400);

  auto text = placed<KesTextViewWrapper>();
  text.native()->onLinkClick("https://varlo.example");
  EXPECT_THAT(happened(), ElementsAre("link https://varlo.example"));
  auto quiet = placed<KesTextViewWrapper>("b");
  quiet.native()->onLinkClick("https://varlo.example/b");
  EXPECT_THAT(phone.screen.opened, ElementsAre("https://varlo.example/b"));
}

TEST_F(WrappersTest, AWebViewAsksBeforeItFollowsALink) {
  auto web = placed<KesWebViewWrapper>();
  web.LoadHtml("<p>Ciao");
  phone.pump.drain();
  owner->trace.clear();
  const std::string assets = "file://" + phone.test.folders().assets;
  const struct {
    std::string url;
    Value answer;
    bool goesOn, asked;
  } cases[] = {
      {"http://varlo.example/", {}, true, true},    {"http://varlo.example/", false, true, true},
      {"http://varlo.example/", true, false, true}, {assets, true, true, false},
      {assets + "/altro.html", true, false, true},
  };
  for (const auto& c : cases) {
    owner->answer = c.answer;
    EXPECT_EQ(web.native()->navigationAllowed(c.url), c.goesOn) << c.url;
    EXPECT_EQ(happened().size(), c.asked ? 1u : 0u) << c.url;
  }
  EXPECT_EQ(web.native()->request().url, "") << "a text from outside has no place of its own";
}

TEST_F(WrappersTest, ATableShowsItsRowsAfterReloadAndGivesThemBack) {
  auto table = placed<KesTableView>("a", 200);
  table.AddSingleLine("Via Roma").setTag(7);
  table.AddSingleLine("Via Po").setText("Via del Po");
  EXPECT_EQ(table.native()->rowCount(), 0);
  table.ReloadAll();
  EXPECT_EQ(table.native()->rowText(1).text(), "Via del Po");
  table.native()->onSelect(0);
  EXPECT_THAT(happened(), ElementsAre("row 0,0"));
  EXPECT_TRUE(table.GetItem(0, 0).Tag() == Value(7));
  EXPECT_TRUE(table.GetItem(0, 1).PlainText() == "Via del Po");
  EXPECT_THAT(thrownBy([&] { table.GetItem(0, 2); }), HasSubstr("2 rows"));
  table.Clear();
  table.ReloadAll();
  EXPECT_EQ(table.Size(), 0);
}

TEST_F(WrappersTest, FontsComeFromTheDesignersMap) {
  const struct {
    const char* source;
    ui::Font font;
    const char* text;
  } cases[] = {
      {"system 16", ui::Font::system(16), "x"},
      {"bold 10", ui::Font::bold(10), "x"},
      {"italic 13", ui::Font::italic(13), "x"},
      {"\"Georgia\" 12", ui::Font::named("Georgia", 12), "x"},
      {"\"FontAwesome\" 20 \"\\u{F015}\"", ui::Font::named("FontAwesome", 20), "\uF015"},
      {"\"Material Icons\" 20 \"\\u{E0CD}\"", ui::Font::named("Material Icons", 20), "\uE0CD"},
      {"system 0", ui::Font::system(17), "x"},
      {"system 1e30", ui::Font::system(512), "x"},
  };
  for (const auto& c : cases) {
    writeLayout("t",
                "variant 1x1\nlabel a\n  frame: left 0 width 0, top 0 height 0\n"
                "  text: \"x\"\n  font: " +
                    std::string(c.source));
    page.RootPanel().RemoveAllViews();
    page.RootPanel().LoadLayout("t", owner->bi());
    auto label = KesLabelWrapper::fromBoxed(page.RootPanel().GetView(0));
    EXPECT_EQ(label.Text(), Text(c.text)) << c.source;
    EXPECT_EQ(label.Font().font(), c.font) << c.source;
  }
  EXPECT_TRUE(KesFont::CreateMaterialIcons(20) == Value(KesFont::CreateNew2("Material Icons", 20)));
  EXPECT_EQ(MeasureWidth("abcd", KesFont::CreateNew(10)), 20);
}

}  // namespace
}  // namespace kes
