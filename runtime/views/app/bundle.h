// The application's own description, reached by name: class "NSBundle" with
// "mainBundle" and "objectForInfoDictionaryKey:". Main thread. Unknown keys give nil.
#pragma once

#include "runtime/core/class_table.h"

namespace kes {

class Bundle final : public Object {
 public:
  std::string_view className() const override { return "NSBundle"; }
  static void describe(ClassBuilder<Bundle>& c);

  Ref<Bundle> mainBundle() { return Ref<Bundle>(this); }
  // "CFBundleShortVersionString" and "CFBundleVersion".
  Value objectForInfoDictionaryKey(const Text& key) const;
};

}  // namespace kes
