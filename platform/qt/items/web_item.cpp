#include "platform/qt/items/web_item.h"

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariant>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/qt/items/qml_parts.h"
#include "platform/ui/application.h"
#include "platform/ui/overlays/dialog.h"

namespace qt {

namespace {

// The engine takes html as an address, and no longer one than this.
constexpr qsizetype kLongestAddress = 2000000;
// A page that draws nothing new never says that it has drawn.
constexpr int kPaintPatience = 1000;
// What a page does later than that after a touch is its own doing.
constexpr int kActPatience = 5000;
// What is to be clicked is looked for so often, so far apart.
constexpr int kLooks = 40, kLookAgain = 50;

}  // namespace

WebItem::WebItem(Stage& stage, ui::View& view) : ViewItem(stage, view) {
  QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
  paintGuard_.setSingleShot(true);
  paintGuard_.setInterval(kPaintPatience);
  connect(&paintGuard_, &QTimer::timeout, this, &WebItem::painted);
}

WebItem::~WebItem() {
  if (page_) page_->disconnect(this);
}

QObject* WebItem::accessibleInside() { return page_.get(); }

// The engine has no press for a reader, only a focus, which takes its way to the page's own
// process and a key another: the key waits until the page has answered.
void WebItem::pressInside(int key) {
  if (!page_) return;
  if (const auto held = view()) stage().guarded([&] { held->requestFocus(); });
  QMetaObject::invokeMethod(page_.get(), "press", Q_ARG(QVariant, key));
}

// The engine's own, which hears keys and touches; null: the page hasn't the focus (any more).
QQuickItem* WebItem::engineItem() const {
  return page_ && page_->hasActiveFocus() ? page_->window()->activeFocusItem() : nullptr;
}

void WebItem::pressKey(int key) {
  auto* to = engineItem();
  if (!to) return;
  userActed();
  const QString text = key == Qt::Key_Space ? QStringLiteral(" ") : QStringLiteral("\r");
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(to, &event);
  }
}

void WebItem::clickInside(const Place& where) {
  const auto at = page_ ? where() : std::nullopt;
  if (!at) return;
  if (const auto held = view()) stage().guarded([&] { held->requestFocus(); });
  if (!boundingRect().contains(*at))
    QMetaObject::invokeMethod(page_.get(), "bringIntoSight", Q_ARG(QVariant, *at));
  clickOnceInSight(where, kLooks);
}

// Where things are after the page has scrolled, the engine's tree knows a little later, and
// says nothing then.
void WebItem::clickOnceInSight(const Place& where, int looks) {
  const auto at = where();
  auto* to = engineItem();
  if (!at || !to || looks == 0) return;
  if (!boundingRect().contains(*at)) {
    QTimer::singleShot(kLookAgain, this, [=, this] { clickOnceInSight(where, looks - 1); });
    return;
  }
  userActed();
  const QPointF scene = mapToScene(*at), local = to->mapFromScene(scene);
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, local, scene, mapToGlobal(*at), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(to, &event);
  }
}

bool WebItem::begin() {
  if (page_) return true;
  if (failed_ || !stage().firstFrameShown) return false;
  page_ = stage().parts.make(QStringLiteral("WebPage"));
  failed_ = !page_;
  if (failed_) return false;
  stage().browserStarted = true;
  page_->setProperty("gate", QVariant::fromValue<QObject*>(this));
  connect(page_.get(), SIGNAL(loaded(bool, QUrl)), this, SLOT(loaded(bool, QUrl)));
  connect(page_.get(), SIGNAL(painted()), this, SLOT(painted()));
  connect(page_.get(), SIGNAL(posted(QString)), this, SLOT(posted(QString)));
  connect(page_.get(), SIGNAL(read(QString)), this, SLOT(read(QString)));
  connect(page_.get(), SIGNAL(alerted(QString)), this, SLOT(alerted(QString)));
  connect(page_.get(), SIGNAL(lost()), this, SLOT(lost()));
  connect(page_.get(), &QQuickItem::activeFocusChanged, this, [this] {
    const auto held = this->view();
    if (held && page_->hasActiveFocus() && !held->isFocused())
      stage().guarded([&] { held->requestFocus(); });
  });
  return true;
}

void WebItem::sync(ui::View& view, ui::Change) {
  auto& web = static_cast<ui::WebView&>(view);
  // Nothing to show starts no engine.
  if (web.request().serial == 0) return;
  if (!begin()) {
    loading_ = !failed_;
    if (failed_ && serial_ != web.request().serial) {
      serial_ = web.request().serial;
      stage().guarded([&] { web.finished(serial_, false, web.request().url); });
    }
    return;
  }
  if (page_->parentItem() != this) page_->setParentItem(this);
  page_->setSize(size());
  const ui::Color back = web.background().transparent() ? ui::kWhite : web.background();
  page_->setProperty("backgroundColor", toQColor(back));
  page_->setProperty("scalesToFit", web.scalesToFit());
  page_->setProperty("textScale", textScale());
  if (web.request().serial != serial_) load(web);
  for (auto& script : web.takeScripts()) scripts_.push_back(std::move(script));
  if (loading_) return;
  for (const auto& script : std::exchange(scripts_, {}))
    QMetaObject::invokeMethod(page_.get(), "run", Q_ARG(QVariant, QString::fromStdString(script)));
}

void WebItem::load(ui::WebView& web) {
  serial_ = web.request().serial;
  loading_ = true;
  const auto request = web.request();
  if (request.isHtml) return loadHtml(request);
  bool allowed = true;
  stage().guarded([&] { allowed = web.navigationAllowed(request.url); });
  if (!allowed) {
    loading_ = false;
    web.stopLoading();
    return;
  }
  const QUrl address(QString::fromStdString(request.url));
  if (!ui::WebView::isAddress(request.url) || !address.isValid()) {
    // The engine would say nothing at all.
    loading_ = false;
    stage().guarded([&] { web.finished(serial_, false, request.url); });
    return;
  }
  page_->setProperty("trustsFiles", false);
  page_->setProperty("url", address);
}

void WebItem::loadHtml(const ui::WebView::Request& request) {
  const QUrl base(QString::fromStdString(request.url));
  page_->setProperty("trustsFiles", base.isLocalFile());
  const QString html = QString::fromStdString(request.html);
  if (QUrl::toPercentEncoding(html).size() < kLongestAddress) {
    large_.reset();
    QMetaObject::invokeMethod(page_.get(), "loadHtml", Q_ARG(QString, html), Q_ARG(QUrl, base));
    return;
  }
  const QDir folder(QString::fromStdString(platform::current().folders().temporary));
  large_ = std::make_unique<QTemporaryFile>(folder.filePath(QStringLiteral("page-XXXXXX.html")));
  if (!large_->open()) return loaded(false, base);
  large_->write("<meta charset=\"utf-8\">");
  if (!base.isEmpty()) large_->write("<base href=\"" + base.toEncoded() + "\">");
  large_->write(html.toUtf8());
  large_->close();
  page_->setProperty("url", QUrl::fromLocalFile(large_->fileName()));
}

bool WebItem::mayGo(const QUrl& url, bool main, bool link, bool redirect) {
  const QString scheme = url.scheme();
  const bool web = scheme == QLatin1String("http") || scheme == QLatin1String("https");
  // Frames load what the page puts into them, but no address of the desktop's.
  if (!main && !link)
    return web || scheme == QLatin1String("about") || scheme == QLatin1String("data") ||
           scheme == QLatin1String("blob") ||
           (scheme == QLatin1String("file") && page_->property("trustsFiles").toBool());
  if (main && redirect && !link && web && loading_ && large_ == nullptr) {
    const auto held = view();
    // An address that the program asked for may be elsewhere by now.
    if (held && !static_cast<ui::WebView&>(*held).request().isHtml) return true;
  }
  if (main && scrollsTo(url)) return false;
  return followed(url, false) && main;
}

void WebItem::opensWindow(const QUrl& url) { followed(url, true); }

// Each touch or key opens one link at most: the rest is the script's own doing.
bool WebItem::followed(const QUrl& url, bool newWindow) {
  const std::string address = url.toString(QUrl::FullyEncoded).toStdString();
  if (!acted_.isValid() || acted_.elapsed() > kActPatience) {
    platform::log("Not followed, nobody tapped: " + address);
    return false;
  }
  acted_.invalidate();
  const auto held = view();
  bool go = false;
  if (held)
    stage().guarded(
        [&] { go = static_cast<ui::WebView&>(*held).linkFollowed(address, newWindow); });
  return go;
}

// A place in the page, which the engine takes for another page where the html has an
// address that is not the one it was loaded from.
bool WebItem::scrollsTo(const QUrl& url) {
  const auto held = view();
  if (!held || !url.hasFragment()) return false;
  const auto& request = static_cast<ui::WebView&>(*held).request();
  const auto bare = [](QUrl u) { return u.adjusted(QUrl::RemoveFragment); };
  if (!request.isHtml || bare(url) != bare(QUrl(QString::fromStdString(request.url)))) return false;
  QMetaObject::invokeMethod(page_.get(), "scrollToPlace",
                            Q_ARG(QVariant, url.fragment(QUrl::FullyDecoded)));
  return true;
}

void WebItem::loaded(bool success, const QUrl& url) {
  loading_ = false;
  painting_ = success;
  if (success) paintGuard_.start();
  const auto held = view();
  if (!held) return;
  auto& web = static_cast<ui::WebView&>(*held);
  const auto& request = web.request();
  const std::string address = request.isHtml && (url.scheme() == QLatin1String("data") || large_)
                                  ? request.url
                                  : url.toString(QUrl::FullyEncoded).toStdString();
  stage().guarded([&] { web.finished(serial_, success, address); });
  held->markChanged(ui::Change::Content);  // scripts that waited
  stage().changed();
}

void WebItem::painted() {
  paintGuard_.stop();
  painting_ = false;
  stage().changed();
}

void WebItem::posted(const QString& message) {
  const auto held = view();
  if (!held) return;
  if (const auto hook = static_cast<ui::WebView&>(*held).onMessage)
    stage().guarded([&] { hook(message.toStdString()); });
}

void WebItem::read(const QString& text) {
  if (const auto held = view()) static_cast<ui::WebView&>(*held).setPageText(text.toStdString());
}

void WebItem::alerted(const QString& message) {
  if (auto* app = ui::Application::current())
    stage().guarded([&] { app->messageBox({}, message.toStdString(), {"OK"}, {}); });
}

void WebItem::lost() {
  if (loading_) loaded(false, page_->property("url").toUrl());
}

}  // namespace qt
