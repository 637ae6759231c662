// PlatformDate: an instant as the platform holds it, in seconds since 1970-01-01 UTC.
// Immutable; held by Ref, any thread; throws nothing. KesDateTime turns it into ticks and
// back.
#pragma once

#include "runtime/core/object.h"

namespace kes {

class PlatformDate final : public Object {
 public:
  explicit PlatformDate(double seconds) : seconds_(seconds) {}
  std::string_view className() const override { return "NSDate"; }
  double secondsSince1970() const { return seconds_; }

  Text description() const override;  // "2017-11-15 08:30:00 +0000"
  bool isEqual(const Value& other) const override;
  std::size_t hash() const override { return std::hash<double>()(seconds_); }

 private:
  double seconds_;
};

}  // namespace kes
