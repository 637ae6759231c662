#include "runtime/views/wrappers/panel_view.h"

#include "platform/base/platform.h"
#include "runtime/views/layout/layout_builder.h"
#include "runtime/views/wrappers/panel_wrapper.h"

namespace kes {

void KesPanelView::layoutSubviews() {
  View::layoutSubviews();
  const ui::Size size = bounds().size();
  if (size == currentSize_) return;
  currentSize_ = size;
  platform::current().mainQueue().post([weak = WeakRef<KesPanelView>(this), size] {
    const auto panel = weak.lock();
    if (panel && panel->currentSize_ == size) panel->resized();
  });
}

void KesPanelView::setCustomObject(const Value& object, bool ofRuntime) {
  customObject_ = WeakRef<platform::Shared>(object.object());
  ofRuntime_ = ofRuntime;
  parentChanged();
}

void KesPanelView::parentChanged() {
  const Value custom = customObject_.lock();
  if (custom.isNil()) return;
  const Value attached = parent() ? custom : Value();
  auto& map = KesObjectWrapper::getMap(*this);
  map.set("customviewclass", attached);
  if (ofRuntime_) map.set("customview", attached);
}

void KesPanelView::resized() {
  const Value params[] = {currentSize_.width, currentSize_.height};
  const auto* attached = KesObjectWrapper::peekMap(*this);
  if (!attached) return;
  if (const Value custom = attached->get("customview"); custom.isObject()) {
    Kes::runDynamicMethod(custom.object(), "base_resize::", false, params);
    return;
  }
  if (!attached->get("layoutdata").isNil())
    KesLayoutBuilder().resizeLayout(KesObjectWrapper::getBI(*this),
                                    KesPanelWrapper::fromBoxed(Ref<ui::View>(this)));
  KesObjectWrapper::raiseEvent(*this, "_resize::", params);
}

}  // namespace kes
