// Where analytics go, for whoever wants them: nowhere by default, nothing leaves the phone.
//
// Lent by the program before the app starts, which keeps one reference; main thread.
#pragma once

#include <memory>

#include "runtime/core/dictionary.h"
#include "runtime/core/text.h"

namespace varlo {

class AnalyticsSink {
 public:
  virtual ~AnalyticsSink() = default;
  virtual void configure() {}
  virtual void logEvent(const kes::Text& /*name*/,
                        const kes::Ref<kes::Dictionary>& /*parameters*/) {}

  // The one in force; null restores the one that hears nothing.
  static void install(std::shared_ptr<AnalyticsSink> sink);
  static AnalyticsSink& installed();
};

}  // namespace varlo
