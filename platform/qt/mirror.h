// Keeps a Qt Quick item for each view that can be seen, and for no other.
//
// update() walks the visible views of all windows and brings the items in line: places,
// looks and contents that changed, new items for what came into sight, none for what
// went. Items that hold state of their own (a web page, a text cursor) are hidden
// instead and live as long as their view. Owned by the QtScreen. Main thread.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/qt/items/view_item.h"
#include "platform/ui/application.h"

namespace qt {

class Mirror {
 public:
  Mirror(Stage& stage, QQuickItem& root) : stage_(stage), root_(root) {}
  ~Mirror();

  void update(ui::Application& application);
  // The item of a view that was seen at the last update, or null.
  ViewItem* itemOf(const ui::View& view) const;
  std::size_t shownItems() const { return shown_; }
  // Something on show moves by itself or is still loading.
  bool busy() const;

 private:
  struct Entry {
    std::unique_ptr<ViewItem> item;
    std::uint64_t pass = 0;  // the last one that saw the view
  };
  struct Level {  // an open branch of the walk
    ViewItem* item;
    ViewItem* round;  // the nearest of it and those around it that cuts round corners, or null
    int depth;
    double opacity;
    ui::Point origin;                 // of its inside, in window points
    std::vector<ViewItem*> children;  // seen so far, back to front
  };
  bool see(const ui::Visible& seen);  // whether what is in it is wanted too
  void close(int depth);
  void order(QQuickItem& parent, const std::vector<ViewItem*>& children);
  void sweep();

  Stage& stage_;
  QQuickItem& root_;
  std::unordered_map<const ui::View*, Entry> entries_;
  std::vector<Level> open_;
  std::vector<ViewItem*> windows_;
  std::uint64_t pass_ = 0;
  std::size_t shown_ = 0;
};

}  // namespace qt
