// The toolkit's side of the event benchmark: one slot among others, called by name.
#pragma once

#include <QObject>

class BenchPeer : public QObject {
  Q_OBJECT
 public:
  qint64 sum = 0;
 public slots:
  void applicationStart() {}
  void applicationActive() {}
  void barButtonClick(int) {}
  void itemClick(int index, qint64 value) { sum += index + value; }
  void jobDone(QObject*) {}
};
