// Notifications on the desktop, through its notification service on the session bus.
//
// Made by the screen. Where there is no bus or no service nothing is shown. Never blocks;
// the service's answers come from the event loop. Main thread.
#pragma once

#include <QObject>
#include <QSet>
#include <functional>

#include "platform/ui/screen.h"

namespace qt {

class Notifier final : public QObject {
  Q_OBJECT

 public:
  // The citizen has clicked on one of ours.
  std::function<void()> onActivated;

  // Whether it was handed to a bus.
  bool show(const ui::Notification& notification);

 private Q_SLOTS:
  void actionInvoked(uint id, const QString& action);
  void closed(uint id, uint reason);

 private:
  bool connectToBus();

  bool listening_ = false;
  QSet<uint> shown_;  // by the service's numbers
};

}  // namespace qt
