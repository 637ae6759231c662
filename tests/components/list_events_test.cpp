// What a list tells its owner, and when: clicks, the visible range, scrolling, the end.
#include <algorithm>

#include "list_fixture.h"
#include "runtime/data/dates/date_time.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace kes {
namespace {

// Keeps the list of a layout in a variable.
class Holder final : public EventNotes {
 public:
  static void describe(ClassBuilder<Holder>& c) {
    c.name("test_holder");
    c.field<&Holder::_clv>("clv");
    c.sub<&Holder::note<"click", int, Value>>("clv_itemclick");
  }

  Ref<kes_customlistview> _clv;
};

ui::Color seenColor(const ui::View& view) { return view.presented().background; }
ui::Color argb(std::int32_t color) { return ui::Color{static_cast<std::uint32_t>(color)}; }

TEST_F(ListTest, AClickIsToldDuringTheFlashNotAfterIt) {
  addAll({40, 40});
  happened();
  phone.tap(view(1));
  EXPECT_THAT(takeTrace(), ElementsAre("click 1,1"));
  EXPECT_EQ(seenColor(view(1)), argb(KesColors::Green));
  phone.pump.advance(50);
  EXPECT_EQ(seenColor(view(1)), argb(KesColors::Red));
  phone.pump.advance(149);
  EXPECT_EQ(seenColor(view(1)), argb(KesColors::Red));
  phone.pump.advance(101);
  EXPECT_NE(seenColor(view(1)), argb(KesColors::Red)) << "it fades";
  EXPECT_NE(seenColor(view(1)), argb(KesColors::Green));
  phone.pump.advance(100);
  EXPECT_EQ(seenColor(view(1)), argb(KesColors::Green));
  EXPECT_EQ(seenColor(view(0)), argb(KesColors::Green));
  EXPECT_THAT(takeTrace(), IsEmpty());
}

TEST_F(ListTest, AHandlerMayResizeTheItemUnderItsOwnClick) {
  addAll({40, 40});
  listener->onItemClick = [this] { list->_resizeitem(1, 90); };
  phone.tap(view(1));
  for (const int wait : {0, 100, 150, 300}) {
    phone.pump.advance(wait);
    EXPECT_EQ(seenColor(view(1)), argb(KesColors::Green)) << "the flash is no colour of its own";
  }
  EXPECT_EQ(list->_getitem(1)->Color, KesColors::Green);
  EXPECT_EQ(list->_getitem(1)->Size, 90);
}

TEST_F(ListTest, AHandlerMayEmptyTheListUnderItsOwnClick) {
  addAll({40, 40});
  listener->onItemClick = [this] { list->_clear(); };
  const Ref<ui::View> pressed(&view(1));
  happened();
  phone.tap(*pressed);
  EXPECT_THAT(takeTrace(), ElementsAre("click 1,1"));
  EXPECT_EQ(list->_getsize(), 0);
  EXPECT_EQ(pressed->parent(), nullptr);
  phone.pump.advance(1000);
  EXPECT_EQ(seenColor(*pressed), argb(KesColors::Green));
}

TEST_F(ListTest, AHandlerMayDropTheListItself) {
  addAll({40});
  listener->onItemClick = [this] {
    page.RootPanel().RemoveAllViews();
    list = nullptr;
  };
  phone.tap(view(0));
  phone.pump.advance(1000);
  EXPECT_TRUE(phone.test.logged("Class (kes_customlistview) instance released."));
}

// Pages come and go, and with them their lists: for a while each stayed, with all its rows.
TEST_F(ListTest, AListOfALayoutGoesWithItsPage) {
  phone.test.write(phone.test.folders().assets + "/t.kil", layouts::toBytes(layouts::compile(R"(
variant 320x568
custom clv
  frame: left 0 right 0, top 0 bottom 0
  customType: "kes_customlistview"
  customProperties:
    DividerColor: #E3E8EC
    DividerHeight: 1
    PressedColor: #E6F0F4
)",
                                                                                             "t")));
  ClassRegistry::instance().add<Holder>();
  const auto released = [this] {
    const auto lines = phone.test.lines();
    return std::ranges::count(lines, "Class (kes_customlistview) instance released.");
  };
  auto holder = make<Holder>(0);
  list = nullptr;
  const auto before = released();
  const auto load = [&] {
    page.RootPanel().RemoveAllViews();
    page.RootPanel().LoadLayout("t", holder->bi());
    holder->_clv->_addtextitem("riga", 1);
    phone.pump.drain();
  };
  load();
  const auto base = holder->_clv->_getbase();
  const auto view = page.RootPanel().GetView(0);
  const auto attached = [&] {
    return KesObjectWrapper::getMap(base.view()).get("customviewclass").object();
  };
  EXPECT_EQ(attached(), holder->_clv.get());
  page.RootPanel().RemoveAllViews();
  EXPECT_EQ(attached(), nullptr);
  page.RootPanel().AddView(view, 0, 0, 320, 568);
  EXPECT_EQ(attached(), holder->_clv.get()) << "back at its place";
  load();
  EXPECT_EQ(released(), before + 1) << "replaced by the one that was loaded last";
  holder->_clv = nullptr;
  EXPECT_EQ(released(), before + 1) << "held by its panel";
  load();
  EXPECT_EQ(released(), before + 2);
  const WeakRef<Holder> former = holder;
  holder = nullptr;
  EXPECT_TRUE(former.expired()) << "its list does not hold it";
  phone.tap(ui::Point{20, 30});
  page.RootPanel().RemoveAllViews();
  phone.pump.advance(1000);
  EXPECT_EQ(released(), before + 3);
}

TEST_F(ListTest, TheVisibleRangeIsToldLaterAndOnlyWhenItChanges) {
  for (int i = 0; i < 12; ++i) add(40);
  EXPECT_THAT(takeTrace(), IsEmpty()) << "a range is told by a later task";
  phone.pump.drain();
  ASSERT_FALSE(listener->trace.empty());
  EXPECT_EQ(takeTrace().back(), "range 0,4");
  EXPECT_EQ(list->_getfirstvisibleindex(), 0);
  EXPECT_EQ(list->_getlastvisibleindex(), 4);
  scrollTo(3);
  EXPECT_THAT(takeTrace(), ElementsAre("scroll 3"));
  EXPECT_THAT(happened(), IsEmpty()) << "another offset, the same items";
  scrollTo(45.5);
  EXPECT_THAT(takeTrace(), ElementsAre("scroll 45")) << "in place, the range still to come";
  EXPECT_THAT(happened(), ElementsAre("range 1,5"));
  list->_base_resize(300, 400);
  EXPECT_THAT(happened(), ElementsAre("range 1,10")) << "after a new size too";
}

TEST_F(ListTest, TheRangeOutlivesTheItems) {
  addAll({40, 40});
  phone.pump.drain();
  list->_clear();
  EXPECT_EQ(list->_firstvisibleindex, 0);
  EXPECT_EQ(list->_lastvisibleindex, 1);
  takeTrace();
  addAll({40, 40});
  EXPECT_THAT(happened(), ElementsAre("range 0,0", "range 0,1"));
}

TEST_F(ListTest, TheEndIsToldFivePointsEarlyAndTenTimesASecondAtMost) {
  for (int i = 0; i < 10; ++i) add(40);  // 422 points, 200 of them seen
  phone.pump.drain();
  const auto endsAt = [&](double offset) {
    takeTrace();
    scrollTo(offset);
    phone.pump.drain();
    return std::count(listener->trace.begin(), listener->trace.end(), "end");
  };
  EXPECT_EQ(endsAt(216), 0);
  EXPECT_EQ(endsAt(217), 1);
  phone.pump.advance(100);
  EXPECT_EQ(endsAt(218), 0) << "within a tenth of a second";
  phone.pump.advance(1);
  EXPECT_EQ(endsAt(219), 1);
  phone.pump.advance(500);
  EXPECT_EQ(endsAt(100), 0);
  EXPECT_EQ(endsAt(222), 1);
}

TEST_F(ListTest, AnOwnerThatHearsNothingSeesTheFlashAndIsAskedForTheEndOnceADay) {
  list = newList(make<Deaf>(0), "Vertical");
  for (int i = 0; i < 10; ++i) add(40);
  phone.tap(view(0));
  phone.pump.advance(50);
  EXPECT_EQ(seenColor(view(0)), argb(KesColors::Red));
  phone.pump.advance(350);
  EXPECT_EQ(seenColor(view(0)), argb(KesColors::Green));
  scrollTo(50);
  EXPECT_EQ(list->_firstvisibleindex, -1) << "no range is kept for nobody";
  EXPECT_EQ(list->_lastvisibleindex, 0x7FFFFFFF);
  scrollTo(222);
  const auto asked = DateTime().Now();
  EXPECT_EQ(list->_lastreachendevent, asked + KesDateTime::TicksPerDay);
  phone.pump.advance(KesDateTime::TicksPerDay);
  scrollTo(221);
  EXPECT_EQ(list->_lastreachendevent, asked + KesDateTime::TicksPerDay) << "not yet a day";
  phone.pump.advance(101);
  scrollTo(222);
  EXPECT_EQ(list->_lastreachendevent, DateTime().Now() + KesDateTime::TicksPerDay);
}

TEST_F(ListTest, JumpingBringsTheItemToTheTop) {
  for (int i = 0; i < 30; ++i) add(40);
  list->_jumptoitem(12);
  EXPECT_EQ(list->_getfirstvisibleindex(), 12);
  EXPECT_EQ(list->_sv.ScrollViewOffsetY(), 12 * 42);
  list->_scrolltoitem(29);
  phone.pump.drain();
  EXPECT_EQ(list->_sv.ScrollViewOffsetY(), contentHeight() - kListHeight);
}

}  // namespace
}  // namespace kes
