// Web views: the engine comes late, pages show what they were given, links are asked
// about, scripts and messages pass.
#include <fstream>
#include <sstream>

#include "desk.h"
#include "platform/base/log.h"
#include "platform/ui/controls/scroll_view.h"
#include "platform/ui/controls/web_view.h"
#include "tests/support/raw_server.h"

class Pages : public Desk {
 protected:
  Pages() : web(ui::makeShared<ui::WebView>()) {
    web->setFrame({0, 0, kWidth, 400});
    askFirst(true);
    web->onPageFinished = [this](bool success, const std::string& url) {
      finished.push_back((success ? "ok " : "failed ") + url);
    };
    web->onMessage = [this](const std::string& message) { messages.push_back(message); };
  }
  void show() { page().addSubview(web); }
  // Notes what is asked, and says whether the link is somebody else's.
  void askFirst(bool refused) {
    web->onOverrideUrl = [this, refused](const std::string& url) {
      asked.push_back(url);
      return refused;
    };
  }
  static bool engineLoaded() {
    std::ifstream maps("/proc/self/maps");
    std::stringstream text;
    text << maps.rdbuf();
    return text.str().find("WebEngineCore") != std::string::npos;
  }

  ui::Ref<ui::WebView> web;
  std::vector<std::string> asked, finished, messages;
};

TEST_F(Pages, TheEngineStartsWithTheFirstPageThatIsSeenAfterTheFirstFrame) {
  bool early = false;
  screen.onFirstFrame = [&] { early = engineLoaded(); };
  web->loadHtml("<body style='background:#00ff00'>verde</body>");
  auto scroll = add<ui::ScrollView>({0, 0, kWidth, kHeight});
  scroll->setContentSize({kWidth, 5000});
  web->setFrame({0, 2000, kWidth, 400});
  scroll->content().addSubview(web);
  rest();
  // As one program, an earlier test may have started it.
  const bool fresh = testing::UnitTest::GetInstance()->test_to_run_count() == 1;
  EXPECT_TRUE(!fresh || !engineLoaded()) << "out of sight";
  web->setFrame({0, 100, kWidth, 400});
  const QImage image = picture("green");
  EXPECT_TRUE(engineLoaded());
  EXPECT_FALSE(fresh && early);
  EXPECT_EQ(finished, (std::vector<std::string>{"ok "}));
  EXPECT_EQ(at(image, 200, 400), QColor(0, 255, 0));
  EXPECT_EQ(at(image, 200, 90), QColor(Qt::white));
  // Out of sight and back: the same page, not loaded again.
  scroll->setOffset({0, 2000});
  scroll->setOffset({0, 0});
  EXPECT_EQ(at(picture(), 200, 400), QColor(0, 255, 0));
  EXPECT_EQ(finished.size(), 1U);
}

TEST_F(Pages, EveryLinkIsAskedAbout) {
  show();
  web->loadHtml(R"(<body style='margin:0;font:20px sans-serif'>
    <a style='display:block;height:100px' href='http://varlo.test/uno'>uno</a>
    <a style='display:block;height:100px' target='_blank' href='tel:+390123'>due</a>
    <a style='display:block;height:100px' href='javascript:window.open("http://varlo.test/tre")'>tre</a>
    <a style='display:block;height:100px' onclick='location.href="http://varlo.test/quattro"'>quattro</a>
    </body>)",
                "http://varlo.test/pagina");
  picture("links");
  EXPECT_TRUE(asked.empty()) << "what the program loads itself isn't asked about";
  const std::vector<std::string> expected{"http://varlo.test/uno", "tel:+390123",
                                          "http://varlo.test/tre", "http://varlo.test/quattro"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    hand.tap({20, 10 + 100.0 * static_cast<double>(i)});
    ASSERT_TRUE(loop.until([&] { return asked.size() > i; }, 10000)) << expected[i];
  }
  EXPECT_EQ(asked, expected);
  rest();
  EXPECT_EQ(finished, (std::vector<std::string>{"ok http://varlo.test/pagina"}))
      << "none was followed";
}

TEST_F(Pages, NothingOpensWithoutATapAndNothingByTheEngineItself) {
  show();
  web->onOverrideUrl = nullptr;
  std::vector<std::string> lines;
  const auto former = platform::setLogSink([&](std::string_view l) { lines.emplace_back(l); });
  web->loadHtml(R"(<meta http-equiv=refresh content='0;url=http://varlo.test/refresh'>
    <body style='margin:0;font:20px sans-serif'>
    <a id=tel style='display:block;height:60px' href='tel:+39%200123'>telefono</a>
    <a style='display:block;height:60px' href='foo:bar'>foo</a>
    <a style='display:block;height:60px' href='smb://server/share'>smb</a>
    <a style='display:block;height:60px' href='file:///etc/passwd'>file</a>
    <a style='display:block;height:60px' target=_blank href='orari.html'>orari</a>
    <a style='display:block;height:60px' href='//altro.test/x'>altro</a>
    <iframe src='foo:frame' style='height:10px'></iframe>
    <script>
      window.open('http://varlo.test/popup');
      document.getElementById('tel').click();
      setTimeout(() => { location.href = 'http://varlo.test/later'; }, 50);
      setTimeout(() => { location.href = 'mailto:a@b.it'; host.post('fine'); }, 300);
    </script></body>)",
                "https://varlo.test/uffici/pagina.html");
  ASSERT_TRUE(loop.until([&] { return !messages.empty(); }, 20000));
  loop.pass(300);
  EXPECT_EQ(opened, std::vector<std::string>()) << "opened by a script";
  EXPECT_EQ(web->request().serial, 1U);
  const std::vector<std::string> expected{"tel:+390123", "", "", "",
                                          "https://varlo.test/uffici/orari.html"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    opened.clear();
    lines.clear();
    hand.tap({20, 10 + 60.0 * static_cast<double>(i)});
    ASSERT_TRUE(loop.until([&] { return !opened.empty() || !lines.empty(); }, 10000)) << i;
    EXPECT_EQ(opened.empty() ? "" : opened[0], expected[i]) << i;
  }
  platform::setLogSink(former);
  // "//host" follows the page's scheme; allowed by nobody's objection, it is gone to.
  askFirst(true);
  hand.tap({20, 10 + 60.0 * 5});
  ASSERT_TRUE(loop.until([&] { return !asked.empty(); }, 10000));
  EXPECT_EQ(asked[0], "https://altro.test/x");
}

TEST_F(Pages, APlaceInThePageIsScrolledToAndARelativeLinkNeedsAnAddress) {
  const std::string html = R"(<body style='margin:0;font:20px sans-serif'>
    <a style='display:block;height:60px' href='#orari'>orari</a>
    <a style='display:block;height:60px' href='altra.html'>altra</a>
    <div style='height:3000px'></div><p id=orari>qui</p><div style='height:3000px'></div>
    <script>onscroll = () => host.post('a ' + Math.round(document.getElementById('orari')
      .getBoundingClientRect().top))</script></body>)";
  show();
  const std::string filler = "<!--" + std::string(3000000, '<') + "-->";  // goes by way of a file
  for (const auto& [text, base] : {std::pair{html, std::string()},
                                   {html, std::string("http://varlo.test/pagina")},
                                   {filler + html, std::string("http://varlo.test/pagina")}}) {
    messages.clear();
    asked.clear();
    web->loadHtml(text, base);
    rest();
    const auto loads = finished.size();
    hand.tap({20, 10});
    ASSERT_TRUE(loop.until([&] { return !messages.empty() && messages.back().size() < 6; }, 10000))
        << base << text.size();
    EXPECT_EQ(finished.size(), loads) << "the page was loaded again";
    EXPECT_TRUE(asked.empty());
    web->runScript("scrollTo(0, 0)");
    loop.pass(100);
    hand.tap({20, 70});
    loop.until([&] { return !asked.empty(); }, base.empty() ? 300 : 10000);
    EXPECT_EQ(asked, base.empty() ? std::vector<std::string>()
                                  : std::vector<std::string>{"http://varlo.test/altra.html"});
    EXPECT_EQ(finished.size(), loads) << "base " << base << ", " << finished.back();
  }
}

TEST_F(Pages, ALinkThatIsAllowedIsFollowedInPlace) {
  show();
  const auto other = folder / "altra.html";
  std::ofstream(other) << "<body style='background:#ff0000'>altra</body>";
  const std::string url = "file://" + other.string();
  askFirst(false);
  web->loadUrl(url);
  EXPECT_EQ(at(picture("followed"), 200, 200), QColor(255, 0, 0));
  EXPECT_EQ(asked, (std::vector<std::string>{url})) << "once";
  EXPECT_EQ(finished, (std::vector<std::string>{"ok " + url}));
  EXPECT_EQ(web->displayText(), "altra");
  // One that isn't stays where it is.
  web->onOverrideUrl = [](const std::string&) { return true; };
  web->loadUrl("http://varlo.test/");
  rest();
  EXPECT_FALSE(web->loading());
  EXPECT_EQ(finished.size(), 1U);
  EXPECT_EQ(at(picture(), 200, 200), QColor(255, 0, 0));
}

TEST_F(Pages, AnAddressWithoutAnAnswerAndAPageThatIsNotThereFailOnce) {
  testing_support::RawServer host([](auto& peer) {
    const bool page = peer.readRequest().find("/niente") != std::string::npos;
    const std::string body = "<p>Pagina non trovata</p>";
    peer.send(
        "HTTP/1.1 404 Not Found\r\nContent-Type: text/html\r\nConnection: close\r\n"
        "Content-Length: " +
        std::to_string(page ? body.size() : 0) + "\r\n\r\n" + (page ? body : ""));
  });
  show();
  web->onOverrideUrl = nullptr;
  for (const std::string& none :
       {std::string("http://127.0.0.1:1/niente"), host.url("/niente"), std::string(),
        std::string("niente"), std::string("http://[x"), std::string("http://due parole/")}) {
    finished.clear();
    web->loadUrl(none);
    rest();
    EXPECT_EQ(finished, std::vector<std::string>{"failed " + none});
    EXPECT_FALSE(web->loading()) << none;
  }
}

TEST_F(Pages, ScriptsRunInOrderAndPostMessages) {
  show();
  web->loadHtml("<script>var n = 1; host.post('caricata ' + n)</script><p>\u00E8 qui</p>");
  web->runScript("n += 1; host.post('primo ' + n)");
  web->runScript("n += 1; host.post('secondo ' + n)");
  ASSERT_TRUE(loop.until([&] { return messages.size() == 3; }, 20000));
  EXPECT_EQ(messages, (std::vector<std::string>{"caricata 1", "primo 2", "secondo 3"}));
  web->runScript("host.post(document.querySelector('p').innerText)");
  ASSERT_TRUE(loop.until([&] { return messages.size() == 4; }, 20000));
  EXPECT_EQ(messages.back(), "\u00E8 qui");
}

TEST_F(Pages, APageReachesOnlyWhatItsBaseMay) {
  show();
  const std::string html = "<body style='margin:0'><img src='file://" + redPicture(10, 10) +
                           "' width=200 height=200></body>";
  web->loadHtml(html, "http://varlo.test/");
  EXPECT_NE(at(picture(), 100, 100), QColor(255, 0, 0)) << "a page of the net reads no files";
  web->loadHtml(html);
  EXPECT_NE(at(picture(), 100, 100), QColor(255, 0, 0));
  web->loadHtml(html, "file://" + folder.string() + "/");
  EXPECT_EQ(at(picture("file-base"), 100, 100), QColor(255, 0, 0));
}

TEST_F(Pages, TheKeyboardEntersAPageAndLeavesItAtItsEnds) {
  show();
  auto after = addText("dopo", {0, 450, 100, 40});
  after->setUserInteraction(true);
  after->setOnTap([](ui::View&) {});
  web->loadHtml("<a id=a href='http://varlo.test/uno'>uno</a>");
  rest();
  hand.press(ui::Key::Tab);
  ASSERT_TRUE(loop.until([&] { return web->isFocused(); }, 5000));
  // The link is the first stop in the page; Enter follows it.
  hand.press(ui::Key::Tab);
  web->runScript("setInterval(() => host.post(document.activeElement.id), 20)");
  ASSERT_TRUE(loop.until([&] { return !messages.empty() && messages.back() == "a"; }, 10000));
  hand.press(ui::Key::Enter);
  ASSERT_TRUE(loop.until([&] { return !asked.empty(); }, 10000));
  hand.press(ui::Key::Tab);
  EXPECT_TRUE(loop.until([&] { return after->isFocused(); }, 5000));
}
