#include "platform/ui/controls/web_view.h"

#include <algorithm>

#include "platform/base/log.h"
#include "platform/ui/application.h"
#include "platform/ui/values/link.h"

namespace ui {

void WebView::loadHtml(std::string html, std::string baseUrl) {
  request_ = {request_.serial + 1, true, std::move(html), std::move(baseUrl)};
  pageText_ = htmlText(request_.html);
  loading_ = true;
  markChanged(Change::Content);
}

void WebView::loadUrl(std::string url) {
  request_ = {request_.serial + 1, false, {}, std::move(url)};
  pageText_.clear();
  loading_ = true;
  markChanged(Change::Content);
}

bool WebView::isAddress(std::string_view url) {
  const auto colon = url.find(':');
  const auto letter = [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  return colon != std::string_view::npos && colon > 0 && colon + 1 < url.size() &&
         letter(url.front()) && std::none_of(url.begin(), url.end(), blank);
}

void WebView::stopLoading() { loading_ = false; }

void WebView::setScalesToFit(bool scales) {
  if (scales == scalesToFit_) return;
  scalesToFit_ = scales;
  markChanged(Change::Content);
}

void WebView::runScript(std::string script) {
  scripts_.push_back(std::move(script));
  markChanged(Change::Content);
}

std::vector<std::string> WebView::takeScripts() { return std::exchange(scripts_, {}); }

void WebView::scrollByKey(Key key) {
  switch (key) {
    case Key::PageUp:
      return runScript("window.scrollBy(0, -0.9 * window.innerHeight)");
    case Key::PageDown:
      return runScript("window.scrollBy(0, 0.9 * window.innerHeight)");
    case Key::Home:
      return runScript("window.scrollTo(0, 0)");
    default:
      return runScript("window.scrollTo(0, document.documentElement.scrollHeight)");
  }
}

bool WebView::navigationAllowed(const std::string& url) {
  Ref<View> pin(this);
  const auto hook = onOverrideUrl;
  return !hook || !hook(url);
}

bool WebView::linkFollowed(const std::string& url, bool newWindow) {
  if (!outgoingLink(url)) {
    platform::log("Not followed, no address for a link: " + url);
    return false;
  }
  Ref<View> pin(this);
  if (!navigationAllowed(url)) return false;
  if (!newWindow && schemeOf(url).starts_with("http")) return true;
  if (auto* app = Application::current()) app->openUrl(url);
  return false;
}

void WebView::finished(std::uint64_t serial, bool success, const std::string& url) {
  if (serial != request_.serial) return;  // of a page that was replaced meanwhile
  loading_ = false;
  Ref<View> pin(this);
  if (const auto hook = onPageFinished) hook(success, url);
}

void WebView::setPageText(std::string text) { pageText_ = std::move(text); }
std::string WebView::displayText() const { return pageText_; }

}  // namespace ui
