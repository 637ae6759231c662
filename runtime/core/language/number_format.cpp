#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "runtime/core/language/common.h"
#include "runtime/core/text/number_text.h"

namespace kes {

namespace {

// The shared formatter. It is costly to change, so it is changed only where it differs.
class SharedFormatter {
 public:
  SharedFormatter() {
    UErrorCode status = U_ZERO_ERROR;
    format_ = std::make_unique<icu::DecimalFormat>(
        "#,##0", icu::DecimalFormatSymbols(icu::Locale("en", "US"), status), status);
    if (U_FAILURE(status)) throw KesException(u_errorName(status));
    format_->setGroupingSize(3);
  }

  Text format(double number, int minInteger, int maxFraction, int minFraction, bool grouping) {
    const Settings wanted{clamp(minInteger), clamp(maxFraction),
                          std::min(clamp(minFraction), clamp(maxFraction)), grouping};
    if (!(wanted == settings_)) {
      format_->setMinimumIntegerDigits(wanted.minInteger);
      format_->setMaximumFractionDigits(wanted.maxFraction);
      format_->setMinimumFractionDigits(wanted.minFraction);
      format_->setGroupingUsed(wanted.grouping);
      settings_ = wanted;
    }
    icu::UnicodeString out;
    format_->format(std::isnan(number) ? std::fabs(number) : number, out);
    return Text::fromUtf16({out.getBuffer(), static_cast<std::size_t>(out.length())});
  }

 private:
  struct Settings {
    int minInteger = -1, maxFraction = -1, minFraction = -1;
    bool grouping = false;
    bool operator==(const Settings&) const = default;
  };
  // Beyond 340 digits a double has none.
  static int clamp(int digits) { return std::clamp(digits, 0, 340); }

  std::unique_ptr<icu::DecimalFormat> format_;
  Settings settings_;
};

Text escapedForXml(std::string_view s) {
  std::string out;
  out.reserve(s.size());
  for (const char c : s) {
    switch (c) {
      case '"':
        out += "&qout;";  // as it has always been written
        break;
      case '\'':
        out += "&#39;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      default:
        out += c;
    }
  }
  return Text(out);
}

int digitsOf(std::string_view format) {
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(detail::scanInteger(format), -most, most));
}

}  // namespace

bool KesCommon::IsNumber(std::string_view text) {
  const auto read = detail::scanDouble(text);
  return read && read->used == text.size();
}

Text KesCommon::NumberFormat(double number, int minIntegerDigits, int maxFractionDigits) {
  return NumberFormat2(number, minIntegerDigits, maxFractionDigits, 0, true);
}

Text KesCommon::NumberFormat2(double number, int minIntegerDigits, int maxFractionDigits,
                              int minFractionDigits, bool grouping) {
  static SharedFormatter formatter;
  return formatter.format(number, minIntegerDigits, maxFractionDigits, minFractionDigits, grouping);
}

Text KesCommon::SmartStringFormatter(std::string_view format, const Value& value) {
  if (format.empty()) return Kes::ObjectToString(value);
  try {
    if (format == "date" || format == "time")
      return dateText(format, Kes::ObjectToLongNumber(value));
    if (format == "datetime") {
      const auto ticks = Kes::ObjectToLongNumber(value);
      return formatText("%@ %@", {dateText("date", ticks), dateText("time", ticks)});
    }
    if (format == "xml") return escapedForXml(value.description());
    const std::size_t point = format.find('.');
    const int fraction = point == std::string_view::npos ? std::numeric_limits<int>::max()
                                                         : digitsOf(format.substr(point + 1));
    return NumberFormat(Kes::ObjectToNumber(value).asDouble(), digitsOf(format.substr(0, point)),
                        fraction);
  } catch (const std::exception&) {
    return "NaN";
  }
}

}  // namespace kes
