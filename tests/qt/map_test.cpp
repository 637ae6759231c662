// Maps on the Qt screen: what the page draws and never does, what taps and keys come to,
// and that a map without tiles keeps nobody waiting.
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <atomic>
#include <mutex>

#include "desk.h"
#include "platform/ui/controls/map_view.h"
#include "platform/ui/reading/accessibility.h"
#include "tests/support/raw_server.h"

class Maps : public Desk {
 protected:
  static constexpr ui::GeoPoint kCentre{45.238, 10.042};
  static constexpr double kTop = 64;

  Maps() : map(ui::makeShared<ui::MapView>()) {
    map->setFrame({0, kTop, kWidth, kHeight - kTop});
    map->setCamera({kCentre, 16}, false);
    map->onWindowTap = [this](ui::MapMarker& m) { windows.push_back(m.title()); };
  }
  void show() {
    page().addSubview(map);
    rest();
  }
  ui::Ref<ui::MapMarker> add(double north, double east, const std::string& title) {
    return map->addMarker({kCentre.latitude + north, kCentre.longitude + east}, title);
  }
  // The middle of a pin's head, in the window.
  static ui::Point head(const ui::MapMarker& marker) {
    const ui::Rect f = marker.frameInWindow();
    return {f.center().x, f.y + 14};
  }
  static bool isPin(QColor c) { return c.red() > 150 && c.green() < 110 && c.blue() < 90; }
  bool isOpen(const ui::Ref<ui::MapMarker>& marker) {
    return loop.until([&] { return map->openMarker() == marker.get(); }, 5000) && settle();
  }

  // The page of the engine, and what a script in it answers.
  QQuickItem* enginePage() {
    std::vector<QQuickItem*> all{screen.window().contentItem()};
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (QString(all[i]->metaObject()->className()).startsWith("MapPage")) return all[i];
      for (auto* child : all[i]->childItems()) all.push_back(child);
    }
    return nullptr;
  }
  QJsonValue ask(const QString& expression) {
    auto* web = enginePage();
    if (!web) return QJsonValue::Undefined;
    QSignalSpy spy(web, SIGNAL(posted(QString)));
    QMetaObject::invokeMethod(web, "tell",
                              Q_ARG(QVariant, "(x => send({answer: " + expression + "}))"),
                              Q_ARG(QVariant, QString()));
    QJsonValue answer = QJsonValue::Undefined;
    loop.until(
        [&] {
          for (const auto& heard : spy) {
            const auto message = QJsonDocument::fromJson(heard[0].toString().toUtf8()).object();
            if (message.contains("answer")) answer = message["answer"];
          }
          return !answer.isUndefined();
        },
        5000);
    return answer;
  }

  ui::Ref<ui::MapView> map;
  std::vector<std::string> windows;
};

TEST_F(Maps, PinsStandWhereTheTreeHasThemAndTapsOpenAndClose) {
  const auto a = add(0.001, -0.001, "Municipio"), b = add(-0.002, 0.001, "Duomo");
  a->setSnippet("Click per dettagli");
  show();
  const QImage plain = picture("map-pins");
  for (const auto& marker : {a, b}) {
    const ui::Rect f = marker->frameInWindow();
    EXPECT_TRUE(isPin(at(plain, f.center().x - 8, f.y + 14))) << marker->title();
    EXPECT_FALSE(isPin(at(plain, f.x - 3, f.y + 14))) << marker->title();
  }
  tap(head(*a));
  ASSERT_TRUE(isOpen(a));
  // The window is drawn where the tree says that it is, once the engine has painted it.
  const ui::Rect box = map->ground().window()->frameInWindow();
  QImage open;
  EXPECT_TRUE(loop.until(
      [&] {
        open = picture("map-window");
        return at(open, box.x + 4, box.center().y) == QColor(Qt::white);
      },
      5000));
  EXPECT_EQ(at(open, box.right() - 4, box.center().y), QColor(Qt::white));
  EXPECT_NE(at(open, box.x - 4, box.center().y), QColor(Qt::white));
  EXPECT_FALSE(ink(open, {box.x + 8, box.y + 8, box.width - 16, box.height - 16}).empty());
  tap(box.center());
  ASSERT_TRUE(loop.until([&] { return !windows.empty(); }, 5000));
  EXPECT_EQ(windows, (std::vector<std::string>{"Municipio"}));
  EXPECT_EQ(map->openMarker(), a.get());
  tap(head(*b));
  ASSERT_TRUE(isOpen(b));
  tap({40, kHeight - 40});
  EXPECT_TRUE(isOpen({}));
}

// A town's document, or whoever wrote into it, may try to be more than text.
TEST_F(Maps, TitlesAreTextWhateverTheyLookLike) {
  const std::string bad =
      "<img src=x onerror=\"send({tap:1})\"><b>x</b>\"); send({tap:1}); (\"\u2028'\\ ${1} `";
  const std::string worse = "<script>send({tap:1})</script>&amp;\n<svg onload=send({tap:1})>";
  const auto a = add(0, 0, bad);
  add(0.003, 0, "innocente");
  a->setSnippet(worse);
  show();
  map->open(a.get());
  rest();
  loop.pass(300);  // what was smuggled in would have run by now
  picture("map-hostile");
  EXPECT_EQ(map->openMarker(), a.get());
  EXPECT_EQ(ask("document.querySelector('.window .title').textContent").toString().toStdString(),
            bad);
  EXPECT_EQ(ask("document.querySelector('.window .snippet').textContent").toString().toStdString(),
            worse);
  EXPECT_EQ(ask("document.querySelectorAll('.window :not(div)').length").toInt(-1), 0);
}

// What the page may fetch: tiles of the host that it was given, and nothing else.
TEST_F(Maps, ThePageFetchesTilesAndNothingElse) {
  std::mutex mutex;
  std::vector<std::string> asked;
  const auto server = [&](testing_support::RawServer::Peer& peer) {
    const std::string request = peer.readRequest();
    {
      const std::lock_guard lock(mutex);
      asked.push_back(request.substr(0, request.find('\r')));
    }
    peer.send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  };
  testing_support::RawServer tiles(server), other(server);
  map->setTiles({tiles.url("/t/{z}/{x}/{y}{r}.png"), "© prova"});
  show();
  EXPECT_FALSE(asked.empty());
  for (const auto& line : asked) EXPECT_EQ(line.rfind("GET /t/16/", 0), 0U) << line;
  EXPECT_NE(asked.front().find("@2x.png"), std::string::npos) << "two pixels a point";
  EXPECT_EQ(other.connections(), 0);
  const QString elsewhere = QString::fromStdString(other.url("/x.png"));
  const int before = tiles.connections();
  ask("(() => { const i = new Image(); i.src = '" + elsewhere +
      "'; document.body.append(i); fetch('" + elsewhere + "').catch(() => 0); fetch('" +
      QString::fromStdString(tiles.url("/t/x")) +
      "').catch(() => 0); const s = document.createElement('script'); s.src = '" + elsewhere +
      "'; document.body.append(s); s.onerror = () => 0; location.href = '" + elsewhere +
      "'; window.open('" + elsewhere + "'); return 1; })()");
  loop.pass(500);
  EXPECT_EQ(other.connections(), 0);
  EXPECT_EQ(tiles.connections(), before) << "no data from there either";
  EXPECT_EQ(ask("location.protocol").toString(), QString("qrc:"));
}

TEST_F(Maps, WithoutTilesPinsStandOnAPlainGround) {
  const auto a = add(0, 0, "uno");
  map->setTiles({"http://127.0.0.1:1/{z}/{x}/{y}.png", ""});
  show();
  const QImage image = picture("map-plain");
  const ui::Rect f = a->frameInWindow();
  EXPECT_TRUE(isPin(at(image, f.center().x - 8, f.y + 14)));
  EXPECT_EQ(at(image, 30, 500), QColor(0xF1, 0xF1, 0xE6));
  // Tiles that never come: pins are there, and nothing waits for ever.
  testing_support::RawServer silent(
      [](testing_support::RawServer::Peer& peer) { peer.awaitHangUp(); });
  map->setTiles({silent.url("/{z}/{x}/{y}.png"), ""});
  const auto b = add(0.002, 0, "due");
  EXPECT_TRUE(loop.settle({}, 9000));
  hand.tap(head(*b));
  EXPECT_TRUE(loop.until([&] { return map->openMarker() == b.get(); }, 5000));
}

TEST_F(Maps, AFingerPansTheWheelZoomsAndTheTreeHearsOfIt) {
  add(0, 0, "uno");
  show();
  const ui::MapCamera start = map->camera();
  drag({200, 400}, {120, 400}, 200);
  EXPECT_GT(map->camera().centre.longitude, start.centre.longitude + 0.0005);
  EXPECT_NEAR(map->camera().centre.latitude, start.centre.latitude, 0.0003);
  wheel({180, 400}, -3);
  ASSERT_TRUE(loop.until([&] { return map->camera().zoom > 16; }, 5000));
  rest();
  // The program's own moves are followed to the point.
  map->setCamera({kCentre, 15}, true);
  rest();
  EXPECT_EQ(map->camera(), (ui::MapCamera{kCentre, 15}));
  EXPECT_NEAR(ask("map.getCenter().lat").toDouble(), kCentre.latitude, 1e-4);
  EXPECT_EQ(ask("map.getZoom()").toInt(), 15);
}

TEST_F(Maps, PinsThatLieTogetherAreAClusterUntilOneIsSingledOut) {
  std::vector<ui::Ref<ui::MapMarker>> close;
  for (int i = 0; i < 20; ++i) close.push_back(add(0.00004 * i, 0, "n. " + std::to_string(i)));
  show();
  picture("map-cluster");
  EXPECT_EQ(ask("document.querySelector('.cluster').textContent").toString(), QString("20"));
  close[7]->singleOut();
  rest();
  tap(head(*close[7]));
  EXPECT_TRUE(isOpen(close[7]));
}

TEST_F(Maps, KeysReachMarkersOpenThemAndTheRingStandsAtThePin) {
  const auto near = add(0.0002, 0, "vicino"), far = add(0.002, 0, "lontano");
  show();
  for (int i = 0; i < 3; ++i) press(ui::Key::Tab);
  ASSERT_EQ(app.focus().view(), near.get());
  rest();
  const ui::Rect f = near->frameInWindow();
  const QColor ring = at(picture("map-ring"), f.center().x, f.y - 3.5);
  EXPECT_TRUE(ring.red() > 200 && ring.blue() < 60) << ring.name().toStdString();
  press(ui::Key::Down);
  EXPECT_EQ(app.focus().view(), far.get());
  press(ui::Key::Enter);
  EXPECT_TRUE(isOpen(far));
  press(ui::Key::Enter);
  EXPECT_EQ(windows, (std::vector<std::string>{"lontano"}));
  // The page takes no key of its own, not even once it was tapped.
  tap({40, 300});
  press(ui::Key::Tab);
  EXPECT_TRUE(app.focus().view() != nullptr);
}

// Its process may be killed by the system, or crash over a picture.
TEST_F(Maps, APageThatDiedComesBackAsItWas) {
  const auto a = add(0, 0, "uno");
  show();
  map->open(a.get());
  rest();
  QMetaObject::invokeMethod(enginePage(), "lost");
  rest();
  EXPECT_EQ(ask("document.querySelector('.window .title').textContent").toString(), QString("uno"));
  EXPECT_EQ(ask("all.length").toInt(), 1);
}

// A citizen is back out before the page has come.
TEST_F(Maps, AMapThatGoesWhileItsPageLoadsLeavesNothingBehind) {
  show();
  for (const int patience : {0, 3, 10, 30, 60}) {
    auto short_lived = ui::makeShared<ui::MapView>();
    short_lived->setFrame({0, kTop, kWidth, kHeight - kTop});
    short_lived->setCamera({kCentre, 16}, false);
    short_lived->addMarker(kCentre, "breve");
    page().addSubview(short_lived);
    loop.pass(patience);
    hand.tap({180, 400});
    short_lived->removeFromParent();
    short_lived = nullptr;
    loop.pass(patience);
  }
  EXPECT_TRUE(settle());
}
