// The town's news.
#include "app/shell/main.h"

namespace varlo {

Resumable<> kes_main::_newsvarlo_caricalista() {
  c().Log("Menu row 50 has no feature yet.");
  co_return;
}

void kes_main::_newsvarlo_feed(const KesMap&) {}

Resumable<> kes_main::_newsletter_scaricalista() {
  c().Log("Menu row 51 has no feature yet.");
  co_return;
}

Resumable<> kes_main::_newsletter_feed(Text) { co_return; }

}  // namespace varlo
