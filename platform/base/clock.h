// Where time comes from. Nothing else in the house reads the machine's clock.
//
// now() is the wall clock in ticks: milliseconds since 1970-01-01 00:00:00 UTC.
// monotonic() is a steady count of milliseconds for timers and animations; it
// never goes back. Both may be read from any thread.
#pragma once

#include <atomic>
#include <cstdint>

namespace platform {

using Ticks = std::int64_t;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Ticks now() const = 0;
  virtual std::int64_t monotonic() const = 0;
};

// The machine's clock, shifted so that it starts at a chosen instant.
class SystemClock final : public Clock {
 public:
  SystemClock() = default;
  explicit SystemClock(Ticks startAt);
  Ticks now() const override;
  std::int64_t monotonic() const override;

 private:
  Ticks shift_ = 0;
};

// Moves only when told to.
class VirtualClock final : public Clock {
 public:
  explicit VirtualClock(Ticks startAt = 0) : start_(startAt) {}
  Ticks now() const override { return start_.load() + elapsed_.load(); }
  std::int64_t monotonic() const override { return elapsed_.load(); }
  void advance(std::int64_t milliseconds) { elapsed_ += milliseconds; }
  void setNow(Ticks t) { start_ = t - elapsed_.load(); }

 private:
  std::atomic<Ticks> start_;
  std::atomic<std::int64_t> elapsed_{0};
};

}  // namespace platform
