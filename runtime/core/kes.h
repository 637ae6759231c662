// Kes: the event object of a module or class instance. The conversions between values stand
// on it, too: Kes::ObjectToNumber(v).
//
// Events reach application code by name: raiseEvent finds the sub of that name on the
// events target and calls it with converted parameters, or wakes a resumable sub that
// waits for it. A missing handler is no error. raiseEvent runs in place and belongs to
// the main thread (elsewhere it throws); raiseUIEvent and raiseEventFromDifferentThread may
// be called on any thread and always post to the main queue. A Kes belongs to its module or
// instance and holds its target weakly. Exceptions of a handler pass through to the raiser.
#pragma once

#include <functional>
#include <vector>

#include "runtime/core/conversions.h"
#include "runtime/core/exception.h"
#include "runtime/core/object.h"
#include "runtime/core/resumable_sub.h"

namespace kes {

// One parked wait. The sub is kept alive by it, the sender is not.
struct KesWaitForEvent {
  Ref<KesResumableSub> rs;
  WeakRef<Shared> senderFilter;
  bool senderFilterSet = false;

  bool noFilter() const { return !senderFilterSet; }
  bool cleared() const { return senderFilterSet && senderFilter.expired(); }
};

// An object whose size is the size of a page: what getSize reads from mainView.
class PageSized {
 public:
  virtual ~PageSized() = default;
  virtual double pageWidth() const = 0;
  virtual double pageHeight() const = 0;
};

class Kes final : public Object, public Conversions {
 public:
  Kes() = default;
  explicit Kes(Object& target) { init(target); }
  ~Kes() override;

  void init(Object& target);
  // The module or instance whose subs handle the events; null when it has gone.
  Ref<Object> eventsTarget() const;

  // The instance without a target that keeps process-wide state.
  static Kes& shared();

  bool hasMethod(std::string_view eventName) const;
  void errorIfMissingEvent(std::string_view prefix, std::string_view suffix) const;

  // The handler's result, or nil. Throws "Target is null. Method called: %@" when the target
  // has gone; a posted event, or one of an object with properties, is then dropped in silence.
  Value raiseEvent(const Ref<Shared>& sender, std::string_view event, Args params);
  void raiseUIEvent(Ref<Shared> sender, Text event, std::vector<Value> params);
  void raiseEventFromDifferentThread(Ref<Shared> sender, Text event, std::vector<Value> params) {
    raiseUIEvent(std::move(sender), std::move(event), std::move(params));
  }

  // The current sender of this thread; the null object outside an event. An event whose
  // handler threw leaves its sender set until the next one.
  static Value sender();
  static void setSender(Ref<Shared> sender);

  bool checkAndRunWaitForEvent(const Ref<Shared>& sender, std::string_view event, Args params);
  // The parked waits of an event in waking order; for the waits themselves and tests.
  std::vector<KesWaitForEvent>& waitsFor(std::string_view event);
  std::size_t parkedCount() const { return parked_; }
  // Cancels every parked sub. A component with a sub that is never woken keeps itself
  // alive through it: whoever ends such a component before its time calls this.
  void cancelWaits();
  void noteParked(std::ptrdiff_t change) { parked_ += change; }
  // Whether there is anybody left to hear an event.
  bool hears() const { return parked_ || target_.peek(); }

  static bool isShellBI() { return false; }  // only a class "KesShellBI" would be one

  static Value runDynamicMethod(Shared* target, std::string_view methodName,
                                bool throwErrorIfMissing, Args args);

  // Keeps the exception's text as lastError: a KesError of the domain "caught_exception".
  static void SetException(const std::exception& e);

  // Process-wide state, meaningful on shared().
  std::function<void(const Text& line, const Text& prefix)> logger;
  WeakRef<Shared> mainView;
  Value lastError() const;  // atomic access
  void setLastError(Value error);

 private:
  struct Waits {
    std::uint64_t hash;
    Text event;
    std::vector<KesWaitForEvent> list;
  };
  Value dispatch(const Ref<Shared>& sender, std::string_view event, const Args& params);
  Waits* findWaits(std::string_view event, std::uint64_t hash);
  bool wake(Waits& waits, const Ref<Shared>& sender, Args params);

  WeakRef<Object> target_;
  const ClassInfo* targetClass_ = nullptr;
  std::vector<Waits> waits_;
  std::size_t parked_ = 0;
};

}  // namespace kes
