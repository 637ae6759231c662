#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "platform/base/utf8.h"
#include "runtime/core/language/common.h"

namespace kes {

namespace {

struct Close {
  void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, Close>;

// The engine's name for a charset; throws for one that nobody registered.
std::string engineName(std::string_view charset) {
  const Text name(charset);
  if (name.ToLowerCase() == "utf8") return "UTF-8";
  UErrorCode status = U_ZERO_ERROR;
  const char* known = ucnv_getCanonicalName(name.str().c_str(), "IANA", &status);
  if (U_FAILURE(status) || !known) throw KesException(formatText("Invalid CharSet %@", {charset}));
  return known;
}

Converter open(const std::string& name, std::string_view charset) {
  UErrorCode status = U_ZERO_ERROR;
  Converter c(ucnv_open(name.c_str(), &status));
  if (U_FAILURE(status)) throw KesException(formatText("Invalid CharSet %@", {charset}));
  return c;
}

// Gives the characters of the bytes one by one, from the beginning; throws where they are
// none.
template <class Take>
void decode(UConverter* c, std::string_view bytes, Take take) {
  ucnv_resetToUnicode(c);
  char16_t piece[1024];
  char16_t lead = 0;  // of a pair that the end of a piece has parted
  const char* from = bytes.data();
  UErrorCode status;
  do {
    status = U_ZERO_ERROR;
    char16_t* to = piece;
    ucnv_toUnicode(c, &to, std::end(piece), &from, bytes.data() + bytes.size(), nullptr, true,
                   &status);
    if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR)
      throw KesException("Error decoding data as string.");
    for (const char16_t* unit = piece; unit != to; ++unit) {
      if (lead && U16_IS_TRAIL(*unit)) {
        take(static_cast<char32_t>(U16_GET_SUPPLEMENTARY(lead, *unit)));
        lead = 0;
        continue;
      }
      if (lead) take(lead);
      lead = U16_IS_LEAD(*unit) ? *unit : u'\0';
      if (!lead) take(*unit);
    }
  } while (status == U_BUFFER_OVERFLOW_ERROR);
  if (lead) take(lead);
}

}  // namespace

void KesCommon::getEncoding(std::string_view charset) { open(engineName(charset), charset); }

Text KesCommon::BytesToString(std::span<const std::uint8_t> bytes, int offset, int length,
                              std::string_view charset) {
  if (offset < 0 || length < 0 || static_cast<std::size_t>(offset) > bytes.size() ||
      static_cast<std::size_t>(length) > bytes.size() - static_cast<std::size_t>(offset))
    throw KesException(
        "NSRangeException",
        formatText("Range %@ of length %@ is outside %@ bytes",
                   {std::to_string(offset), std::to_string(length), std::to_string(bytes.size())}));
  const char* begin = reinterpret_cast<const char*>(bytes.data()) + offset;
  const std::string name = engineName(charset);
  if (name == "UTF-8") {
    if (auto text = Text::fromUtf8({begin, static_cast<std::size_t>(length)}))
      return *std::move(text);
    throw KesException("Error decoding data as string.");
  }
  const Converter c = open(name, charset);
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setToUCallBack(c.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  // Read twice, so that a large body needs no more memory than its bytes and its text.
  const std::string_view all(begin, static_cast<std::size_t>(length));
  std::size_t size = 0, units = 0;
  decode(c.get(), all, [&](char32_t character) {
    size += platform::toUtf8(character).count;
    units += character < 0x10000 ? 1 : 2;
  });
  return Text::filled(size, units, [&](char* out) {
    decode(c.get(), all, [&](char32_t character) {
      const auto utf8 = platform::toUtf8(character);
      out = std::copy_n(utf8.bytes, utf8.count, out);
    });
  });
}

std::vector<std::uint8_t> KesCommon::GetBytes(std::string_view text, std::string_view charset) {
  const std::string name = engineName(charset);
  if (name == "UTF-8" && isUtf8(text)) return {text.begin(), text.end()};
  const Converter c = open(name, charset);
  UErrorCode status = U_ZERO_ERROR;
  // What the charset cannot express becomes a question mark.
  if (name != "UTF-8") ucnv_setSubstString(c.get(), u"?", 1, &status);
  const std::u16string units = Text(text).utf16();
  const auto size = static_cast<std::int32_t>(units.size());
  std::vector<std::uint8_t> bytes(
      static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(size, ucnv_getMaxCharSize(c.get()))));
  const auto n =
      ucnv_fromUChars(c.get(), reinterpret_cast<char*>(bytes.data()),
                      static_cast<std::int32_t>(bytes.size()), units.data(), size, &status);
  if (U_FAILURE(status)) throw KesException(formatText("Error encoding text as %@.", {charset}));
  bytes.resize(static_cast<std::size_t>(n));
  return bytes;
}

std::vector<std::string> KesCommon::availableEncodings() {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucnv_getStandardName(ucnv_getAvailableName(i), "IANA", &status);
    if (U_SUCCESS(status) && name) names.emplace_back(name);
  }
  return names;
}

}  // namespace kes
