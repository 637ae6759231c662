// What shall go wrong: rules by path prefix, taken up one request at a time.
//
// Owned by the TownHost; tests and scripts set it, the serving threads read it.
// Every member may be called from any thread. A rule that carries a count wears
// off after that many requests. The newest rule that fits wins; a delay joins
// with the newest other fault. Times are milliseconds, sizes are bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace town {

struct Fault {
  enum class Kind {
    delay,         // amount: how long the answer is held back
    drop,          // the connection is closed without an answer
    truncate,      // the full length announced, `amount` bytes sent, then cut
    status,        // amount: the status; text: the error page
    wrongLength,   // amount: how much more (less, if negative) is announced than sent
    garbage,       // a body that isn't JSON; text, or a few bytes of our own
    shape,         // a body that is JSON, but not of the kind expected; text, or our own
    missingField,  // text: the key that is taken out of every object of the document
    redirect       // text: the path that is answered for with a 302
  };
  static constexpr std::size_t kinds = 9;

  Kind kind = Kind::delay;
  long amount = 0;
  std::string text;
  int times = 0;  // 0: until cleared

  // What an application would use in a hurry.
  static Fault delay(long ms) { return {Kind::delay, ms}; }
  static Fault drop() { return {Kind::drop}; }
  static Fault truncate(long bytes) { return {Kind::truncate, bytes}; }
  static Fault status(int code, std::string page = "") { return {Kind::status, code, page}; }
  static Fault wrongLength(long byMuch) { return {Kind::wrongLength, byMuch}; }
  static Fault garbage(std::string bytes = "") { return {Kind::garbage, 0, bytes}; }
  static Fault shape(std::string json = "") { return {Kind::shape, 0, json}; }
  static Fault missingField(std::string key) { return {Kind::missingField, 0, key}; }
  static Fault redirect(std::string path) { return {Kind::redirect, 0, path}; }
  Fault onlyFor(int requests) const;
};

std::string_view nameOf(Fault::Kind kind);
std::optional<Fault::Kind> faultKind(std::string_view name);

// All kinds at random, for runs over thousands of requests. A request draws at
// most one fault beside a delay; which one depends on the seed and on how many
// requests drew before it.
struct FaultMix {
  std::uint32_t seed = 1;
  std::array<double, Fault::kinds> rates{};  // 0 to 1, by kind
  long longestDelay = 40;
  double& rate(Fault::Kind kind) { return rates[static_cast<std::size_t>(kind)]; }
  double rate(Fault::Kind kind) const { return rates[static_cast<std::size_t>(kind)]; }
};

class Faults {
 public:
  void add(std::string pathPrefix, Fault fault);
  void mix(std::string pathPrefix, const FaultMix& mix);
  void clear();

  struct Rule {
    std::string pathPrefix;
    Fault fault;
    int left = 0;  // requests to go, where the fault has a count
  };
  std::vector<Rule> standing() const;

  // The faults of one request, a delay first; counted rules are used up by it.
  std::vector<Fault> take(std::string_view path);

 private:
  struct Mixer {
    std::string pathPrefix;
    FaultMix mix;
    std::mt19937 random;
  };
  mutable std::mutex mutex_;
  std::vector<Rule> rules_;
  std::optional<Mixer> mixer_;
};

}  // namespace town
