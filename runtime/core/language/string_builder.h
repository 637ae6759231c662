// KesStringBuilder: a wrapper over a text that grows. Copies share the text; every
// operation throws "Object was not initialized (%@)" before Initialize. Positions count
// 16-bit units and throw KesException when out of range. Main thread.
#pragma once

#include "runtime/core/wrapper.h"

namespace kes {

class MutableText final : public Object {
 public:
  std::string_view className() const override { return "NSMutableString"; }
  std::string utf8;
};

class KesStringBuilder final : public TypedWrapper<KesStringBuilder, MutableText> {
 public:
  static constexpr std::string_view kPlatformClass = "NSMutableString";
  std::string_view className() const override { return "KesStringBuilder"; }

  KesStringBuilder& Initialize();
  KesStringBuilder& Append(std::string_view text);
  KesStringBuilder& Insert(std::int32_t offset, std::string_view text);
  KesStringBuilder& Remove(std::int32_t begin, std::int32_t end);
  Text ToString() const;
  std::int32_t Length() const;
  Text description() const override;

 private:
  std::string& utf8() const;
};

}  // namespace kes
