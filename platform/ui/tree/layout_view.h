// A view that is laid out by whoever made it: the callback runs in the layout pass. The
// maker clears it when it goes before the view. Main thread.
#pragma once

#include "platform/ui/tree/view.h"

namespace ui {

class LayoutView final : public View {
 public:
  std::function<void(LayoutView&)> onLayout;

 protected:
  void layoutSubviews() override {
    if (const auto layOut = onLayout) layOut(*this);
  }
};

}  // namespace ui
