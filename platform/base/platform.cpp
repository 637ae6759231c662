#include "platform/base/platform.h"

#include <cstdlib>

#include "platform/base/log.h"

namespace platform {

namespace {
std::atomic<Platform*> installed{nullptr};
}  // namespace

Platform& current() {
  auto* p = installed.load(std::memory_order_acquire);
  if (!p) {
    log("No platform is installed.");
    std::abort();
  }
  return *p;
}

PlatformScope::PlatformScope(Platform& p) : former_(installed.exchange(&p)) {}

PlatformScope::~PlatformScope() { installed.store(former_); }

}  // namespace platform
