#include "runtime/views/layout/custom_view_wrapper.h"

#include "runtime/core/language/module.h"
#include "runtime/core/map.h"
#include "runtime/views/base/properties.h"

#include "runtime/views/pages/view_controller.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace kes {

namespace {

// What stands in for the custom view until the object has made its own.
Ref<ui::View> templateLabel(const Dictionary& panel) {
  auto own = platform::makeShared<Dictionary>();
  for (const char* key :
       {"textColor", "font", "text", "name", "multiline", "adjustFontSizeToFit", "textAlignment"})
    own->put(key, props::value(panel, key));
  own->put("hanchor", 2);
  own->put("vanchor", 2);
  own->put("alpha", 1.0f);
  own->put("visible", 1);
  const auto label = KesLabelWrapper().build(nullptr, *own, false);
  KesObjectWrapper::getMap(*label).set("props", own);
  label->setName({});
  return label;
}

}  // namespace

void KesCustomViewWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  // The panel's events go to the object, not to the owner: nothing is wired here.
  if (!keep) setObject(makeView());
  owner_ = bi;
  eventName_ = eventName;
}

Ref<ui::View> KesCustomViewWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                          bool bridge) const {
  view = KesPanelWrapper::build(std::move(view), properties, bridge);
  const auto label = templateLabel(properties);
  view->insertSubview(label, 0);
  return view;
}

void KesCustomViewWrapper::AfterDesignerScript() {
  if (!customObject_.isObject())
    throw KesException(
        formatText("CustomView class not found: %@",
                   {properties_ ? props::text(*properties_, "customType").str() : std::string()}));
  KesMap designer;
  designer.Initialize();
  if (const auto given = properties_ ? props::map(*properties_, "customProperties") : nullptr)
    for (const auto& [key, value] : given->entries()) designer.Put(key, value);
  for (auto* v = view().parent(); v; v = v->parent())
    if (auto* page = dynamic_cast<KesMainView*>(v)) {
      designer.Put("page", KesPanelWrapper::fromBoxed(Ref<ui::View>(&page->holder())));
      break;
    }
  auto base = KesPanelWrapper::fromBoxed(object());
  const bool ofRuntime = !customObject_.as<KesClass>();
  static_cast<KesPanelView&>(view()).setCustomObject(customObject_, ofRuntime);
  auto label = KesLabelWrapper::fromBoxed(base.GetView(0).object());
  label.SetLayoutAnimated(0, 1, 0, 0, base.Width(), base.Height());
  base.RemoveViewAt(0);
  if (properties_) setTag(props::value(*properties_, "tag"));

  const auto owner = owner_.lock();
  const Value made[] = {base, label, designer};
  if (const auto component = customObject_.as<KesClass>()) {
    const Value creator[] = {owner, owner ? Value(owner->eventsTarget()) : Value(), eventName_};
    Kes::runDynamicMethod(component.get(), "_initialize:::", true, creator);
    if (const Ref<Kes> own = component->bi()) {
      own->raiseEvent(nullptr, "designercreateview:::", made);
      base.innerInitialize(own, "base", true);
    }
  } else if (customObject_.isObject()) {
    Kes::runDynamicMethod(customObject_.object(), "DesignerCreateView:::", true, made);
    getMap(*customObject_.object()).set("base", platform::makeShared<KesWeakRef>(object()));
  }
}

}  // namespace kes
