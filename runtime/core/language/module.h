// The two base classes of all application code: KesStaticModule, a module with one
// instance for the life of the process, and KesClass, a class module with any number.
//
// A module is reached by M::instance(), which makes it on first use with its Kes but
// does not run its globals; initializeModule() does that. A class instance is made by
// make<C>(…), which runs its _initialize. A class instance that was initialised writes
// "Class (name) instance released." to the log when it ends. A module is never released, an
// instance is held by Ref and by its own subs while they are parked. Main thread. Waiting on
// an instance that was not initialised throws "Object was not initialized (%@)".
#pragma once

#include "runtime/core/class_table.h"
#include "runtime/core/language/common.h"
#include "runtime/core/resumable.h"

namespace kes {

class KesClass;

// What modules and class instances share: the event object and the language services.
class Component : public Object {
 public:
  const Ref<Kes>& bi() const { return bi_; }
  void setBi(Ref<Kes> bi) { bi_ = std::move(bi); }

  // This object as a sender, a target or a wait's filter.
  Ref<Object> self() { return Ref<Object>(this); }

  // Conversions, texts, logging: the language-level services.
  static KesCommon& c() { return KesCommon::shared(); }

  // Parks the calling sub until the event comes, from the given sender if one is named.
  // The result is the event's parameters as the types asked for.
  template <class... R>
  detail::WaitAwaiter<R...> waitFor(std::string_view event, Value senderFilter = {}) {
    return {events(), event, nullptr, std::move(senderFilter)};
  }
  template <class... R, class T>
  requires(std::derived_from<T, KesClass>) detail::WaitAwaiter<R...> waitFor(std::string_view event,
                                                                             const Ref<T>& sender) {
    return {events(), event, sender.get(), {}};
  }
  template <class... R, class T>
  detail::WaitAwaiter<R...> waitFor(std::string_view event, Resumable<T>&& sub) {
    static_assert(!std::is_void_v<T>, "a sub that gives no value cannot be waited for");
    return {events(), event, nullptr, sub.intoValue()};
  }
  detail::SleepAwaiter sleep(std::int64_t milliseconds) { return {events(), milliseconds}; }

 protected:
  Ref<Kes> bi_;

 private:
  Kes& events() const;
};

class KesStaticModule : public Component {
 public:
  virtual void initializeModule() { _process_globals(); }
  // Only the main module creates the others; throws "Must override" elsewhere.
  virtual void initializeStaticModules() { throw KesException("Must override"); }
  virtual void _process_globals() {}
  Ref<Object> object() { return self(); }

 protected:
  // The process-wide slot of one module class.
  template <class M>
  static M& slot() {
    static Ref<M> only = [] {
      Ref<M> m(new M());
      m->setBi(platform::makeShared<Kes>(*m));
      return m;
    }();
    return *only;
  }
};

// Gives a module class its instance(): class kes_main : public Module<kes_main>.
template <class M>
class Module : public KesStaticModule {
 public:
  static M& instance() { return slot<M>(); }
};

class KesClass : public Component {
 public:
  ~KesClass() override;

  // First statement of every _initialize: gives the instance its Kes once, then runs
  // its globals, on each call.
  void initializeClassModule();
  // A Kes not yet bound to anything.
  virtual Ref<Kes> createBI() const { return platform::makeShared<Kes>(); }
  virtual void _class_globals() {}
  bool IsInitialized() const { return static_cast<bool>(bi_); }
  Text description() const override;

 private:
  Text releasedName_;  // known while the object is whole
};

// A new class instance, initialised with the given arguments; without any it is only
// allocated.
template <class C, class... A>
Ref<C> make(A&&... args) {
  Ref<C> object(new C());
  if constexpr (sizeof...(A) > 0) object->_initialize(std::forward<A>(args)...);
  return object;
}

}  // namespace kes
