#include "runtime/core/kes.h"

#include <mutex>
#include <set>
#include <typeindex>

#include "platform/base/log.h"
#include "platform/base/platform.h"
#include "runtime/core/class_table.h"
#include "runtime/core/error.h"
#include "runtime/core/resumable.h"

namespace kes {

namespace {

// Kept alive by the raise that set it, or by heldSender.
constinit thread_local Shared* currentSender = nullptr;
// What setSender was given, and the sender of an event whose handler threw, until the next
// event. The flag spares each raise a look at a variable with a destructor.
thread_local Ref<Shared> heldSender;
constinit thread_local bool senderHeld = false;

// Once for each class: its subs are there, and nobody would ever know why they aren't called.
void tellUnregistered(const Object& target, std::string_view event) {
  static auto& told = *new std::set<std::type_index>;
  if (!told.insert(typeid(target)).second) return;
  platform::log(formatText("The class %@ is not in the registry: none of its subs hears an event "
                           "(the first one lost is %@).",
                           {detail::typeName(typeid(target)), event})
                    .str());
}

std::mutex lastErrorMutex;
Value& lastErrorSlot() {
  static auto& error = *new Value;
  return error;
}

}  // namespace

Kes::~Kes() = default;

void Kes::init(Object& target) {
  target_ = WeakRef<Object>(&target);
  targetClass_ = target.classInfo();
}

Ref<Object> Kes::eventsTarget() const { return target_.lock(); }

Kes& Kes::shared() {
  // Never destroyed: work in the background may outlive main().
  static auto& only = *new Ref<Kes>(platform::makeShared<Kes>());
  return *only;
}

bool Kes::hasMethod(std::string_view eventName) const {
  return targetClass_ && !target_.expired() && targetClass_->sub(eventName);
}

void Kes::errorIfMissingEvent(std::string_view prefix, std::string_view suffix) const {
  if (!hasMethod(std::string(prefix).append(suffix)))
    throw KesException(formatText("%@%@ event not found.", {prefix, suffix}));
}

void Kes::setSender(Ref<Shared> sender) {
  currentSender = sender.get();
  senderHeld = currentSender != nullptr;
  const Ref<Shared> former = std::exchange(heldSender, std::move(sender));
}

Value Kes::sender() { return currentSender ? Value(Ref<Shared>(currentSender)) : Value::null(); }

inline Kes::Waits* Kes::findWaits(std::string_view event, std::uint64_t hash) {
  for (auto& w : waits_)
    if (w.hash == hash && sameName(w.event, event)) return &w;
  return nullptr;
}

// By reference: handed on by value, the parameters' sixteen bytes would be written and read
// again at once, which costs a quarter of a raise.
inline Value Kes::dispatch(const Ref<Shared>& sender, std::string_view event, const Args& params) {
  if (event.ends_with("_resize::") && dynamic_cast<PageSized*>(sender.get()))
    shared().mainView = sender;
  const auto hash = hashName(event);
  if (parked_) {
    if (auto* waits = findWaits(event, hash); waits && wake(*waits, sender, params)) return {};
  }
  Object* target = target_.peek();
  if (!target)
    throw KesException("null object",
                       formatText("Target is null. Method called: %@", {"_" + std::string(event)}));
  if (!targetClass_) [[unlikely]] {
    tellUnregistered(*target, event);
    return {};
  }
  const SubInfo* sub = targetClass_->sub(event, hash);
  if (!sub) return {};
  const platform::Keep keepTarget(target);
  return sub->call(*target, params);
}

Value Kes::raiseEvent(const Ref<Shared>& sender, std::string_view event, Args params) {
  if (!platform::MainQueue::onMainThread())
    throw KesException(formatText("%@ was raised off the main thread", {event}));
  // The reference may be one that the handler lets go.
  Shared* const who = sender.get();
  const platform::Keep keepSender(who);
  if (senderHeld) setSender(nullptr);
  currentSender = who;
  try {
    Value result = dispatch(sender, event, params);
    currentSender = nullptr;
    return result;
  } catch (...) {
    setSender(Ref<Shared>(who));  // stays set
    throw;
  }
}

void Kes::raiseUIEvent(Ref<Shared> sender, Text event, std::vector<Value> params) {
  platform::postToMain([me = Ref<Kes>(this), sender = std::move(sender), event = std::move(event),
                        params = std::move(params)] {
    // The module may have gone while the event was under way: then so has the event.
    if (me->hears()) me->raiseEvent(sender, event, params);
  });
}

std::vector<KesWaitForEvent>& Kes::waitsFor(std::string_view event) {
  const auto hash = hashName(event);
  if (auto* waits = findWaits(event, hash)) return waits->list;
  waits_.push_back({hash, Text(event), {}});
  return waits_.back().list;
}

void Kes::cancelWaits() {
  const platform::Keep keep(this);
  parked_ = 0;
  const auto cancelled = std::exchange(waits_, {});
}

bool Kes::checkAndRunWaitForEvent(const Ref<Shared>& sender, std::string_view event, Args params) {
  auto* waits = findWaits(event, hashName(event));
  return waits && wake(*waits, sender, params);
}

bool Kes::wake(Waits& waits, const Ref<Shared>& sender, Args params) {
  auto& list = waits.list;
  for (auto i = list.begin(); i != list.end(); ++i) {
    if (i->senderFilterSet && !i->senderFilter.refersTo(sender.get())) continue;
    // What the sub doesn't take over for its next wait goes when it has run.
    struct Waking : KesResumableSub::Held {
      ~Waking() {
        if (self) self->held = nullptr;
      }
    } waking{{std::move(i->rs), std::move(i->senderFilter)}};
    list.erase(i);
    --parked_;
    const platform::Keep keep(this);
    waking.self->held = &waking;
    waking.self->resume(this, params);
    currentSender = nullptr;
    return true;
  }
  return false;
}

Value Kes::runDynamicMethod(Shared* target, std::string_view methodName, bool throwErrorIfMissing,
                            Args args) {
  if (!target)
    throw KesException("null object",
                       formatText("Target is null. Method called: %@", {methodName}));
  const auto* info = ClassRegistry::instance().of(*target);
  const SubInfo* method = info ? info->method(methodName) : nullptr;
  if (!method) {
    if (!throwErrorIfMissing) return {};
    throw KesException("method not found",
                       formatText("Method not found: %@, target: %@",
                                  {methodName, Value(Ref<Shared>(target)).description()}));
  }
  const Ref<Shared> keep(target);
  return method->call(*target, args);
}

void Kes::SetException(const std::exception& e) {
  shared().setLastError(platform::makeShared<KesError>("caught_exception", 0, Text(e.what())));
}

Value Kes::lastError() const {
  std::lock_guard lock(lastErrorMutex);
  return lastErrorSlot();
}

void Kes::setLastError(Value error) {
  std::lock_guard lock(lastErrorMutex);
  lastErrorSlot() = std::move(error);
}

}  // namespace kes
