#include "runtime/core/language/common.h"

#include <sys/random.h>

#include <cmath>
#include <system_error>

#include "platform/base/log.h"
#include "runtime/core/class_table.h"
#include "runtime/core/container_walk.h"
#include "runtime/core/language/module.h"
#include "runtime/core/text/utf8_out.h"

namespace kes {

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr std::int32_t kLongestLog = 4000;

std::uint32_t strongRandom() {
  std::uint32_t r;
  while (::getrandom(&r, sizeof r, 0) != static_cast<ssize_t>(sizeof r))
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "getrandom");
  return r;
}

Kes* getComponentBI(const Value& component) {
  const auto c = detail::unwrapped(component).as<Component>();
  if (!c) throw KesException(formatText("Invalid component: %@", {component.description()}));
  return c->bi().get();
}

Text fixSubName(std::string_view sub, std::size_t parameters) {
  return Text(sub).ToLowerCase() + Text(std::string(parameters, ':'));
}

Ref<Shared> senderOf(const Ref<Kes>& caller) {
  return caller ? Ref<Shared>(caller->eventsTarget()) : nullptr;
}

}  // namespace

std::int32_t KesColors::ARGB(int a, int r, int g, int b) {
  const auto byte = [](int v) { return static_cast<std::uint32_t>(v) & 0xFF; };
  return static_cast<std::int32_t>(byte(a) << 24 | byte(r) << 16 | byte(g) << 8 | byte(b));
}

Text KesExceptionWrapper::Message() const {
  return error_.isNilOrNull() ? Text() : error_.description();
}

KesCommon& KesCommon::shared() {
  static auto& only = *new Ref<KesCommon>(platform::makeShared<KesCommon>());
  return *only;
}

double KesCommon::Abs(double x) { return std::fabs(x); }
double KesCommon::Max(double a, double b) { return a < b ? b : a; }
double KesCommon::Min(double a, double b) { return b < a ? b : a; }
double KesCommon::Sin(double x) { return std::sin(x); }
double KesCommon::SinD(double x) { return std::sin(x * kDegree); }
double KesCommon::Cos(double x) { return std::cos(x); }
double KesCommon::CosD(double x) { return std::cos(x * kDegree); }
double KesCommon::Tan(double x) { return std::tan(x); }
double KesCommon::TanD(double x) { return std::tan(x * kDegree); }
double KesCommon::ASin(double x) { return std::asin(x); }
double KesCommon::ASinD(double x) { return std::asin(x) / kDegree; }
double KesCommon::ACos(double x) { return std::acos(x); }
double KesCommon::ACosD(double x) { return std::acos(x) / kDegree; }
double KesCommon::ATan(double x) { return std::atan(x); }
double KesCommon::ATanD(double x) { return std::atan(x) / kDegree; }
double KesCommon::ATan2(double y, double x) { return std::atan2(y, x); }
double KesCommon::ATan2D(double y, double x) { return std::atan2(y, x) / kDegree; }
double KesCommon::Power(double base, double exponent) { return std::pow(base, exponent); }
double KesCommon::Sqrt(double x) { return std::sqrt(x); }
std::int64_t KesCommon::Round(double x) { return Value(std::round(x)).asInt64(); }
double KesCommon::Floor(double x) { return std::floor(x); }
double KesCommon::Ceil(double x) { return std::ceil(x); }
double KesCommon::Logarithm(double x, double base) { return std::log(x) / std::log(base); }

std::int32_t KesCommon::Rnd(std::int32_t min, std::int32_t max) {
  if (max <= min) return min;
  const std::uint32_t span = static_cast<std::uint32_t>(max) - static_cast<std::uint32_t>(min);
  // Drawn again where the last, incomplete run of spans would favour small results.
  const std::uint32_t surplus = -span % span;
  std::uint32_t r = strongRandom();
  while (r < surplus) r = strongRandom();
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(min) + r % span);
}

std::pair<double, double> KesCommon::getSize() const {
  const auto view = Kes::shared().mainView.lock();
  if (const auto* page = dynamic_cast<const PageSized*>(view.get()))
    return {page->pageWidth(), page->pageHeight()};
  return windowSize ? windowSize() : std::pair(0.0, 0.0);
}

double KesCommon::PerXToCurrent(double percent) const { return getSize().first * percent / 100; }
double KesCommon::PerYToCurrent(double percent) const { return getSize().second * percent / 100; }

void KesCommon::LogColor(const Value& text, std::int32_t color) {
  addLogPrefix(Kes::ObjectToString(text), Text(std::to_string(color)));
}

void KesCommon::addLogPrefix(const Text& text, const Text& prefix) {
  // Half a character, which the cut may leave, is no UTF-8 for whoever reads the log.
  std::string scratch;
  const bool isLong = text.Length() > kLongestLog;
  const Text whole = isLong ? text.SubString2(0, kLongestLog) : text;
  Text line = wellFormedUtf8(whole, scratch);
  if (isLong) line += " (message truncated)...";
  if (const auto& logger = Kes::shared().logger)
    logger(line, prefix);
  else
    platform::log(line);
}

KesMap KesCommon::createMap(std::initializer_list<Value> keysAndValues) {
  KesMap map;
  map.Initialize();
  for (auto i = keysAndValues.begin(); i != keysAndValues.end() && i + 1 != keysAndValues.end();
       i += 2)
    map.Put(i[0], i[1]);
  return map;
}

bool KesCommon::IsDevTool(std::string_view name) { return Text(name).EqualsIgnoreCase("kes"); }

Text KesCommon::GetType(const Value& v) { return v.className(); }

Text KesCommon::TypeToString(const Object& object, bool) {
  const detail::PrintScope scope(&object);
  if (!scope.going()) return detail::PrintScope::kEllipsis;
  std::string out = "[";
  try {
    if (const ClassInfo* info = object.classInfo()) {
      for (const auto& field : info->fields()) {
        if (out.size() > 1) out += ", ";
        out.append(field.name, 1).append("=");
        if (field.kind == '{')
          out.append("Unknown type: ").append(1, field.kind);
        else
          out.append(field.get(object).description());
      }
    }
  } catch (const std::exception& e) {
    LogError(formatText("TypeToString error: %@", {e.what()}));
  }
  return out + "]";
}

Value KesCommon::CallSub4(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                          Args params) {
  const Ref<Kes> bi(getComponentBI(component));
  if (!bi) return {};
  Value result = bi->raiseEvent(senderOf(caller), fixSubName(sub, params.size()), params);
  if (const auto wrapper = result.as<KesObjectWrapper>()) return wrapper->objectOrNull();
  return result;
}

void KesCommon::CallSubDelayed4(const Ref<Kes>& caller, const Value& component,
                                std::string_view sub, std::vector<Value> params) {
  const Ref<Kes> bi(getComponentBI(component));
  if (!bi) return;
  Text event = fixSubName(sub, params.size());
  bi->raiseUIEvent(senderOf(caller), std::move(event), std::move(params));
}

bool KesCommon::SubExists(const Ref<Kes>&, const Value& component, std::string_view sub,
                          int parameters) {
  const Ref<Kes> bi(getComponentBI(component));
  return bi && bi->hasMethod(fixSubName(sub, static_cast<std::size_t>(std::max(parameters, 0))));
}

}  // namespace kes
