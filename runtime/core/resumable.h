// Resumable subs: straight-line code that parks at a wait and goes on when the event
// comes. Written as C++20 coroutines.
//
//   Resumable<> kes_main::_caricahome() {
//     ...
//     job = co_await waitFor<kes_httpjob>("jobdone:", job);
//     co_await sleep(200);
//   }
//
// A Resumable<T> with a value is awaited by its caller as an event:
//   auto day = co_await waitFor<KesMap>("complete:", _cerca(now, days));
//
// The coroutine's frame is the sub: one allocation, its locals live there. The waiting
// table owns it while it is parked, a posted task while it sleeps; dropping the last
// reference destroys the frame and unwinds its locals, which cancels the sub. The frame
// keeps the module or instance that owns it alive. Main thread only. The first part runs
// inside the call. An exception in it reaches whoever called by name, waits for the sub or
// asks orThrow(); dropped with the result it goes to the main queue's fault handler. One
// after a wait reaches whoever raised the event.
#pragma once

#include <coroutine>
#include <tuple>

#include "runtime/core/convert.h"
#include "runtime/core/kes.h"
#include "runtime/core/resumable_sub.h"
#include "runtime/core/wrapper.h"

namespace kes {

// What a caller holds of a sub that produces a value.
class KesResumableSubWrapper final : public TypedWrapper<KesResumableSubWrapper, KesResumableSub> {
 public:
  static constexpr std::string_view kPlatformClass = "KesResumableSub";
  std::string_view className() const override { return "KesResumableSubWrapper"; }
  bool Completed() const { return native()->completed; }
};

// Parks rs until `event` is raised on bi by the sender that the filter names (a
// wrapper stands for its object; nil waits for any sender). Throws "Resumable sub
// already completed" for a sub that is over.
void WaitFor(std::string_view event, Kes& bi, Ref<KesResumableSub> rs, const Value& senderFilter);
// The same for a sender known to be neither a wrapper nor a sub; null waits for any.
void parkFor(std::string_view event, Kes& bi, KesResumableSub::Held rs, const Shared* sender);
// Resumes rs in a later task, after the time in milliseconds.
void Sleep(Kes& bi, Ref<KesResumableSub> rs, std::int64_t milliseconds);
// The form without a sub does nothing at all.
inline void Sleep(std::int64_t) {}
// Declares rs finished: posts the task that completes it and raises "complete:".
void ReturnFromResumableSub(Ref<KesResumableSub> rs, Value value);

namespace detail {

class ResumableFrame : public KesResumableSub {
 public:
  // Does nothing for a sub that is running or over: only one that is parked can be woken.
  void resume(Kes* bi, Args params) override;
  Args params() const { return params_; }
  // Runs what parks the sub. A sub that could not be parked goes on with the exception.
  template <class Park>
  void suspend(Park park) {
    suspended_ = true;
    try {
      park();
    } catch (...) {
      suspended_ = false;
      throw;
    }
  }
  void rethrowStartError() {
    if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
  }
  void reportStartError() noexcept;

  std::suspend_never initial_suspend() noexcept { return {}; }
  std::suspend_always final_suspend() noexcept {
    state = -1;
    return {};
  }
  void unhandled_exception() noexcept { error_ = std::current_exception(); }

 protected:
  void dispose() const noexcept override { handle_.destroy(); }
  std::coroutine_handle<> handle_;
  Ref<const Object> parent_;

 private:
  Args params_;
  bool suspended_ = false;
  std::exception_ptr error_;
};

template <class T>
struct ResumableReturn : ResumableFrame {
  void return_value(T v) {
    ReturnFromResumableSub(Ref<KesResumableSub>(this), toValue(std::move(v)));
  }
};
template <>
struct ResumableReturn<void> : ResumableFrame {
  void return_void() noexcept {}
};

template <class... R>
struct WaitAwaiter {
  Kes& bi;                 // of the component whose frame waits and keeps it alive
  std::string_view event;  // read before the wait only
  const Shared* sender = nullptr;
  Value filter;
  ResumableFrame* frame = nullptr;

  bool await_ready() const noexcept { return false; }
  template <class P>
  void await_suspend(std::coroutine_handle<P> h) {
    frame = &h.promise();
    frame->suspend([&] {
      if (filter.isNil())
        parkFor(event, bi, frame->take(), sender);
      else
        WaitFor(event, bi, frame->take().self, std::exchange(filter, Value()));
    });
  }
  auto await_resume() const {
    if constexpr (sizeof...(R) == 1) {
      return (convert<R>(0), ...);
    } else if constexpr (sizeof...(R) > 1) {
      return convertAll(std::index_sequence_for<R...>());
    }
  }

 private:
  template <class T>
  auto convert(std::size_t i) const {
    const Value& v = argument(frame->params(), i);
    if constexpr (std::derived_from<T, Shared> && !BoxedByValue<T>)
      return fromValue<Ref<T>>(v);
    else
      return fromValue<T>(v);
  }
  template <std::size_t... I>
  auto convertAll(std::index_sequence<I...>) const {
    return std::tuple{convert<R>(I)...};
  }
};

struct SleepAwaiter {
  Kes& bi;
  std::int64_t milliseconds;

  bool await_ready() const noexcept { return false; }
  template <class P>
  void await_suspend(std::coroutine_handle<P> h) {
    ResumableFrame& frame = h.promise();
    frame.suspend([&] { Sleep(bi, Ref<KesResumableSub>(&frame), milliseconds); });
  }
  void await_resume() const noexcept {}
};

}  // namespace detail

template <class T = void>
class Resumable {
 public:
  class promise_type final : public detail::ResumableReturn<T> {
   public:
    template <class Owner, class... A>
    explicit promise_type(Owner& owner, A&&...) {
      this->handle_ = std::coroutine_handle<promise_type>::from_promise(*this);
      if constexpr (std::derived_from<std::remove_cvref_t<Owner>, Object>)
        this->parent_ = Ref<const Object>(&owner);
    }
    promise_type() { this->handle_ = std::coroutine_handle<promise_type>::from_promise(*this); }
    Resumable get_return_object() { return Resumable(Ref<detail::ResumableFrame>(this)); }
  };

  Resumable(Resumable&&) noexcept = default;
  Resumable& operator=(Resumable&&) noexcept = default;
  // A sub that failed before its first wait and was not asked about it: the queue hears.
  ~Resumable() {
    if (frame_) frame_->reportStartError();
  }

  // Passes on what went wrong before the first wait.
  Resumable& orThrow() {
    if (frame_) frame_->rethrowStartError();
    return *this;
  }

  // The sub, to be awaited with "complete:"; nil for one that produces no value.
  Value intoValue() {
    orThrow();
    if constexpr (std::is_void_v<T>)
      return {};
    else
      return KesObjectWrapper::createWrapper(KesResumableSubWrapper(), frame_);
  }
  Ref<KesResumableSub> sub() const { return frame_; }

 private:
  explicit Resumable(Ref<detail::ResumableFrame> frame) : frame_(std::move(frame)) {}
  Ref<detail::ResumableFrame> frame_;
};

}  // namespace kes
