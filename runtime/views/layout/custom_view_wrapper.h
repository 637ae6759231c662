// KesCustomViewWrapper: a panel of a layout whose content a class of the application (or
// of the runtime) makes. Made by the layout builder; lives for one load.
//
// The panel holds a template label until AfterDesignerScript hands both, with the
// designer's properties, to the object. Conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/wrappers/panel_wrapper.h"

namespace kes {

// Something that is known and not kept alive.
class KesWeakRef final : public Object {
 public:
  explicit KesWeakRef(const Value& v) : object_(v.object()) {}
  std::string_view className() const override { return "KesWeakRef"; }
  Value get() const { return object_.lock(); }  // nil when it has gone

 private:
  WeakRef<platform::Shared> object_;
};

class KesCustomViewWrapper
    : public ViewWrapper<KesCustomViewWrapper, KesPanelView, KesPanelWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "KesPanelView";
  static constexpr std::string_view kName = "KesCustomViewWrapper";

  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  const Value& customObject() const { return customObject_; }
  void setCustomObject(Value object) { customObject_ = std::move(object); }
  void setProps(Ref<Dictionary> properties) { properties_ = std::move(properties); }
  // Calls the object's _initialize and "designercreateview:::", once it has its size.
  // Throws "CustomView class not found: %@" where the type names no class in the registry:
  // an empty panel would tell nobody.
  void AfterDesignerScript();

 private:
  Value customObject_;
  Ref<Dictionary> properties_;
  WeakRef<Kes> owner_;
  Text eventName_;
};

}  // namespace kes
