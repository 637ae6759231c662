// iStringUtils: texts for URLs. Stateless; any thread. Throws "Invalid CharSet %@" and,
// when what was escaped is no text, "Error decoding data as string."
#pragma once

#include "runtime/core/text.h"

namespace kes {

class iStringUtils {
 public:
  // Each byte of the text in the charset as %XX, but letters, digits and "-._~".
  static Text EncodeUrl(std::string_view text, std::string_view charset);
  // The other way; a percent sign that escapes nothing stays as it is.
  static Text DecodeUrl(std::string_view text, std::string_view charset);
};

}  // namespace kes
