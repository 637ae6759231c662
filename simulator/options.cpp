#include "simulator/options.h"

#include <charconv>
#include <cmath>
#include <regex>
#include <stdexcept>

#include "platform/base/platform.h"
#include "runtime/data/dates/date_time.h"

namespace sim {

namespace {

constexpr int kSmallestText = 80, kLargestText = 200;

double positive(const std::string& text, const char* what, double limit) {
  double v = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (error != std::errc() || end != text.data() + text.size() || !(v > 0) || v > limit)
    throw std::invalid_argument(std::string(what) + " cannot be " + text);
  return v;
}

double percentOfText(const std::string& text) {
  int percent = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
  if (error != std::errc() || end != text.data() + text.size() || percent < kSmallestText ||
      percent > kLargestText)
    throw std::invalid_argument("--text-size is a whole number from 80 to 200, not " + text);
  return percent;
}

double degrees(std::string_view text) {
  double v = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
  return error == std::errc() && end == text.data() + text.size() ? v : std::nan("");
}

ui::GeoPoint place(const std::string& text) {
  const auto comma = text.find(',');
  ui::GeoPoint at{std::nan(""), std::nan("")};
  if (comma != std::string::npos)
    at = {degrees(std::string_view(text).substr(0, comma)),
          degrees(std::string_view(text).substr(comma + 1))};
  if (!at.valid()) throw std::invalid_argument("--at wants LAT,LON, as in 45.238,10.042");
  return at;
}

}  // namespace

std::int64_t parseIsoTime(const std::string& text, const std::string& zone) {
  static const std::regex form(
      R"((\d{4})-(\d\d)-(\d\d)(?:[T ](\d\d):(\d\d)(?::(\d\d)(?:\.\d+)?)?(Z|[+-]\d\d:?\d\d)?)?)");
  std::smatch m;
  if (!std::regex_match(text, m, form))
    throw std::invalid_argument("not an ISO time: " + text + " (as in 2026-11-21T20:00)");
  const auto field = [&](int i) { return m[i].matched ? m[i].str() : std::string("00"); };
  // The calendar of a phone that is not switched on yet.
  platform::VirtualClock clock;
  platform::Platform phone(clock, {});
  const platform::PlatformScope scope(phone);
  struct Fresh {
    Fresh() { kes::KesDateTime::restart(); }
    ~Fresh() { kes::KesDateTime::restart(); }
  } const fresh;
  auto& time = kes::DateTime();
  const std::string offset = m[7].matched ? m[7].str() : "";
  if (offset.empty())
    time.setTimeZoneInternal(zone);
  else if (offset == "Z")
    time.SetTimeZone(0);
  else
    time.SetTimeZone(
        (offset[0] == '-' ? -1 : 1) *
        (std::stoi(offset.substr(1, 2)) + std::stoi(offset.substr(offset.size() - 2)) / 60.0));
  time.setDateFormat("yyyy-MM-dd");
  try {
    return time.DateTimeParse(field(1) + "-" + field(2) + "-" + field(3),
                              field(4) + ":" + field(5) + ":" + field(6));
  } catch (const std::exception&) {
    throw std::invalid_argument("no such time: " + text);
  }
}

Options Options::parse(const std::vector<std::string>& arguments) {
  Options o;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      o.help = true;
      continue;
    }
    if (name == "--keyboard") {
      o.keyboard = true;
      continue;
    }
    const auto value = [&]() -> const std::string& {
      if (i + 1 >= arguments.size()) throw std::invalid_argument(name + " needs a value");
      return arguments[++i];
    };
    if (name == "--tour") {
      o.tour = value();
    } else if (name == "--script") {
      o.script = value();
    } else if (name == "--town") {
      o.town = value();
      while (o.town.ends_with('/')) o.town.pop_back();
      if (!o.town.starts_with("http://") && !o.town.starts_with("https://"))
        throw std::invalid_argument("--town wants an http or https address, not " + o.town);
    } else if (name == "--now") {
      o.now = parseIsoTime(value(), "Europe/Rome");
    } else if (name == "--screen") {
      const auto& screen = value();
      if (screen != "qt" && screen != "headless")
        throw std::invalid_argument("--screen is qt or headless, not " + screen);
      o.screen = screen == "qt" ? Screen::Qt : Screen::Headless;
    } else if (name == "--size") {
      const auto& size = value();
      const auto x = size.find('x');
      if (x == std::string::npos) throw std::invalid_argument("--size wants WxH, as in 375x667");
      o.width = positive(size.substr(0, x), "a width", 4000);
      o.height = positive(size.substr(x + 1), "a height", 4000);
    } else if (name == "--scale") {
      o.scale = positive(value(), "a scale", 8);
    } else if (name == "--at") {
      o.at = place(value());
    } else if (name == "--push") {
      o.push = value();
    } else if (name == "--text-size") {
      o.textSize = percentOfText(value());
    } else if (name == "--data") {
      o.data = value();
    } else {
      throw std::invalid_argument("unknown option " + name);
    }
  }
  return o;
}

std::string Options::usage() {
  return R"(varlo-sim: InfoVarlo on a simulated phone

  --tour DIR             open every menu row and its details, write a PNG and a text
                         dump of each into DIR, quit
  --script FILE          play a script, then quit; exit status 1 at the first line that
                         fails, with its number
  --town URL             use this host for all services in place of the embedded one
  --now ISO-TIME         the clock starts there (no zone given: the town's)
  --screen qt|headless   which side draws (default qt; pictures need it)
  --size WxH             the phone's points (default 375x667)
  --scale N              its pixel ratio (default 2)
  --at LAT,LON           where the phone says it is, in degrees
  --push URL             use this broker of push messages (mqtts://…, or mqtt://… on this
                         machine) in place of the desk's own line
  --text-size PERCENT    its text size, 80 to 200 (default: the desktop's)
  --keyboard             a keyboard comes up over the screen while a text is edited
  --data DIR             documents, library and temporary folders (default: a fresh
                         temporary one)
)";
}

}  // namespace sim
