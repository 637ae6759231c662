// What grows with the reader's text, and what must not shrink with it.
#include "phone.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/table_view.h"
#include "platform/ui/pages/bar_item.h"
#include "platform/ui/pages/bar_view.h"
#include "platform/ui/pages/drawer_controller.h"
#include "platform/ui/values/style.h"

namespace ui {
namespace {

TEST(TextSize, FontsBarsRowsAndTheDrawerFollow) {
  const struct {
    double scale, text, bar, row, drawer;
  } cases[] = {{0.8, 0.8 * 17, 44, 44, 160},  // what a finger hits stays as large
               {1, 17, 44, 44, 160},
               {1.5, 25.5, 55, 66, 240},
               {2, 34, 66, 88, 320 - 44}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scale);
    Phone phone(c.scale);
    auto label = makeShared<Label>();
    label->setText("Mercato\nsabato");
    label->setMaxLines(0);
    EXPECT_EQ(label->sizeThatFits({}), (Size{std::ceil(7 * c.text / 2), std::ceil(2.4 * c.text)}));
    EXPECT_EQ(label->font().size(), 17) << "a font is what the program made";
    EXPECT_EQ(BarView(BarView::Kind::Toolbar).heightFor(0), c.bar);
    EXPECT_EQ(BarView(BarView::Kind::Navigation).heightFor(20), 20 + c.bar);
    auto table = makeShared<TableView>();
    table->setFrame({0, 0, 320, 400});
    table->setRows({AttributedText("Via Roma"), AttributedText("Viale Trieste")});
    table->layoutIfNeeded();
    EXPECT_EQ(table->contentSize().height, 2 * c.row);
    EXPECT_EQ(table->content().children().back()->frame(), (Rect{0, c.row, 320, c.row}));
    const auto page = [] { return makeShared<ViewController>(); };
    const auto menu = page();
    auto drawer = makeShared<DrawerController>(page(), menu, nullptr);
    drawer->setMaximumLeftDrawerWidth(160);
    phone.window->setRootViewController(drawer);
    phone.pump.drain();
    drawer->openDrawer(DrawerSide::Left, false);
    phone.pump.settle();
    EXPECT_EQ(menu->view().bounds().width, c.drawer);
  }
}

// "Raccol…" stood beside a large "Cambia via".
TEST(TextSize, TheWordsOfABarsButtonsGiveWayToItsTitle) {
  const struct { double scale, button; } cases[] = {{1, 16}, {2, 8}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scale);
    Phone phone(c.scale);
    auto bar = makeShared<BarView>(BarView::Kind::Navigation);
    bar->setFrame({0, 0, 320, bar->heightFor(0)});
    const auto item = BarButtonItem::text("Cambia via");
    bar->show({.title = "Raccolta rifiuti", .right = {item}, .backButton = true});
    bar->layoutIfNeeded();
    const auto& title = bar->titleLabel();
    const double word = phone.app.text().measure("Raccolta", title.font(), 0, 1).width;
    EXPECT_LE(word, title.bounds().width);
    EXPECT_EQ(static_cast<Button&>(*bar->viewFor(*item)).font().size(), c.button);
  }
}

}  // namespace
}  // namespace ui
