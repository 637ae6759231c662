// A web page, from text or from an address. The screen's browser engine shows it;
// this holds what is to be shown and passes on what the engine reports. Main thread.
#pragma once

#include <cstdint>

#include "platform/ui/tree/view.h"

namespace ui {

class WebView : public View {
 public:
  struct Request {
    std::uint64_t serial = 0;  // grows with each load; 0: nothing was ever loaded
    bool isHtml = false;
    std::string html, url;  // url: the address, or the base of the html
  };

  WebView() { setClipsToBounds(true); }
  std::string_view className() const override { return "UIWebView"; }

  void loadHtml(std::string html, std::string baseUrl = {});
  // What is no address at all ends in onPageFinished too, as failed.
  void loadUrl(std::string url);
  static bool isAddress(std::string_view url);  // a scheme and something behind it
  void stopLoading();
  bool loading() const { return loading_; }
  const Request& request() const { return request_; }
  bool scalesToFit() const { return scalesToFit_; }
  void setScalesToFit(bool scales);

  // Runs a script in the page; the engine takes the waiting ones in order.
  void runScript(std::string script);
  std::vector<std::string> takeScripts();

  std::function<bool(const std::string& url)> onOverrideUrl;  // true: don't load
  std::function<void(bool success, const std::string& url)> onPageFinished;
  std::function<void(const std::string& message)> onMessage;  // posted by the page's script

  // Called by the screen. An address, whether followed from a link or asked for with
  // loadUrl(), is loaded only if this answers true; html given as text isn't asked about.
  bool navigationAllowed(const std::string& url);
  // A link that the user follows: true when the page itself is to go there. What may leave
  // the application goes through its gate; nothing else is followed.
  bool linkFollowed(const std::string& url, bool newWindow);
  void finished(std::uint64_t serial, bool success, const std::string& url);
  // What can be read in the page, if the engine knows; else taken from the html.
  void setPageText(std::string text);

  std::string displayText() const override;
  bool canFocus() const override { return true; }
  bool scrollsByKeys() const override { return request_.serial != 0 && !loading_; }
  void scrollByKey(Key key) override;

 protected:
  Role defaultRole() const override { return Role::WebContent; }
  std::string derivedName() const override { return {}; }

 private:
  Request request_;
  std::vector<std::string> scripts_;
  std::string pageText_;
  bool scalesToFit_ = false;
  bool loading_ = false;
};

// The readable text of an HTML document: no tags, scripts or styles, entities decoded,
// blanks collapsed, one line a block.
std::string htmlText(std::string_view html);

}  // namespace ui
