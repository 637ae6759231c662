// A layer in front of other views: each of its children fills it, and touches fall
// through where none of them is hit. Main thread.
#pragma once

#include "platform/ui/tree/view.h"

namespace ui {

class LayerView final : public View {
 public:
  View* hitTest(Point p) override {
    View* hit = View::hitTest(p);
    return hit == this ? nullptr : hit;
  }

 protected:
  void layoutSubviews() override {
    for (const auto& layer : children()) layer->setFrame(bounds());
  }
};

}  // namespace ui
