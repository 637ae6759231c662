// KesPanelView: a container that tells when its size has changed.
//
// A change is told once the turn is over, with the last size only: to the custom view
// that lives in it, or to its layout and then to its owner as "_resize::". Clips what
// reaches over its edge. Main thread, points.
#pragma once

#include "platform/ui/view.h"
#include "runtime/core/kes.h"

namespace kes {

class KesPanelView : public ui::View, public PageSized {
 public:
  KesPanelView() { setClipsToBounds(true); }
  std::string_view className() const override { return "KesPanelView"; }

  double pageWidth() const override { return bounds().width; }
  double pageHeight() const override { return bounds().height; }

 protected:
  void layoutSubviews() override;

 private:
  void resized();

  ui::Size currentSize_;
};

}  // namespace kes
