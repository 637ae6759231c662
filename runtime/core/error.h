// KesError: what is kept of a failure after the exception itself has gone: a domain, a code
// within it and the text that the application reads through LastException. Immutable, held by
// Ref; any thread.
#pragma once

#include "runtime/core/object.h"

namespace kes {

class KesError final : public Object {
 public:
  KesError(Text domain, std::int32_t code, Text text)
      : domain_(std::move(domain)), code_(code), text_(std::move(text)) {}

  std::string_view className() const override { return "NSError"; }
  const Text& domain() const { return domain_; }
  std::int32_t code() const { return code_; }
  Text description() const override { return text_; }

 private:
  Text domain_;
  std::int32_t code_;
  Text text_;
};

}  // namespace kes
