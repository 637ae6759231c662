#include "townhost/faults.h"

#include <algorithm>
#include <utility>

namespace town {
namespace {

constexpr std::array<std::string_view, Fault::kinds> names = {"delay",  "drop",         "truncate",
                                                              "status", "wrongLength",  "garbage",
                                                              "shape",  "missingField", "redirect"};

// A fault of the kind, with the particulars left to chance.
Fault drawn(Fault::Kind kind, std::mt19937& random, long longestDelay) {
  const auto upTo = [&](long most) { return std::uniform_int_distribution<long>(0, most)(random); };
  switch (kind) {
    case Fault::Kind::delay:
      return Fault::delay(upTo(longestDelay));
    case Fault::Kind::truncate:
      return Fault::truncate(upTo(200));
    case Fault::Kind::status: {
      constexpr std::array codes = {400, 403, 404, 410, 429, 500, 502, 503};
      return Fault::status(codes[static_cast<std::size_t>(upTo(codes.size() - 1))]);
    }
    case Fault::Kind::wrongLength:
      return Fault::wrongLength(upTo(1) == 0 ? 1 + upTo(50) : -1 - upTo(50));
    case Fault::Kind::missingField: {
      constexpr std::array keys = {"Chiave", "Farmacia", "Telefono", "Turno1", "Giorno", "Name"};
      return Fault::missingField(keys[static_cast<std::size_t>(upTo(keys.size() - 1))]);
    }
    case Fault::Kind::redirect:
      return Fault::redirect("/_status/404");
    default:
      return {kind};
  }
}

}  // namespace

Fault Fault::onlyFor(int requests) const {
  Fault fault = *this;
  fault.times = requests;
  return fault;
}

std::string_view nameOf(Fault::Kind kind) { return names[static_cast<std::size_t>(kind)]; }

std::optional<Fault::Kind> faultKind(std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<Fault::Kind>(found - names.begin());
}

void Faults::add(std::string pathPrefix, Fault fault) {
  std::lock_guard lock(mutex_);
  const int left = fault.times;
  rules_.push_back({std::move(pathPrefix), std::move(fault), left});
}

void Faults::mix(std::string pathPrefix, const FaultMix& mix) {
  std::lock_guard lock(mutex_);
  mixer_ = Mixer{std::move(pathPrefix), mix, std::mt19937(mix.seed)};
}

void Faults::clear() {
  std::lock_guard lock(mutex_);
  rules_.clear();
  mixer_.reset();
}

std::vector<Faults::Rule> Faults::standing() const {
  std::lock_guard lock(mutex_);
  return rules_;
}

std::vector<Fault> Faults::take(std::string_view path) {
  std::lock_guard lock(mutex_);
  std::optional<Fault> delay, other;
  for (auto rule = rules_.rbegin(); rule != rules_.rend(); ++rule) {
    if (!path.starts_with(rule->pathPrefix)) continue;
    auto& slot = rule->fault.kind == Fault::Kind::delay ? delay : other;
    if (slot) continue;
    slot = rule->fault;
    if (rule->fault.times > 0) --rule->left;
  }
  std::erase_if(rules_, [](const Rule& r) { return r.fault.times > 0 && r.left <= 0; });

  if (mixer_ && path.starts_with(mixer_->pathPrefix)) {
    auto& random = mixer_->random;
    std::uniform_real_distribution<double> chance(0, 1);
    for (std::size_t i = 0; i < Fault::kinds; ++i) {
      const auto kind = static_cast<Fault::Kind>(i);
      auto& slot = kind == Fault::Kind::delay ? delay : other;
      // Drawn even when not needed: the sequence then depends on the count alone.
      if (chance(random) < mixer_->mix.rate(kind) && !slot)
        slot = drawn(kind, random, mixer_->mix.longestDelay);
    }
  }
  std::vector<Fault> taken;
  if (delay) taken.push_back(std::move(*delay));
  if (other) taken.push_back(std::move(*other));
  return taken;
}

}  // namespace town
