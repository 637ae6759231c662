#include "platform/base/main_hop.h"

namespace platform {

struct MainHop::State {
  std::mutex mutex;
  std::condition_variable changed;
  bool cancelled = false;
};

MainHop::MainHop(MainQueue& queue) : queue_(queue), state_(std::make_shared<State>()) {}

bool MainHop::run(MainQueue::Task task) {
  struct Turn {
    bool over = false;
    bool ran = false;
  };
  auto turn = std::make_shared<Turn>();
  // Ends the turn when the task goes, run or dropped by the queue.
  std::shared_ptr<void> ticket(nullptr, [state = state_, turn](void*) {
    std::lock_guard lock(state->mutex);
    turn->over = true;
    state->changed.notify_all();
  });
  queue_.post([state = state_, turn, ticket = std::move(ticket), task = std::move(task)] {
    {
      std::lock_guard lock(state->mutex);
      if (state->cancelled) return;
    }
    task();
    std::lock_guard lock(state->mutex);
    turn->ran = true;
  });
  std::unique_lock lock(state_->mutex);
  state_->changed.wait(lock, [&] { return turn->over || state_->cancelled; });
  return turn->over && turn->ran;
}

void MainHop::cancel() {
  std::lock_guard lock(state_->mutex);
  state_->cancelled = true;
  state_->changed.notify_all();
}

}  // namespace platform
