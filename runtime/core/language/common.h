// KesCommon: the built-in functions and constants of the language, reached as c() in
// every module. One instance; main thread (the number formatter is shared).
//
// Numbers and case always follow "en_US". Failures are KesException with an empty name
// and the texts given at each operation.
#pragma once

#include <functional>
#include <numbers>

#include "runtime/core/kes.h"
#include "runtime/core/map.h"

namespace kes {

// 32-bit ARGB colours, as signed integers.
struct KesColors {
  static constexpr std::int32_t Black = static_cast<std::int32_t>(0xFF000000);
  static constexpr std::int32_t DarkGray = static_cast<std::int32_t>(0xFF444444);
  static constexpr std::int32_t Gray = static_cast<std::int32_t>(0xFF888888);
  static constexpr std::int32_t LightGray = static_cast<std::int32_t>(0xFFCCCCCC);
  static constexpr std::int32_t White = static_cast<std::int32_t>(0xFFFFFFFF);
  static constexpr std::int32_t Red = static_cast<std::int32_t>(0xFFFF0000);
  static constexpr std::int32_t Green = static_cast<std::int32_t>(0xFF00FF00);
  static constexpr std::int32_t Blue = static_cast<std::int32_t>(0xFF0000FF);
  static constexpr std::int32_t Yellow = static_cast<std::int32_t>(0xFFFFFF00);
  static constexpr std::int32_t Cyan = static_cast<std::int32_t>(0xFF00FFFF);
  static constexpr std::int32_t Magenta = static_cast<std::int32_t>(0xFFFF00FF);
  static constexpr std::int32_t Transparent = 0;
  static std::int32_t RGB(int r, int g, int b) { return ARGB(255, r, g, b); }
  static std::int32_t ARGB(int a, int r, int g, int b);
};

// The last caught error, as the application reads it.
class KesExceptionWrapper {
 public:
  explicit KesExceptionWrapper(Value error) : error_(std::move(error)) {}
  bool IsInitialized() const { return !error_.isNilOrNull(); }
  Text Message() const;
  Text description() const { return Message(); }

 private:
  Value error_;
};

class KesCommon final : public Object {
 public:
  static KesCommon& shared();

  static constexpr bool True = true;
  static constexpr bool False = false;
  static constexpr const char* CRLF = "\n";
  static constexpr const char* TAB = "\t";
  static constexpr const char* QUOTE = "\"";
  static constexpr double cE = std::numbers::e;
  static constexpr double cPI = std::numbers::pi;
  static Value Null() { return {}; }
  static bool Not(bool b) { return !b; }
  KesColors Colors;

  // Mathematics; the forms with D take or give degrees.
  static double Abs(double x);
  static double Max(double a, double b);
  static double Min(double a, double b);
  static double Sin(double x);
  static double SinD(double x);
  static double Cos(double x);
  static double CosD(double x);
  static double Tan(double x);
  static double TanD(double x);
  static double ASin(double x);
  static double ASinD(double x);
  static double ACos(double x);
  static double ACosD(double x);
  static double ATan(double x);
  static double ATanD(double x);
  static double ATan2(double y, double x);
  static double ATan2D(double y, double x);
  static double Power(double base, double exponent);
  static double Sqrt(double x);
  static std::int64_t Round(double x);  // half away from zero
  static double Floor(double x);
  static double Ceil(double x);
  static double Logarithm(double x, double base);
  static std::int32_t Rnd(std::int32_t min, std::int32_t max);  // min <= result < max

  static Text Chr(std::int32_t code) { return Text::fromUnit(static_cast<char16_t>(code)); }
  static std::int32_t Asc(char16_t character) { return character; }
  static bool IsNumber(std::string_view text);
  Text NumberFormat(double number, int minIntegerDigits, int maxFractionDigits);
  Text NumberFormat2(double number, int minIntegerDigits, int maxFractionDigits,
                     int minFractionDigits, bool grouping);
  Text SmartStringFormatter(std::string_view format, const Value& value);

  // Decoding and encoding by IANA charset name ("Invalid CharSet %@").
  static Text BytesToString(std::span<const std::uint8_t> bytes, int offset, int length,
                            std::string_view charset);  // "Error decoding data as string."
  static std::vector<std::uint8_t> GetBytes(std::string_view text, std::string_view charset);
  static void getEncoding(std::string_view charset);  // only the check
  static std::vector<std::string> availableEncodings();

  static double DipToCurrent(double x) { return x; }
  double PerXToCurrent(double percent) const;
  double PerYToCurrent(double percent) const;
  // Width and height of the page most recently laid out, else of the first window.
  std::pair<double, double> getSize() const;

  // Each line ends at the shared Kes's logger, or else at the platform log.
  static void Log(const Value& text) { addLogPrefix(Kes::ObjectToString(text), ""); }
  static void LogInfo(std::string_view text) { addLogPrefix(Text(text), "i"); }
  static void LogError(std::string_view text) { addLogPrefix(Text(text), "e"); }
  static void LogColor(const Value& text, std::int32_t color);
  static void addLogPrefix(const Text& text, const Text& prefix);

  KesExceptionWrapper LastException() const {
    return KesExceptionWrapper(Kes::shared().lastError());
  }
  static KesMap createMap(std::initializer_list<Value> keysAndValues);
  static bool IsDevTool(std::string_view name);
  static Text GetType(const Value& v);
  static Text TypeToString(const Object& object, bool isClass);

  // Calls by name on a component (a module or class instance; else "Invalid component").
  static Value CallSub(const Ref<Kes>& caller, const Value& component, std::string_view sub) {
    return CallSub4(caller, component, sub, {});
  }
  static Value CallSub2(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                        Value a) {
    return CallSub4(caller, component, sub, std::span<const Value>(&a, 1));
  }
  static Value CallSub3(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                        Value a, Value b) {
    const Value params[] = {std::move(a), std::move(b)};
    return CallSub4(caller, component, sub, params);
  }
  static Value CallSub4(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                        Args params);
  // The same as a later task of the main queue.
  static void CallSubDelayed(const Ref<Kes>& caller, const Value& component, std::string_view sub) {
    CallSubDelayed4(caller, component, sub, {});
  }
  static void CallSubDelayed2(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                              Value a) {
    CallSubDelayed4(caller, component, sub, {std::move(a)});
  }
  static void CallSubDelayed3(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                              Value a, Value b) {
    CallSubDelayed4(caller, component, sub, {std::move(a), std::move(b)});
  }
  static void CallSubDelayed4(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                              std::vector<Value> params);
  static bool SubExists(const Ref<Kes>& caller, const Value& component, std::string_view sub,
                        int parameters);
  static Value Sender(const Ref<Kes>&) { return Kes::sender(); }

  // What lies above this folder lends these at the start of the process.
  std::function<Text(std::string_view kind, std::int64_t ticks)> dateText;  // "date" or "time"
  std::function<std::pair<double, double>()> windowSize;
};

}  // namespace kes
