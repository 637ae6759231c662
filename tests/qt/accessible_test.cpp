// What a screen reader finds: the toolkit's accessibility tree, walked from the window.
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QQuickWindow>
#include <map>

#include "desk.h"
#include "platform/qt/access/accessible_tree.h"
#include "platform/qt/access/event_relay.h"
#include "platform/qt/access/page_accessible.h"
#include "platform/ui/controls/button.h"
#include "platform/ui/controls/controls.h"
#include "platform/ui/controls/map_view.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/text_input.h"
#include "platform/ui/controls/web_view.h"
#include "platform/ui/pages/drawer_controller.h"
#include "platform/ui/pages/navigation_controller.h"

class Reader : public Desk {
 protected:
  QAccessibleInterface* root() { return QAccessible::queryAccessibleInterface(&screen.window()); }

  // A rectangle of the window, in points, where a reader is told that it is.
  QRect pixels(double x, double y, double width, double height) {
    const QRectF points(screen.window().mapToGlobal(QPointF(x, y)), QSizeF(width, height));
    return QRectF(points.topLeft() * kScale, points.size() * kScale).toRect();
  }

  // "role name", depth first, indented; what has no name is left out.
  static void read(QAccessibleInterface* element, int depth, std::vector<std::string>& out) {
    const auto name = element->text(QAccessible::Name).toStdString();
    // What announcements are said by has no place on the screen.
    if (depth > 0 && !name.empty() && !element->rect().isEmpty())
      out.push_back(std::string(2 * static_cast<std::size_t>(depth - 1), ' ') +
                    kind(element->role()) + name);
    for (int i = 0; i < element->childCount(); ++i) {
      auto* child = element->child(i);
      ASSERT_NE(child, nullptr);
      EXPECT_EQ(child->parent(), element);
      EXPECT_EQ(element->indexOfChild(child), i);
      read(child, depth + 1, out);
    }
  }
  std::vector<std::string> tree() {
    std::vector<std::string> out;
    read(root(), 0, out);
    return out;
  }
  // Once the tree has caught up with the views.
  bool becomes(const std::vector<std::string>& expected) {
    return loop.until([&] { return tree() == expected; }, 3000);
  }
  QAccessibleInterface* find(const std::string& name, QAccessibleInterface* from = nullptr) {
    if (!from) from = root();
    if (from->text(QAccessible::Name).toStdString() == name) return from;
    for (int i = 0; i < from->childCount(); ++i)
      if (auto* found = find(name, from->child(i))) return found;
    return nullptr;
  }
  QAccessibleInterface* element(const std::string& name) {
    rest();
    auto* found = find(name);
    if (!found) throw std::runtime_error("nothing is called " + name);
    return found;
  }
  void act(const std::string& name, const QString& action) {
    element(name)->actionInterface()->doAction(action);
    rest();
  }
  void press(const std::string& name) { act(name, QAccessibleActionInterface::pressAction()); }
  // What readers are told from now on, and about what.
  using Told = std::vector<std::pair<QAccessible::Event, QAccessible::Id>>;
  void listen(Told& told) {
    qt::AccessibleTree::of(&screen.window())->teller = [&told](QAccessibleEvent& event) {
      told.emplace_back(event.type(), event.uniqueId());
    };
  }
  static std::string kind(QAccessible::Role role) {
    static const std::map<QAccessible::Role, const char*> kinds = {
        {QAccessible::Button, "button "},   {QAccessible::StaticText, "text "},
        {QAccessible::Heading, "heading "}, {QAccessible::EditableText, "field "},
        {QAccessible::CheckBox, "switch "}, {QAccessible::Slider, "slider "},
        {QAccessible::ListItem, "row "},    {QAccessible::AlertMessage, "alert "},
        {QAccessible::Grouping, "map "},    {QAccessible::Link, "link "},
        {QAccessible::WebDocument, "page "}};
    const auto found = kinds.find(role);
    return found == kinds.end() ? "? " : found->second;
  }
};

TEST_F(Reader, FindsEveryElementByItsPlainName) {
  auto nav = ui::makeShared<ui::NavigationController>();
  auto home = ui::makeShared<ui::ViewController>();
  home->setTitle("InfoVarlo");
  home->navigationItem().setLeftItems({ui::BarButtonItem::drawer()});
  nav->push(home, false);
  window->setRootViewController(nav);
  ui::View& v = home->view();
  addText("Farmacie", {10, 10, 200, 30}, &v);
  auto row = add<ui::View>({0, 50, kWidth, 50}, &v);
  row->setOnTap([](ui::View&) {});
  row->setRole(ui::Role::ListItem);
  addText("\uF0FA Farmacia di turno", {10, 0, 200, 50}, row.get());
  auto field = add<ui::TextField>({10, 120, 200, 40}, &v);
  field->setHint("Cerca");
  auto toggle = add<ui::Switch>({10, 180, 60, 31}, &v);
  toggle->setAccessibleName("Avvisi");
  addText("nascosto", {10, 220, 100, 20}, &v)->setAccessibilityHidden(true);
  rest();
  EXPECT_EQ(tree(),
            (std::vector<std::string>{"button Menu", "heading InfoVarlo", "text Farmacie",
                                      "row Farmacia di turno", "field Cerca", "switch Avvisi"}));
  const auto* element = find("Farmacia di turno");
  EXPECT_EQ(element->rect(), pixels(0, 64 + 50, 375, 50));
  EXPECT_EQ(root()->rect(), pixels(0, 0, kWidth, kHeight));
  const QPoint corner = element->rect().topLeft();
  EXPECT_EQ(root()->childAt(corner.x() + 5, corner.y() + 5), element);
  // A dialog hides what is behind it, and is itself the place of its buttons.
  app.messageBox("Nuova versione", "Rilasciata!", {"OK"}, {});
  EXPECT_TRUE(becomes(
      {"alert Nuova versione", "  heading Nuova versione", "  text Rilasciata!", "  button OK"}))
      << testing::PrintToString(tree());
}

TEST_F(Reader, AnOpenDrawerHidesThePage) {
  auto center = ui::makeShared<ui::ViewController>();
  auto menu = ui::makeShared<ui::ViewController>();
  auto drawer = ui::makeShared<ui::DrawerController>(center, menu, nullptr);
  window->setRootViewController(drawer);
  addText("pagina", {10, 10, 100, 30}, &center->view());
  addText("voce", {10, 10, 100, 30}, &menu->view());
  EXPECT_TRUE(becomes({"text pagina"}));
  drawer->openDrawer(ui::DrawerSide::Left, true);
  EXPECT_TRUE(loop.until([&] { return find("voce") && !find("pagina"); }, 3000));
  drawer->closeDrawer(true);
  EXPECT_TRUE(becomes({"text pagina"}));
}

TEST_F(Reader, ActsOnWhatItFinds) {
  auto list = add<ui::ScrollView>({0, 0, kWidth, 300});
  list->setContentSize({kWidth, 5000});
  std::string pressed;
  for (int i = 0; i < 100; ++i) {
    auto row = add<ui::Button>({0, i * 50.0, kWidth, 50}, &list->content());
    row->setTitle("riga " + std::to_string(i));
    row->setOnTap([&pressed, i](ui::View&) { pressed = "riga " + std::to_string(i); });
  }
  auto slider = add<ui::Slider>({10, 400, 200, 40});
  slider->setAccessibleName("Volume");
  auto field = add<ui::TextField>({10, 450, 200, 40});
  field->setHint("Via");
  field->setText("Roma");
  // What is scrolled out of sight is there, and comes into sight when used.
  auto* far = element("riga 77");
  EXPECT_TRUE(far->state().offscreen);
  press("riga 77");
  EXPECT_EQ(pressed, "riga 77");
  EXPECT_FALSE(far->state().offscreen);
  act("Volume", QAccessibleActionInterface::increaseAction());
  EXPECT_NEAR(find("Volume")->valueInterface()->currentValue().toDouble(), 0.1, 1e-9);
  act("Via", QAccessibleActionInterface::setFocusAction());
  auto* via = find("Via");
  EXPECT_TRUE(via->state().focused && via->state().editable);
  EXPECT_EQ(root()->focusChild(), via);
  ASSERT_NE(via->textInterface(), nullptr);
  EXPECT_EQ(via->textInterface()->text(0, 4), "Roma");
  // What the toolkit's editor tells of itself is told of the element.
  Told told;
  listen(told);
  QAccessibleTextInsertEvent typed(
      QAccessible::queryAccessibleInterface(screen.window().activeFocusItem()), 4, "x");
  qt::relayEvent(typed);
  EXPECT_EQ(told, (Told{{QAccessible::TextInserted, QAccessible::uniqueId(via)}}));
}

TEST_F(Reader, ElementsGoWithTheirViews) {
  auto label = addText("va via", {10, 10, 100, 30});
  EXPECT_TRUE(becomes({"text va via"}));
  label->removeFromParent();
  EXPECT_TRUE(becomes({}));
  label = nullptr;
  addText("nuovo", {10, 10, 100, 30});
  EXPECT_TRUE(becomes({"text nuovo"}));
  app.hud().toast("Connessione non presente", 60000);
  EXPECT_TRUE(loop.until([&] { return find("Connessione non presente") != nullptr; }, 3000));
}

// The page that draws a map stays out of it: its pins would all be there twice, unnamed.
TEST_F(Reader, AMapIsItsButtonsAndItsMarkersNearestFirst) {
  auto map = add<ui::MapView>({0, 64, kWidth, 500});
  map->setCamera({{45.238, 10.042}, 15}, false);
  map->addMarker({45.248, 10.042}, "Parco Nord");
  const auto near = map->addMarker({45.239, 10.042}, "Municipio");
  EXPECT_TRUE(becomes({"map Map", "  button Zoom in", "  button Zoom out", "  button Municipio",
                       "  button Parco Nord"}));
  auto* button = element("Municipio");
  EXPECT_FALSE(button->state().offscreen);
  EXPECT_TRUE(find("Parco Nord")->state().offscreen);
  EXPECT_EQ(button->rect().size(), QSize(60, 80));
  press("Municipio");
  EXPECT_EQ(map->openMarker(), near.get());
  press("Parco Nord");  // out of sight: brought into it first
  EXPECT_EQ(map->openMarker()->title(), "Parco Nord");
  EXPECT_TRUE(map->ground().bounds().intersects(map->openMarker()->frame()));
  EXPECT_TRUE(settle());
}

// The engine places what is in a page as if the page were at the window's corner.
TEST_F(Reader, AWebPageIsReadWhereItIsAndItsLinksGoThroughTheGate) {
  auto scroll = add<ui::ScrollView>({0, 0, kWidth, kHeight});
  scroll->setContentSize({kWidth, 3000});
  auto web = add<ui::WebView>({20, 1100, 300, 400}, &scroll->content());
  scroll->setOffset({0, 1000});
  std::vector<std::string> asked, posted;
  web->onOverrideUrl = [&](const std::string& url) {
    asked.push_back(url);
    return true;
  };
  web->onMessage = [&](const std::string& message) { posted.push_back(message); };
  web->loadHtml(R"(<title>Uffici</title><body style='margin:0'>
    <h1 style='margin:0;height:40px'>Orari</h1>
    <a style='display:block;height:50px' href='/uno'>uno</a>
    <input type=checkbox aria-label='Avvisi'><div style='height:3000px'></div>
    <a style='display:block;height:50px' target=_blank href='tel:+390123'>due</a>
    <div style='height:3000px'></div>
    <div onclick='host.post("div " + event.isTrusted)'>qui</div></body>)",
                "http://varlo.test/pagina");
  rest();
  QAccessible::setActive(true);  // the engine, begun by now, listens for it
  const std::vector<std::string> whole{"page Uffici", "  heading Orari", "    text Orari",
                                       "  link uno",  "    text uno",    "  switch Avvisi",
                                       "  link due",  "    text due",    "    text qui"};
  ASSERT_TRUE(loop.until([&] { return tree() == whole; }, 10000)) << testing::PrintToString(tree());
  EXPECT_EQ(find("Orari")->rect(), pixels(20, 100, 300, 40));
  EXPECT_EQ(find("uno")->rect(), pixels(20, 140, 300, 50));
  const QPoint in = pixels(200, 170, 1, 1).topLeft();
  EXPECT_EQ(find("Uffici")->childAt(in.x(), in.y()), find("uno"));
  scroll->setOffset({0, 1050});
  rest();
  EXPECT_EQ(find("uno")->rect(), pixels(20, 90, 300, 50));
  // One press, one link: also of what has yet to come into sight.
  const std::vector<std::string> links{"http://varlo.test/uno", "tel:+390123"};
  for (std::size_t i = 0; i < links.size(); ++i) {
    press(i == 0 ? "uno" : "due");
    ASSERT_TRUE(loop.until([&] { return asked.size() > i; }, 10000)) << links[i];
  }
  EXPECT_EQ(asked, links);
  press("Avvisi");
  EXPECT_TRUE(loop.until([&] { return find("Avvisi")->state().checked != 0; }, 10000));
  // What is no link and no button, but listens for clicks, gets a real one.
  for (auto* element : {find("qui"), find("qui")->parent()}) {
    posted.clear();
    element->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(loop.until([&] { return !posted.empty(); }, 10000));
    EXPECT_EQ(posted, std::vector<std::string>{"div true"});
  }
  // The engine's events lead to what is found by asking, and tell nothing twice.
  auto* former = find("uno");
  auto* inner = qt::PageAccessible::from(former)->inner();
  Told told;
  listen(told);
  QAccessibleEvent focus(inner, QAccessible::Focus), page(inner->parent(), QAccessible::Focus);
  QAccessibleEvent moved(inner, QAccessible::LocationChanged), born(inner, QAccessible::ObjectShow);
  QAccessibleStateChangeEvent state(inner, inner->state());
  for (QAccessibleEvent* event : {&focus, &page, &moved, &born}) qt::relayEvent(*event);
  qt::relayEvent(state);
  const auto link = QAccessible::uniqueId(former);
  EXPECT_EQ(told, (Told{{QAccessible::Focus, link},
                        {QAccessible::Focus, QAccessible::uniqueId(find("Uffici"))},
                        {QAccessible::LocationChanged, link},
                        {QAccessible::StateChanged, link}}));
  // Another page, and none: nothing of the former is left.
  web->loadHtml("<title>Altra</title><p>nuovo</p>");
  EXPECT_TRUE(loop.until([&] { return find("nuovo") && !find("uno"); }, 10000));
  const auto said = [&](QAccessible::Event what, QAccessible::Id about) {
    return std::find(told.begin(), told.end(), std::pair(what, about)) != told.end();
  };
  EXPECT_TRUE(loop.until([&] { return said(QAccessible::ObjectDestroyed, link); }, 5000));
  const auto paragraph = QAccessible::uniqueId(find("nuovo")->parent());
  EXPECT_TRUE(loop.until([&] { return said(QAccessible::ObjectCreated, paragraph); }, 5000));
  EXPECT_NE(find("nuovo"), former);
  web->removeFromParent();
  EXPECT_TRUE(becomes({}));
}

TEST_F(Reader, AListTellsWhatComesAndWhatGoes) {
  auto list = add<ui::ScrollView>({0, 0, kWidth, 300});
  list->setContentSize({kWidth, 1000});
  std::vector<ui::Ref<ui::Button>> rows;
  const auto addRow = [&](const std::string& title) {
    rows.push_back(add<ui::Button>({0, 50.0 * static_cast<double>(rows.size()), kWidth, 50},
                                   &list->content()));
    rows.back()->setTitle(title);
  };
  for (const char* title : {"uno", "due", "tre"}) addRow(title);
  ASSERT_TRUE(becomes({"button uno", "button due", "button tre"}));
  const auto second = QAccessible::uniqueId(find("due"));
  Told told;
  listen(told);
  rows[1]->removeFromParent();
  addRow("quattro");
  EXPECT_TRUE(becomes({"button uno", "button tre", "button quattro"}));
  EXPECT_THAT(told, testing::ElementsAre(testing::Pair(QAccessible::ObjectDestroyed, second),
                                         testing::Pair(QAccessible::ObjectCreated,
                                                       QAccessible::uniqueId(find("quattro")))));
  EXPECT_EQ(QAccessible::accessibleInterface(second), nullptr);
}
