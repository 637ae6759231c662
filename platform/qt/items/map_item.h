// A map's ground: one page of the browser engine, Leaflet's, that draws tiles, pins and
// the open window as the view says and tells back what the user does.
//
// The page is the program's own. What it is told are plain messages (see map/page.js); it
// may fetch nothing but tiles of the address that the view names. The engine is begun once
// the page transition is over, unless it runs already; until the page is there, and where
// there is no engine, the ground stays plain. Main thread, points, degrees.
#pragma once

#include <QJsonObject>
#include <QTimer>

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/map_view.h"

namespace qt {

class MapItem final : public ViewItem {
  Q_OBJECT
 public:
  MapItem(Stage& stage, ui::View& view);
  ~MapItem() override;

  bool keepsState() const override { return true; }
  bool takesTouches() const override { return true; }
  bool ownsTaps() const override { return true; }
  bool drawsInside() const override { return true; }
  bool busy() const override { return waiting_; }
  // The page itself, once there is one; for tests.
  QQuickItem* page() const { return page_.get(); }

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  bool wantsSync() const override { return !page_ && !failed_; }
  bool childMouseEventFilter(QQuickItem* item, QEvent* event) override;

 private Q_SLOTS:
  void loaded(bool success);
  void posted(const QString& message);
  void lost();
  void located(double latitude, double longitude);

 private:
  // What the page was told last.
  struct Told {
    std::optional<std::uint64_t> revision;  // none: no camera yet
    std::uint64_t generation = 0;
    std::size_t pins = 0;
    QJsonValue window, focus, here;
  };
  bool begin(const ui::MapView& map);
  void startPage(const ui::MapView& map);
  void tellChanges(const ui::MapGround& ground);
  void tell(QJsonObject message);
  void hear(const QJsonObject& message, ui::MapGround& ground);
  void findOut(ui::MapView& map);
  void rest();

  std::unique_ptr<QQuickItem> page_, whereabouts_;
  QTimer patience_;  // a page that doesn't answer keeps nobody waiting
  Told told_;
  int serial_ = 0;
  bool ready_ = false, failed_ = false, waiting_ = false, askedWhere_ = false;
};

}  // namespace qt
