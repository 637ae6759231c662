#include "app/mappe/open_data.h"

#include <algorithm>
#include <string>

#include "app/kit/deployment.h"

namespace varlo {

using kes::Text;

namespace {

// Scheme, host and port of a web address in one form, whatever its case and whether the
// port that goes without saying is said. Empty for what is none, and for what a reader
// might take for two: a user's name or a backslash before the path.
std::string originOf(std::string_view address) {
  const auto colon = address.find("://");
  if (colon == std::string_view::npos) return {};
  std::string scheme(address.substr(0, colon));
  address.remove_prefix(colon + 3);
  std::string host(address.substr(0, address.find_first_of("/?#")));
  if (host.find_first_of("@\\ ") != std::string::npos) return {};
  const auto lower = [](std::string& text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char ch) { return ch >= 'A' && ch <= 'Z' ? char(ch - 'A' + 'a') : ch; });
  };
  lower(scheme);
  lower(host);
  const bool web = scheme == "http" || scheme == "https";
  if (!web || host.empty()) return {};
  const std::string usual = scheme == "http" ? ":80" : ":443";
  if (host.ends_with(usual)) host.resize(host.size() - usual.size());
  return scheme + "://" + host;
}

}  // namespace

Text openDataAddress(const Text& address) {
  const std::string origin = originOf(address.view());
  if (origin.empty() || origin != originOf(deployment::hosts().openData.view())) return address;
  const bool asks = address.view().find('?') != std::string_view::npos;
  return address + (asks ? "&" : "?") + "$$app_token=" + deployment::openDataToken();
}

}  // namespace varlo
