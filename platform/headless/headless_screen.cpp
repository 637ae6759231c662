#include "platform/headless/headless_screen.h"

namespace headless {

bool HeadlessScreen::openUrl(const std::string& url) {
  opened.push_back(url);
  return opens;
}

}  // namespace headless
