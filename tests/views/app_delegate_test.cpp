#include "runtime/core/array.h"
#include "runtime/views/app/application_wrapper.h"
#include "runtime/views/app/services.h"
#include "runtime/views/dialogs/message_box.h"
#include "views_fixture.h"

namespace kes {
namespace {

// The main module as the delegate looks it up.
class MainModule final : public NotesOf<Module<MainModule>> {
 public:
  static void describe(ClassBuilder<MainModule>& c) {
    c.name("kes_main");
    c.sub<&MainModule::start>("application_start");
    c.sub<&MainModule::local>("application_receivelocalnotification");
    c.sub<&MainModule::token>("application_pushtoken");
    c.sub<&MainModule::remote>("application_remotenotification");
    c.sub<&MainModule::note<"inactive">>("application_inactive");
    c.sub<&MainModule::note<"background">>("application_background");
    c.sub<&MainModule::note<"foreground">>("application_foreground");
    c.sub<&MainModule::note<"active">>("application_active");
    c.sub<&MainModule::openUrl>("application_openurl");
  }
  void start(KesNavigationControllerWrapper navigation) {
    const auto* window = ui::Application::current()->keyWindow();
    trace.push_back(std::string("start, window ") + (window->hidden() ? "hidden" : "shown") +
                    ", root is " +
                    (window->rootViewController() == navigation.native().get() ? "mine" : "other"));
    options = app.LaunchOptions();
    page.Initialize(bi(), "home");
    navigation.ShowPage2(page, false);
    if (failAtStart) throw KesException("nessun avvio");
  }
  void local(KesNotificationWrapper n) { trace.push_back("local " + n.AlertBody().str()); }
  void token(bool ok, Value token) {
    const auto bytes = token.as<KesArray>();
    trace.push_back("token " + std::to_string(ok) + " " +
                    (bytes ? std::to_string(bytes->Length()) : "none"));
  }
  void remote(KesMap message, Ref<KesCompletionHandler> handler) {
    trace.push_back("remote " + message.Get("alert").description().str());
    handler->Complete();
  }
  Value openUrl(Value url, Value source) {
    trace.push_back("url " + url.description().str() + " from " + (source.isNil() ? "nil" : "one"));
    return false;
  }

  KesApplicationWrapper app;
  KesPage page;
  KesMap options;
  bool failAtStart = false;
};

class AppDelegateTest : public testing::Test, protected testing_support::HeadlessPhone {
 protected:
  AppDelegateTest() { main.trace.clear(); }
  ~AppDelegateTest() override {
    main.page = {};
    main.options = {};
  }
  Trace happened() {
    pump.drain();
    return std::exchange(main.trace, {});
  }
  void launch() {
    delegate.didFinishLaunching();
    happened();
  }
  static MainModule& registered() {
    registerData();
    registerViews();
    lendServices();
    ClassRegistry::instance().add<MainModule>();
    return MainModule::instance();
  }
  static Ref<Dictionary> message() {
    auto map = platform::makeShared<Dictionary>();
    map->put("alert", "Allerta meteo");
    return map;
  }

  MainModule& main = registered();
  KesAppDelegate delegate;
};

TEST_F(AppDelegateTest, LaunchStartsTheMainModuleBeforeTheWindowIsShown) {
  EXPECT_TRUE(delegate.didFinishLaunching(message()));
  EXPECT_THAT(main.trace, ElementsAre("start, window hidden, root is mine"));
  EXPECT_TRUE(test.logged("didFinishLaunchingWithOptions"));
  EXPECT_FALSE(delegate.window()->hidden());
  EXPECT_EQ(delegate.window()->bounds(), app.screenBounds());
  EXPECT_TRUE(main.options.Get("alert") == Value("Allerta meteo"));
  pump.drain();
  EXPECT_TRUE(main.page.Visible());

  KesPage other;
  other.Initialize(main.bi(), "other");
  main.app.setKeyController(other);
  EXPECT_TRUE(main.app.KeyController() == other.object());
  EXPECT_EQ(thrownBy([&] { main.app.setKeyController("x"); }),
            "Invalid object type|Expected: UIViewController, object type: " +
                KesCommon::GetType("x").str());
  main.app.setKeyController(main.page);
}

TEST_F(AppDelegateTest, AFaultAtTheStartPassesThrough) {
  main.failAtStart = true;
  EXPECT_EQ(thrownBy([&] { delegate.didFinishLaunching(); }), "nessun avvio");
  EXPECT_TRUE(delegate.window()->hidden());
  main.failAtStart = false;
}

TEST_F(AppDelegateTest, LeavingIsToldInPlaceAndComingBackFromTheQueueEachOnce) {
  launch();
  EXPECT_TRUE(main.options.IsInitialized()) << "without options an empty map is filed";
  EXPECT_EQ(main.options.Size() + main.app.LaunchOptions().Size(), 0);
  app.activate();
  app.activate();
  EXPECT_THAT(main.trace, IsEmpty());
  EXPECT_THAT(happened(), ElementsAre("active"));
  app.enterBackground();
  app.enterBackground();
  EXPECT_THAT(main.trace, ElementsAre("inactive", "background"));
  happened();
  app.activate();
  EXPECT_THAT(main.trace, IsEmpty());
  EXPECT_THAT(happened(), ElementsAre("foreground", "active"));
  app.resignActive();
  EXPECT_THAT(happened(), ElementsAre("inactive"));
  app.activate();
  EXPECT_THAT(happened(), ElementsAre("active"));
}

TEST_F(AppDelegateTest, AddressesAndPushesBecomeEvents) {
  launch();
  EXPECT_FALSE(delegate.openURL("varlo:home", Value(), "x")) << "the handler's answer";
  EXPECT_THAT(main.trace, ElementsAre("url varlo:home from nil"));
  EXPECT_TRUE(test.logged("openURL: varlo:home, "));
  happened();

  int completed = 0;
  delegate.didReceiveRemoteNotification(message(), [&](int result) { completed += 1 + result; });
  delegate.didReceiveRemoteNotification(message());
  delegate.didRegisterForRemoteNotifications({1, 2, 3});
  delegate.didFailToRegisterForRemoteNotifications("rete");
  EXPECT_THAT(main.trace, IsEmpty());
  EXPECT_EQ(completed, 0);
  EXPECT_THAT(happened(), ElementsAre("remote Allerta meteo", "remote Allerta meteo", "token 1 3",
                                      "token 0 none"));
  EXPECT_EQ(completed, 1) << "only the form with a callback completes";
  EXPECT_TRUE(delegate.lastError() == Value("rete"));
}

TEST_F(AppDelegateTest, ALocalNotificationComesAtItsTime) {
  launch();
  app.activate();
  happened();
  KesNotificationWrapper n;
  n.Initialize(test.clock().now() + 1000);
  n.setAlertBody(Value());
  n.setPlaySound(true);
  n.Register();
  pump.advance(999);
  EXPECT_THAT(screen.notifications, IsEmpty());
  pump.advance(1);
  ASSERT_EQ(screen.notifications.size(), 1u);
  EXPECT_EQ(screen.notifications[0].body, "null");
  EXPECT_THAT(happened(), ElementsAre("local null"));
}

TEST_F(AppDelegateTest, TheApplicationOpensWhatThePlatformTakes) {
  for (const auto& [url, opens] : {std::pair{"tel:0331555", true},
                                   {"MAILTO:a@varlo.example", true},
                                   {"https://varlo.example", true},
                                   {"file:///etc/passwd", false},
                                   {"javascript:alert(1)", false},
                                   {"", false}}) {
    EXPECT_EQ(main.app.CanOpenURL(url), opens) << url;
    EXPECT_EQ(main.app.OpenURL(url), opens) << url;
  }
  EXPECT_EQ(screen.opened.size(), 3u);
  main.app.RegisterUserNotifications(true, false, true);
  EXPECT_TRUE(ApplicationObject::shared().sounds);
  EXPECT_FALSE(ApplicationObject::shared().badges);
  main.app.RegisterForRemoteNotifications();
  EXPECT_TRUE(test.logged("Remote notifications asked for"));

  KesNativeObject bundle;
  bundle.Initialize("NSBundle");
  auto version = bundle.RunMethod("mainBundle", {})
                     .RunMethod("objectForInfoDictionaryKey:",
                                KesArray::initObjectsWithData({"CFBundleShortVersionString"}));
  EXPECT_TRUE(version.object() == Value(test.platform().bundleVersion));
}

}  // namespace
}  // namespace kes
