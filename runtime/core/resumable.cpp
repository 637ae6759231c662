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
  parkFor(event, bi, {std::move(rs), {}}, filter.object());
}

// A parked sub's life. The table of its Kes owns the frame, under the event and, where the
// sub named one, its sender, which the table knows weakly. Parking again for the same event
// and sender takes the place of whoever waited there, who is so cancelled; senders that
// have died are swept on the way. The event takes the sub out of the table before waking
// it: the sub may park anew at once, and for the same event. Waking runs it inside the
// event, up to its next wait or its end, with the event's parameters in its hands. A sub
// that goes unwoken ends with the Kes that holds it: the frame is destroyed where it
// stands and its locals are unwound. Nothing but the table keeps a parked sub alive.
void parkFor(std::string_view event, Kes& bi, KesResumableSub::Held rs, const Shared* sender) {
  auto& list = bi.waitsFor(event);
  bool matched = false;
  // What the walk drops goes only when the list is whole again: locals that unwind may
  // do anything.
  std::vector<Ref<KesResumableSub>> dropped;
  for (auto i = list.begin(); i != list.end();) {
    const bool match = !matched && (sender ? i->senderFilter.refersTo(sender) : i->noFilter());
    if (match) {
      dropped.push_back(std::exchange(i->rs, rs.self));
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
  KesWaitForEvent wait{std::move(rs.self),
                       rs.sender.refersTo(sender) ? std::move(rs.sender) : WeakRef<Shared>(sender),
                       sender != nullptr};
  list.insert(sender ? list.begin() : list.end(), std::move(wait));
  bi.noteParked(+1);
}

void Sleep(Kes& bi, Ref<KesResumableSub> rs, std::int64_t milliseconds) {
  platform::current().mainQueue().postAfter(
      milliseconds, [bi = Ref<Kes>(&bi), rs = std::move(rs)] { rs->resume(bi.get(), {}); });
}

void ReturnFromResumableSub(Ref<KesResumableSub> rs, Value value) {
  platform::postToMain([rs = std::move(rs), value = nilToNull(std::move(value))] {
    rs->completed = true;
    // Whoever waited may have gone meanwhile.
    if (const auto waiting = std::exchange(rs->waitForKes, nullptr); waiting && waiting->hears())
      waiting->raiseEvent(rs, "complete:", std::span<const Value>(&value, 1));
  });
}

namespace detail {

void ResumableFrame::reportStartError() noexcept {
  if (!error_) return;
  platform::postToMain([error = std::exchange(error_, nullptr)] { std::rethrow_exception(error); });
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
