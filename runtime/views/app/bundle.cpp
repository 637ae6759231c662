#include "runtime/views/app/bundle.h"

#include "platform/base/platform.h"

namespace kes {

void Bundle::describe(ClassBuilder<Bundle>& c) {
  c.name("NSBundle");
  c.method<&Bundle::mainBundle>("mainBundle");
  c.method<&Bundle::objectForInfoDictionaryKey>("objectForInfoDictionaryKey:");
}

Value Bundle::objectForInfoDictionaryKey(const Text& key) const {
  if (key == "CFBundleShortVersionString" || key == "CFBundleVersion")
    return platform::current().bundleVersion;
  return {};
}

}  // namespace kes
