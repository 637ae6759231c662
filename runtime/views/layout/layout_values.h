// KesLayoutValues: the size of a screen or of a layout's variant, in points. A plain
// value; main thread.
#pragma once

#include "runtime/core/object.h"

namespace kes {

class KesLayoutValues final : public Object, public ByValue {
 public:
  KesLayoutValues() = default;
  KesLayoutValues(std::int32_t width, std::int32_t height) : Width(width), Height(height) {}
  std::string_view className() const override { return "KesLayoutValues"; }
  static KesLayoutValues fromBoxed(const Value& v);

  std::int32_t Width = 0, Height = 0;
  float Scale() const { return 1.0f; }  // layouts are normalised
  double NonnormalizedScale() const;    // pixels a point
  // The diagonal in inches, at 160 points an inch.
  double DeviceApproximateScreenSize() const;
  Text description() const override;
};

// The main screen as layouts count it.
KesLayoutValues GetDeviceLayoutValues();

}  // namespace kes
