#include "platform/qt/items/map_item.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

#include "platform/qt/items/qml_parts.h"
#include "platform/ui/application.h"

namespace qt {

namespace {

constexpr int kPatience = 5000;
constexpr const char* kPage = ":/platform_qt/map/page.html";

// Whose pictures the page may show: the host of the tiles; of several ("{s}") all. Empty
// for an address that is no such thing.
QString sourceOf(const QString& tiles) {
  static const QRegularExpression form(
      QStringLiteral("^(https?)://((?:\\{s\\}\\.)?[A-Za-z0-9.-]+(?::[0-9]{1,5})?)/"));
  const auto match = form.match(tiles);
  if (!match.hasMatch()) return {};
  QString host = match.captured(2);
  host.replace(QStringLiteral("{s}"), QStringLiteral("*"));
  return match.captured(1) + QStringLiteral("://") + host;
}

QJsonArray pair(ui::GeoPoint p) { return {p.latitude, p.longitude}; }

QJsonValue windowOf(const ui::MapGround& ground) {
  const auto* marker = ground.open();
  const auto* window = ground.window();
  if (!marker || !window) return QJsonValue::Null;
  return QJsonObject{{"index", static_cast<int>(marker->id())},
                     {"lat", marker->position().latitude},
                     {"lng", marker->position().longitude},
                     {"title", QString::fromStdString(window->title().text())},
                     {"snippet", QString::fromStdString(window->snippet().text())},
                     {"w", window->bounds().width},
                     {"h", window->bounds().height},
                     {"gap", ui::MapGround::kWindowGap},
                     {"padding", ui::MapInfoWindow::kPadding},
                     {"sizes", QJsonArray{window->title().font().size() * ui::textScale(),
                                          window->snippet().font().size() * ui::textScale()}}};
}

QString text(const QJsonObject& message) {
  return QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

}  // namespace

MapItem::MapItem(Stage& stage, ui::View& view) : ViewItem(stage, view) {
  setFiltersChildMouseEvents(true);
  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  connect(&patience_, &QTimer::timeout, this, &MapItem::rest);
}

MapItem::~MapItem() {
  if (page_) page_->disconnect(this);
}

bool MapItem::begin(const ui::MapView& map) {
  if (page_) return true;
  const auto* app = ui::Application::current();
  if (failed_ || !stage().firstFrameShown || size().isEmpty()) return false;
  if (!stage().browserStarted && app && !app->idle()) return false;
  page_ = stage().parts.make(QStringLiteral("MapPage"));
  failed_ = !page_;
  if (failed_) return false;
  stage().browserStarted = true;
  connect(page_.get(), SIGNAL(loaded(bool)), this, SLOT(loaded(bool)));
  connect(page_.get(), SIGNAL(posted(QString)), this, SLOT(posted(QString)));
  connect(page_.get(), SIGNAL(lost()), this, SLOT(lost()));
  page_->setParentItem(this);
  page_->setSize(size());
  startPage(map);
  return true;
}

void MapItem::startPage(const ui::MapView& map) {
  ready_ = false;
  told_ = {};
  waiting_ = true;
  patience_.start();
  QFile file(QString::fromLatin1(kPage));
  if (!file.open(QIODevice::ReadOnly)) return lost();
  const QString source = sourceOf(QString::fromStdString(map.tiles().address));
  QString html = QString::fromUtf8(file.readAll());
  html.replace(QStringLiteral("@TILES@"), source.isEmpty() ? QStringLiteral("'none'") : source);
  QMetaObject::invokeMethod(page_.get(), "loadHtml", Q_ARG(QString, html),
                            Q_ARG(QUrl, QUrl(QStringLiteral("qrc:/platform_qt/map/page.html"))));
}

void MapItem::sync(ui::View& view, ui::Change) {
  auto& ground = static_cast<ui::MapGround&>(view);
  auto* map = ground.map();
  if (!map) return;
  if (!begin(*map)) {
    waiting_ = !failed_ && !size().isEmpty();
    return;
  }
  page_->setSize(size());
  if (map->showsHere()) findOut(*map);
  if (ready_) tellChanges(ground);
}

void MapItem::loaded(bool success) {
  const auto held = view();
  if (!held || !success) return rest();
  const auto* map = static_cast<ui::MapGround&>(*held).map();
  if (!map) return rest();
  ready_ = true;
  const QString tiles = QString::fromStdString(map->tiles().address);
  const QString start =
      text({{"tiles", sourceOf(tiles).isEmpty() ? QString() : tiles},
            {"accent", QStringLiteral("#%1").arg(map->tint().argb & 0xFFFFFF, 6, 16, QChar('0'))}});
  QMetaObject::invokeMethod(page_.get(), "tell", Q_ARG(QVariant, QStringLiteral("begin")),
                            Q_ARG(QVariant, start));
  held->markChanged(ui::Change::Content);
  stage().changed();
}

// All that has changed since, as one message.
void MapItem::tellChanges(const ui::MapGround& ground) {
  QJsonObject message;
  if (ground.generation() != told_.generation) {
    message["forget"] = true;
    told_.generation = ground.generation();
    told_.pins = 0;
  }
  if (ground.revision() != told_.revision) {
    const auto& camera = ground.camera();
    message["camera"] = QJsonObject{{"lat", camera.centre.latitude},
                                    {"lng", camera.centre.longitude},
                                    {"zoom", std::round(camera.zoom)},
                                    {"animate", ground.animated() && told_.revision.has_value()},
                                    {"revision", static_cast<qint64>(ground.revision())}};
    told_.revision = ground.revision();
  }
  const auto& markers = ground.markers();
  if (markers.size() > told_.pins) {
    QJsonArray places;
    for (std::size_t i = told_.pins; i < markers.size(); ++i) {
      places.append(markers[i]->position().latitude);
      places.append(markers[i]->position().longitude);
    }
    message["pins"] = places;
    told_.pins = markers.size();
  }
  const auto renew = [&](const char* name, QJsonValue& told, QJsonValue now) {
    if (now == told) return;
    message[QLatin1String(name)] = now;
    told = std::move(now);
  };
  const auto* focused = ground.focusedMarker();
  renew("window", told_.window, windowOf(ground));
  renew("focus", told_.focus,
        focused ? QJsonValue(pair(focused->position())) : QJsonValue(QJsonValue::Null));
  renew("here", told_.here,
        ground.here() ? QJsonValue(pair(*ground.here())) : QJsonValue(QJsonValue::Null));
  if (!message.isEmpty()) tell(std::move(message));
}

// Busy until the page has come to rest after it.
void MapItem::tell(QJsonObject message) {
  message["serial"] = ++serial_;
  waiting_ = true;
  patience_.start();
  QMetaObject::invokeMethod(page_.get(), "tell", Q_ARG(QVariant, QStringLiteral("receive")),
                            Q_ARG(QVariant, text(message)));
}

// What a finger's touch comes to is known when the page has seen it end.
bool MapItem::childMouseEventFilter(QQuickItem*, QEvent* event) {
  const auto type = event->type();
  if (ready_ && (type == QEvent::MouseButtonRelease || type == QEvent::TouchEnd)) {
    waiting_ = true;
    patience_.start();
    QMetaObject::invokeMethod(
        this,
        [this] {
          tell({{"touched", true}});
        },
        Qt::QueuedConnection);
  }
  return false;
}

void MapItem::posted(const QString& message) {
  const auto held = view();
  const auto parsed = QJsonDocument::fromJson(message.toUtf8());
  if (!held || !parsed.isObject()) return;
  stage().guarded([&] { hear(parsed.object(), static_cast<ui::MapGround&>(*held)); });
}

void MapItem::hear(const QJsonObject& message, ui::MapGround& ground) {
  if (message.contains("rest") && message["rest"].toInt() == serial_) rest();
  if (message.contains("moving")) {
    waiting_ = true;
    patience_.start();
  }
  if (const auto alone = message["alone"]; alone.isArray()) {
    std::vector<std::uint32_t> ids;
    for (const auto each : alone.toArray()) ids.push_back(static_cast<std::uint32_t>(each.toInt()));
    ground.setAlone(std::move(ids));
  }
  if (const auto camera = message["camera"].toObject(); !camera.isEmpty())
    ground.userMoved(
        {{camera["lat"].toDouble(), camera["lng"].toDouble()}, camera["zoom"].toDouble()},
        static_cast<std::uint64_t>(message["revision"].toInteger()));
  if (message.contains("tap"))
    ground.userTapped(static_cast<std::uint32_t>(message["tap"].toInt()));
  if (message.contains("windowTap")) ground.userTappedWindow();
  if (message.contains("groundTap")) ground.userTappedGround();
}

void MapItem::lost() {
  const auto held = view();
  const auto* map = held ? static_cast<ui::MapGround&>(*held).map() : nullptr;
  rest();
  // Its process died: once more from the start, which the view has whole.
  if (map && ready_) startPage(*map);
}

void MapItem::rest() {
  patience_.stop();
  waiting_ = false;
  stage().changed();
}

// --- Where the phone is.

void MapItem::findOut(ui::MapView& map) {
  if (std::exchange(askedWhere_, true)) return;
  if (stage().position) return map.located(*stage().position);
  if (!stage().asksWhere) return;
  whereabouts_ = stage().parts.make(QStringLiteral("Whereabouts"));
  if (!whereabouts_) return;
  whereabouts_->setParentItem(this);
  connect(whereabouts_.get(), SIGNAL(located(double, double)), this, SLOT(located(double, double)));
}

void MapItem::located(double latitude, double longitude) {
  const auto held = view();
  if (!held) return;
  if (auto* map = static_cast<ui::MapGround&>(*held).map())
    stage().guarded([&] { map->located({latitude, longitude}); });
}

}  // namespace qt
