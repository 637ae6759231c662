#include "runtime/views/wrappers/web_view_wrapper.h"

#include "platform/ui/values/link.h"
#include "runtime/data/files/file.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

bool isAssetsFolder(std::string_view url) {
  constexpr std::string_view scheme = "file://";
  if (!url.starts_with(scheme)) return false;
  url.remove_prefix(scheme.size());
  while (url.ends_with('/')) url.remove_suffix(1);
  std::string assets = File().DirAssets().str();
  while (assets.ends_with('/')) assets.pop_back();
  return url == assets;
}

}  // namespace

void KesWebViewWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::WebView& web = self();
  if (hasMethod(web, "_pagefinished::"))
    web.onPageFinished = [&web](bool success, const std::string& url) {
      raiseUIEvent(web, "_pagefinished::", {success, url});
    };
  if (hasMethod(web, "_overrideurl:"))
    web.onOverrideUrl = [&web](const std::string& url) {
      if (isAssetsFolder(url)) return false;
      const Value param(url);
      const Value result = raiseEvent(web, "_overrideurl:", std::span(&param, 1));
      return !result.isNilOrNull() && Kes::ObjectToBoolean(result);
    };
}

Ref<ui::View> KesWebViewWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                       bool bridge) const {
  auto web = ensure(view);
  web->setScalesToFit(props::flag(properties, "scaleToFit"));
  return KesViewWrapper::build(web, properties, bridge);
}

void KesWebViewWrapper::LoadHtml(const Value& html) { self().loadHtml(textForm(html)); }
void KesWebViewWrapper::LoadHtml(const Value& html, const Text& address) {
  const bool web = ui::schemeOf(address.view()).starts_with("http") &&
                   ui::outgoingLink(address.view()).has_value();
  self().loadHtml(textForm(html), web ? std::string(address.view()) : std::string());
}
void KesWebViewWrapper::LoadUrl(const Value& url) { self().loadUrl(textForm(url)); }

}  // namespace kes
