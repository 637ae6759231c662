// KesRect: four distances, in points. A plain value.
#pragma once

#include "runtime/core/object.h"

namespace kes {

class KesRect final : public Object, public ByValue {
 public:
  std::string_view className() const override { return "KesRect"; }
  float Left = 0, Top = 0, Right = 0, Bottom = 0;
  KesRect& Initialize(float left, float top, float right, float bottom) {
    Left = left;
    Top = top;
    Right = right;
    Bottom = bottom;
    return *this;
  }
};

}  // namespace kes
