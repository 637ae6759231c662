// Where items are: adding, inserting, removing, replacing, and finding by offset.
#include <random>

#include "list_fixture.h"

namespace kes {
namespace {

TEST_F(ListTest, ItemsFollowEachOtherWithTheDividerBetween) {
  EXPECT_EQ(contentHeight(), 0);
  addAll({40, 40, 40});
  EXPECT_THAT(offsets(), ElementsAre(2, 44, 86));
  EXPECT_EQ(contentHeight(), 128);
  EXPECT_THAT(tags(), ElementsAre(0, 1, 2));
  EXPECT_EQ(view(1).frame(), (ui::Rect{0, 44, kListWidth, 40}));
  EXPECT_EQ(list->_getpanel(1).view().frame(), (ui::Rect{0, 0, kListWidth, 40}));
  EXPECT_EQ(list->_getvalue(2), Value(2));
  EXPECT_EQ(list->_sv.ScrollViewInnerPanel().Color(), KesColors::Gray)
      << "dividers are gaps through which the list's colour shows";
}

TEST_F(ListTest, TheItemTakesItsColourFromTheGivenPanel) {
  list->_add(panelOf(40, KesColors::Magenta), "v");
  EXPECT_EQ(list->_getitem(0)->Panel.Color(), KesColors::Magenta);
  EXPECT_EQ(list->_getitem(0)->Color, KesColors::Magenta);
  EXPECT_EQ(list->_getpanel(0).Color(), KesColors::Transparent);
}

TEST_F(ListTest, InsertingMovesWhatIsOnTheScreenSmoothly) {
  addAll({40, 40, 40, 40, 40, 40, 40, 40, 40, 40});  // 5 of them within 200 points
  list->_insertat(1, panelOf(60), "new");

  EXPECT_THAT(offsets(), ElementsAre(2, 44, 106, 148, 190, 232, 274, 316, 358, 400, 442));
  EXPECT_THAT(tags(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
  EXPECT_EQ(contentHeight(), 10 * 42 + 2 + 62);
  EXPECT_EQ(list->_getvalue(1), "new");
  // At first nothing has moved, but what lies below the screen has its place already.
  EXPECT_EQ(seen(0).y, 2);
  EXPECT_EQ(seen(1).height, 0);
  EXPECT_EQ(seen(2).y, 44);
  EXPECT_EQ(seen(5).y, 170) << "the last that was on the screen";
  EXPECT_EQ(seen(6).y, 274) << "the first below it";
  phone.pump.advance(150);
  EXPECT_GT(seen(1).height, 0);
  EXPECT_LT(seen(1).height, 60);
  EXPECT_GT(seen(2).y, 44);
  EXPECT_LT(seen(2).y, 106);
  phone.pump.advance(150);
  EXPECT_EQ(seen(1), (ui::Rect{0, 44, kListWidth, 60}));
  EXPECT_EQ(seen(2).y, 106);
  EXPECT_EQ(seen(5).y, 232);
}

TEST_F(ListTest, WhatNobodySeesMoveTakesItsPlaceAtOnce) {
  for (int i = 0; i < 400; ++i) add(40);
  scrollTo(100 * 42);
  list->_insertat(0, panelOf(40), "top");
  EXPECT_EQ(seen(1).y, 44) << "far above the screen";
  EXPECT_EQ(seen(91).y, 90 * 42 + 2) << "a little above: it may come into view at any moment";
  EXPECT_EQ(seen(101).y, 100 * 42 + 2) << "on it";
  EXPECT_EQ(seen(110).y, 110 * 42 + 2) << "far below";
  const auto moving = [&] {
    int n = 0;
    for (std::int32_t i = 1; i < list->_getsize(); ++i)
      n += phone.app.animator().isAnimating(view(i));
    return n;
  };
  EXPECT_LE(moving(), 3 * kListHeight / 42 + 2);
  phone.pump.advance(300);
  EXPECT_EQ(moving(), 0);
  EXPECT_EQ(seen(101).y, 101 * 42 + 2);
}

TEST_F(ListTest, RemovingClosesTheGapAtOnce) {
  addAll({40, 50, 60, 70});
  const Ref<clvitem> removed = list->_getitem(1);
  list->_removeat(1);
  EXPECT_EQ(seen(1).y, 44);
  EXPECT_EQ(seen(2).y, 106);
  EXPECT_FALSE(removed->Panel.Parent().IsInitialized());
  for (int i = 0; i < 3; ++i) list->_removeat(0);
  EXPECT_EQ(contentHeight(), 0) << "the last one takes the top gap with it";
  EXPECT_EQ(list->_sv.ScrollViewInnerPanel().NumberOfViews(), 0);
}

TEST_F(ListTest, ReplacingKeepsOrMovesTheRest) {
  addAll({40, 40, 40});
  list->_replaceat(1, panelOf(40, KesColors::Cyan), 40, "same");
  EXPECT_EQ(list->_getvalue(1), "same");
  EXPECT_EQ(list->_getitem(1)->Color, KesColors::Cyan);
  list->_replaceat(1, panelOf(10), 55, "larger");
  list->_replaceat(2, panelOf(10), 20, "the last");
  phone.pump.advance(300);
  EXPECT_EQ(seen(2), (ui::Rect{0, 101, kListWidth, 20}));
  EXPECT_EQ(list->_sv.ScrollViewInnerPanel().NumberOfViews(), 3);
}

// The list grew by a divider each time its only item was replaced.
TEST_F(ListTest, ReplacingTheOnlyItemAddsNoGap) {
  addAll({40});
  list->_replaceat(0, panelOf(40), 40, {});
  EXPECT_EQ(contentHeight(), 44);
  list->_resizeitem(0, 60);
  EXPECT_EQ(contentHeight(), 64);
}

TEST_F(ListTest, ResizingKeepsPanelValueAndColour) {
  addAll({40, 40});
  const auto panel = list->_getpanel(0);
  list->_resizeitem(0, 90);
  EXPECT_TRUE(list->_getpanel(0).isEqual(panel));
  EXPECT_EQ(list->_getvalue(0), Value(0));
  EXPECT_EQ(list->_getitem(0)->Color, KesColors::Green);
  EXPECT_EQ(list->_getitem(0)->Panel.Color(), KesColors::Green);
  EXPECT_EQ(list->_getpanel(0).Color(), KesColors::Transparent);
  EXPECT_THAT(offsets(), ElementsAre(2, 94));
  phone.pump.advance(300);
  EXPECT_EQ(view(0).frame().height, 90);
  EXPECT_EQ(list->_getpanel(0).Height(), 90);
}

TEST_F(ListTest, ABadIndexIsRefusedAndChangesNothing) {
  addAll({40, 40});
  const std::function<void()> calls[] = {
      [&] { list->_insertat(-1, panelOf(10), {}); },
      [&] { list->_insertat(3, panelOf(10), {}); },
      [&] { list->_insertattextitem(3, "testo", {}, false); },
      [&] { list->_removeat(2); },
      [&] { list->_removeat(-1); },
      [&] { list->_replaceat(2, panelOf(10), 10, {}); },
      [&] { list->_resizeitem(2, 10); },
      [&] { list->_getvalue(2); },
      [&] { list->_getpanel(-1); },
      [&] { list->_jumptoitem(2); },
  };
  for (std::size_t i = 0; i < std::size(calls); ++i)
    EXPECT_THAT(thrownBy(calls[i]), testing::StartsWith("NSRangeException|")) << i;
  EXPECT_THAT(offsets(), ElementsAre(2, 44));
  EXPECT_EQ(contentHeight(), 86);
}

TEST_F(ListTest, AViewInsideAnItemKnowsItsIndex) {
  addAll({40, 40, 40});
  const KexViewWrapper inner = KesXUI::CreatePanel(list->bi(), ""),
                       button = KesXUI::CreatePanel(list->bi(), "");
  list->_getpanel(2).AddView(inner, 0, 0, 20, 20);
  KexViewWrapper(inner).AddView(button, 0, 0, 10, 10);
  EXPECT_EQ(list->_getitemfromview(button), 2);
  list->_removeat(0);
  EXPECT_EQ(list->_getitemfromview(button), 1);
}

// What the list is to be after any sequence of changes, told without any cleverness.
struct Model {
  struct Item {
    int size, value;
  };
  std::vector<Item> items;

  int offsetOf(std::size_t index) const {
    int offset = kDivider;
    for (std::size_t i = 0; i < index; ++i) offset += items[i].size + kDivider;
    return offset;
  }
  int length() const { return items.empty() ? 0 : offsetOf(items.size()); }
  int indexAt(int offset) const {
    std::size_t i = 0;
    while (i + 1 < items.size() && offset >= offsetOf(i + 1)) ++i;
    return static_cast<int>(i);
  }
};

TEST_F(ListTest, AnySequenceOfChangesLeavesWhatAPlainModelTells) {
  std::mt19937 random(20171115);
  const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  Model model;
  for (int step = 0; step < 1500; ++step) {
    const int size = upTo(120), count = static_cast<int>(model.items.size());
    const Model::Item fresh{size, step};
    const auto at = model.items.begin() + (count ? upTo(count) : 0);
    const auto index = static_cast<int>(at - model.items.begin());
    const int what = upTo(100);
    if (what < 35 || count == 0) {
      add(size, step);
      model.items.push_back(fresh);
    } else if (what < 55) {
      list->_insertat(index, panelOf(size), step);
      model.items.insert(at, fresh);
    } else if (what < 78) {
      list->_removeat(index);
      model.items.erase(at);
    } else if (what < 88) {
      list->_replaceat(index, panelOf(1), size, step);
      *at = fresh;
    } else if (what < 98) {
      list->_resizeitem(index, size);
      at->size = size;
    } else if (what < 99) {
      scrollTo(upTo(model.length()));
    } else {
      list->_clear();
      model.items.clear();
    }
    if (step % 7 == 0) phone.pump.advance(upTo(400));

    ASSERT_EQ(list->_getsize(), static_cast<int>(model.items.size())) << "step " << step;
    ASSERT_EQ(contentHeight(), model.length()) << "step " << step;
    for (std::size_t i = 0; i < model.items.size(); ++i) {
      const auto item = list->_getitem(static_cast<std::int32_t>(i));
      ASSERT_EQ(item->Offset, model.offsetOf(i)) << "item " << i << " after step " << step;
      ASSERT_EQ(item->Size, model.items[i].size) << "item " << i << " after step " << step;
      ASSERT_EQ(item->value, Value(model.items[i].value)) << "step " << step;
      ASSERT_EQ(item->Panel.Tag(), Value(static_cast<int>(i))) << "step " << step;
      ASSERT_EQ(item->Panel.view().frame(),
                (ui::Rect{0, double(item->Offset), kListWidth, double(item->Size)}));
    }
    for (int probe = 0; !model.items.empty() && probe < 20; ++probe) {
      const int offset = upTo(model.length() + 200) - 100;
      ASSERT_EQ(list->_findindexfromoffset(offset), model.indexAt(offset))
          << offset << " in a list of " << model.items.size() << " at step " << step;
    }
  }
}

}  // namespace
}  // namespace kes
