// A web view: a page of the browser engine over the view's request. The engine is
// loaded by the first of these that is seen, after the first frame of the screen. Links
// that a hand has followed go to WebView::linkFollowed(); what a page's script opens by
// itself goes nowhere. Pages may post messages: window.host.post(text).
//
// Html with a base of file: may load files and remote addresses; any other html has the
// rights of its base, or of nothing.
#pragma once

#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QTimer>
#include <QUrl>

#include "platform/qt/items/view_item.h"
#include "platform/ui/controls/web_view.h"

namespace qt {

class WebItem final : public ViewItem {
  Q_OBJECT
 public:
  WebItem(Stage& stage, ui::View& view);
  ~WebItem() override;

  bool keepsState() const override { return true; }
  bool takesTouches() const override { return true; }
  QQuickItem* keyboardItem() override { return page_.get(); }
  QObject* accessibleInside() override;
  bool busy() const override { return loading_ || painting_; }

  // Asked by the page, which wants to go elsewhere by itself: whether it may. `main` is the
  // page itself rather than a frame in it, `link` what was clicked, by a hand or a script.
  Q_INVOKABLE bool mayGo(const QUrl& url, bool main, bool link, bool redirect);
  // Asked by the page for a window of its own: there are none, a link opens outside.
  Q_INVOKABLE void opensWindow(const QUrl& url);
  void userActed() override { acted_.start(); }
  void pressInside(int key) override;
  // Told by the page, once it has done all that was asked of it before the key.
  Q_INVOKABLE void pressKey(int key);
  void clickInside(const Place& where) override;

 protected:
  void sync(ui::View& view, ui::Change changed) override;
  bool wantsSync() const override { return !page_ && !failed_ && stage().firstFrameShown; }

 private Q_SLOTS:
  void loaded(bool success, const QUrl& url);
  void painted();
  void posted(const QString& message);
  void read(const QString& text);
  void alerted(const QString& message);
  void lost();

 private:
  bool begin();
  QQuickItem* engineItem() const;
  void clickOnceInSight(const Place& where, int looks);
  void load(ui::WebView& view);
  void loadHtml(const ui::WebView::Request& request);
  bool followed(const QUrl& url, bool newWindow);
  bool scrollsTo(const QUrl& url);

  std::unique_ptr<QQuickItem> page_;
  std::unique_ptr<QTemporaryFile> large_;
  QTimer paintGuard_;
  std::uint64_t serial_ = 0;
  bool loading_ = false, painting_ = false, failed_ = false;
  QElapsedTimer acted_;  // since the user last touched the page, not yet made use of
  std::vector<std::string> scripts_;
};

}  // namespace qt
