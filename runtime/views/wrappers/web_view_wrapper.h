// KesWebViewWrapper: a web page, from text or from an address.
//
// Events: "_pagefinished::" (success, url), "_overrideurl:" (url) for each link followed;
// a true result keeps the view from following it, no result lets it go on. Not raised
// for the address of the assets folder. Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/web_view.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesWebViewWrapper : public ViewWrapper<KesWebViewWrapper, ui::WebView> {
 public:
  static constexpr std::string_view kPlatformClass = "UIWebView";
  static constexpr std::string_view kName = "KesWebViewWrapper";

  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  // A text from outside has no address: it reaches no file, and relative links in it
  // lead nowhere.
  void LoadHtml(const Value& html);
  // One that came from an address (http or https): relative links lead where they would
  // there, "//host" follows its scheme.
  void LoadHtml(const Value& html, const Text& address);
  void LoadUrl(const Value& url);
  void StopLoading() { self().stopLoading(); }
  Text Url() const { return Text(self().request().url); }
  bool ScaleToFit() const { return self().scalesToFit(); }
  void setScaleToFit(bool scale) { self().setScalesToFit(scale); }
};

}  // namespace kes
