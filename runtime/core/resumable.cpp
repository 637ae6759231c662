#include "runtime/core/resumable.h"

#include "platform/base/platform.h"

namespace kes {

KesResumableSub::KesResumableSub() = default;
KesResumableSub::~KesResumableSub() = default;

void WaitFor(std::string_view event, Kes& bi, Ref<KesResumableSub> rs, const Value& senderFilter) {
  Value filter = senderFilter;
  if (auto w = filter.as<KesObjectWrapper>()) filter = w->object();
  if (auto awaited = filter.as<KesResumableSub>()) {
    if (awaited->completed) throw KesException("Resumable sub already completed");
    awaited->waitForKes = Ref<Kes>(&bi);
  }
  parkFor(event, bi, std::move(rs), filter.object());
}

void parkFor(std::string_view event, Kes& bi, Ref<KesResumableSub> rs, const Shared* sender) {
  auto& list = bi.waitsFor(event);
  bool matched = false;
  // What the walk drops goes only when the list is whole again: locals that unwind may
  // do anything.
  std::vector<Ref<KesResumableSub>> dropped;
  for (auto i = list.begin(); i != list.end();) {
    const bool match = !matched && (sender ? i->senderFilter.refersTo(sender) : i->noFilter());
    if (match) {
      dropped.push_back(std::exchange(i->rs, rs));
      matched = true;
      ++i;
    } else if (i->cleared()) {
      dropped.push_back(std::move(i->rs));
      i = list.erase(i);
      bi.noteParked(-1);
    } else {
      ++i;
    }
  }
  if (matched) return;
  KesWaitForEvent wait{std::move(rs), WeakRef<Shared>(sender), sender != nullptr};
  list.insert(sender ? list.begin() : list.end(), std::move(wait));
  bi.noteParked(+1);
}

void Sleep(Kes& bi, Ref<KesResumableSub> rs, std::int64_t milliseconds) {
  platform::current().mainQueue().postAfter(
      milliseconds, [bi = Ref<Kes>(&bi), rs = std::move(rs)] { rs->resume(bi.get(), {}); });
}

void ReturnFromResumableSub(Ref<KesResumableSub> rs, Value value) {
  platform::current().mainQueue().post([rs = std::move(rs), value = nilToNull(std::move(value))] {
    rs->completed = true;
    // Whoever waited may have gone meanwhile.
    if (const auto waiting = std::exchange(rs->waitForKes, nullptr); waiting && waiting->hears())
      waiting->raiseEvent(rs, "complete:", std::span<const Value>(&value, 1));
  });
}

namespace detail {

void ResumableFrame::reportStartError() noexcept {
  if (!error_) return;
  platform::current().mainQueue().post(
      [error = std::exchange(error_, nullptr)] { std::rethrow_exception(error); });
}

void ResumableFrame::resume(Kes* kes, Args params) {
  if (!suspended_) return;
  suspended_ = false;
  const platform::Keep keep(this);
  if (!bi.refersTo(kes)) bi = WeakRef<Kes>(kes);
  params_ = params;
  handle_.resume();
  params_ = {};
  if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
}

}  // namespace detail

}  // namespace kes
