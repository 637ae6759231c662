#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/base/shared.h"

using namespace platform;

namespace {

struct Counted : Shared {
  explicit Counted(std::atomic<int>& n) : alive(n) { ++alive; }
  ~Counted() override { --alive; }
  std::atomic<int>& alive;
};

}  // namespace

TEST(WeakRefs, AnswerWhetherTheirObjectLives) {
  std::atomic<int> alive{0};
  WeakRef<Counted> never, weak;
  EXPECT_TRUE(never.unset());
  {
    auto strong = makeShared<Counted>(alive);
    weak = strong;
    EXPECT_FALSE(weak.expired());
    EXPECT_TRUE(weak.refersTo(strong.get()));
    EXPECT_EQ(weak.lock(), strong);
  }
  EXPECT_EQ(alive, 0);
  EXPECT_FALSE(weak.unset());
  EXPECT_TRUE(weak.expired());
  EXPECT_FALSE(weak.lock());
  EXPECT_FALSE(never.expired()) << "what was never set has not died";
}

// An object that tells others of its end sees its own weak references read as null.
TEST(WeakRefs, ReadAsNullWhileTheObjectIsBeingDestroyed) {
  struct Teller : Shared {
    WeakRef<Teller> me;
    bool* seen = nullptr;
    ~Teller() override { *seen = static_cast<bool>(me.lock()); }
  };
  bool seen = true;
  auto teller = makeShared<Teller>();
  teller->seen = &seen;
  teller->me = teller;
  teller = nullptr;
  EXPECT_FALSE(seen);
}

// Symptom: what was taken up again in the scope that kept it was freed all the same.
TEST(Keeps, HoldTheirObjectForTheScopeAndLetItLiveOnWhereTakenUpAgain) {
  std::atomic<int> alive{0};
  struct {
    const char* name;
    bool raw, weak;  // how it is taken up again
    bool past;       // and whether beyond the scope
  } cases[] = {{"left", false, false, false},
               {"raw", true, false, false},
               {"weak", false, true, false},
               {"raw, for longer", true, false, true},
               {"weak, for longer", false, true, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Ref<Counted> later;
    auto strong = makeShared<Counted>(alive);
    const WeakRef<Counted> weak(strong);
    {
      const Keep outer(strong.get());
      const Keep inner(strong.get());
      auto* raw = strong.get();
      strong = nullptr;
      EXPECT_EQ(alive, 1);
      std::thread([&] { EXPECT_FALSE(weak.lock()) << "only this thread keeps it"; }).join();
      Ref<Counted> again;
      if (c.raw) again = Ref<Counted>(raw);
      if (c.weak) again = weak.lock();
      if (c.past) later = again;
      again = nullptr;
      EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, c.past ? 1 : 0);
    EXPECT_EQ(weak.lock(), later);
    later = nullptr;
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(weak.expired());
  }
}

TEST(WeakRefs, LockOnOneThreadWhileTheLastReferenceGoesOnAnother) {
  std::atomic<int> alive{0};
  for (int round = 0; round < 500; ++round) {
    auto strong = makeShared<Counted>(alive);
    WeakRef<Counted> weak(strong);
    std::atomic<bool> go{false};
    std::thread locker([weak, &go] {
      while (!go) std::this_thread::yield();
      for (int i = 0; i < 20; ++i) {
        WeakRef<Counted> copy(weak);  // NOLINT: copies are what is tried
        if (auto s = copy.lock()) {
          // Whoever holds it sees it whole.
          ASSERT_GE(s->alive.load(), 1);
        }
      }
    });
    go = true;
    strong = nullptr;
    locker.join();
    ASSERT_TRUE(weak.expired());
    ASSERT_EQ(alive, 0);
  }
}
