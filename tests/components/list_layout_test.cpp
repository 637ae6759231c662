// How items fill the list: text items, horizontal lists, a new size.
#include "list_fixture.h"
#include "platform/ui/reading/finder.h"

namespace kes {
namespace {

ui::Label& labelOf(const KexViewWrapper& panel) {
  return static_cast<ui::Label&>(panel.GetView(0).view());
}

// Twenty-point characters are ten points wide, their lines twenty-four high.
TEST_F(ListTest, TextItemsAreAsHighAsTheirTextButFiftyAtLeast) {
  list->_addtextitem("corto", 1);
  list->_addtextitem(std::string(29, 'a') + " " + std::string(29, 'b') + " c", 2);
  EXPECT_TRUE(list->_getitem(0)->TextItem);
  EXPECT_EQ(list->_getitem(0)->Size, 52);
  EXPECT_EQ(labelOf(list->_getpanel(0)).frame(), (ui::Rect{5, 2, 290, 50}));
  EXPECT_EQ(list->_getitem(1)->Size, 3 * 24 + 2);
  EXPECT_EQ(labelOf(list->_getpanel(1)).frame(), (ui::Rect{5, 2, 290, 72}));
  EXPECT_THAT(offsets(), ElementsAre(2, 56));

  const auto& label = labelOf(list->_getpanel(0));
  EXPECT_EQ(label.font().size(), 20) << "font, alignment and colours are the designer's";
  EXPECT_EQ(label.alignment(), ui::TextAlign::Center);
  EXPECT_EQ(label.textColor().argb, static_cast<std::uint32_t>(KesColors::Blue));
  EXPECT_EQ(list->_getitem(0)->Color, KesColors::Yellow);
}

TEST_F(ListTest, RichTextItemsAreMeasuredByTheirRuns) {
  KesCSBuilder text;
  text.Initialize().Font(KesFont::CreateNew(40)).Append("grande").PopAll().Append("\npiccolo");
  list->_addtextitemcs(text, "v");
  EXPECT_EQ(labelOf(list->_getpanel(0)).displayText(), "grande\npiccolo");
  EXPECT_EQ(list->_getitem(0)->Size, 48 + 24 + 2);
}

TEST_F(ListTest, ATextItemMayBeInserted) {
  addAll({40, 40});
  list->_insertattextitem(1, "in mezzo", "v", false);
  EXPECT_THAT(offsets(), ElementsAre(2, 44, 98));
  EXPECT_TRUE(list->_getitem(1)->TextItem);
  EXPECT_FALSE(list->_getitem(2)->TextItem);
}

TEST_F(ListTest, AHorizontalListRunsAcross) {
  list = newList(listener, "Horizontal");
  addAll({40, 60});
  list->_insertat(1, panelOf(100), "v");
  EXPECT_THAT(offsets(), ElementsAre(2, 44, 146));
  EXPECT_EQ(list->_sv.ScrollViewContentWidth(), 208);
  EXPECT_EQ(list->_sv.ScrollViewContentHeight(), kListHeight);
  EXPECT_EQ(view(1).presented().size.width, 0);
  phone.pump.advance(300);
  EXPECT_EQ(seen(1), (ui::Rect{44, 0, 100, kListHeight}));
  EXPECT_EQ(seen(2), (ui::Rect{146, 0, 60, kListHeight}));
  EXPECT_EQ(list->_getpanel(2).view().frame(), (ui::Rect{0, 0, 60, kListHeight}));
  list->_removeat(0);
  EXPECT_THAT(offsets(), ElementsAre(2, 104));
  addAll({100, 100, 100});
  happened();
  list->_sv.setScrollViewOffsetX(110);
  EXPECT_THAT(happened(), ElementsAre("scroll 110", "range 1,4"));

  list->_addtextitem("testo", {});
  EXPECT_EQ(list->_getsize(), 5);
  EXPECT_TRUE(phone.test.logged("AddTextItem is only supported in vertical orientation."));
}

TEST_F(ListTest, ANewSizeWidensTheItemsAndMeasuresNothingAgain) {
  addAll({40});
  list->_addtextitem(std::string(40, 'a'), {});
  const auto height = list->_getitem(1)->Size;
  list->_base_resize(200, 300);
  EXPECT_EQ(list->_sv.view().frame(), (ui::Rect{0, 0, 200, 300}));
  EXPECT_EQ(view(0).frame(), (ui::Rect{0, 2, 200, 40}));
  EXPECT_EQ(list->_getpanel(0).view().frame(), (ui::Rect{0, 0, 200, 40}));
  EXPECT_EQ(labelOf(list->_getpanel(1)).frame(), (ui::Rect{5, 2, 190, height - 2.0}));
  EXPECT_THAT(offsets(), ElementsAre(2, 44));
  list->_addtextitem("nuovo", {});
  EXPECT_EQ(labelOf(list->_getpanel(2)).frame().width, 190);
}

TEST_F(ListTest, ANewSizeOfAHorizontalListMakesItsItemsHigher) {
  list = newList(listener, "Horizontal");
  addAll({40, 60});
  list->_base_resize(300, 350);
  EXPECT_EQ(view(1).frame(), (ui::Rect{44, 0, 60, 350}));
  EXPECT_EQ(list->_getpanel(1).Height(), 350);
  EXPECT_EQ(list->_sv.ScrollViewContentHeight(), 350);
}

TEST_F(ListTest, AnEmptyListSaysSoUntilThereIsSomethingToSee) {
  const auto says = [&] { return ui::find(*phone.window, "Niente") != nullptr; };
  list->showEmptyText("Niente");
  EXPECT_TRUE(says());
  EXPECT_EQ(list->_getsize(), 0) << "the line is no item";
  list->_base_resize(200, 100);
  EXPECT_EQ(ui::find(*phone.window, "Niente")->frame().width, 200);
  list->_addtextitem("uno", 1);
  EXPECT_FALSE(says());
  list->showEmptyText("Niente");
  EXPECT_FALSE(says()) << "there is an item";
  list->_removeat(0);
  EXPECT_FALSE(says()) << "it is on its way, or not asked for";
  list->showEmptyText("Niente");
  list->_clear();
  EXPECT_FALSE(says());
}

}  // namespace
}  // namespace kes
