// KesPanelView: a container that tells when its size has changed.
//
// A change is told once the turn is over, with the last size only: to the custom view
// that lives in it, or to its layout and then to its owner as "_resize::". Clips what
// reaches over its edge. Main thread, points.
//
// The object that fills a custom view refers to its panel, and the panel to it: only as
// long as the panel has a parent. So a page that is given up takes its custom views along,
// and an object in use elsewhere finds its place again when its panel is added again.
#pragma once

#include "platform/ui/tree/view.h"
#include "runtime/core/kes.h"

namespace kes {

class KesPanelView : public ui::View, public PageSized {
 public:
  KesPanelView() { setClipsToBounds(true); }
  std::string_view className() const override { return "KesPanelView"; }

  double pageWidth() const override { return bounds().width; }
  double pageHeight() const override { return bounds().height; }

  // Attaches the object as "customviewclass", and as "customview" too when it is one of
  // the runtime's.
  void setCustomObject(const Value& object, bool ofRuntime);

 protected:
  void layoutSubviews() override;
  void parentChanged() override;

 private:
  void resized();

  ui::Size currentSize_;
  WeakRef<platform::Shared> customObject_;
  bool ofRuntime_ = false;
};

}  // namespace kes
