// How long a broker takes to tell a crowd: so many listeners over TLS, each with a lasting
// session, one message, and when the first, the middle and the last of them have it.
//
//   push_crowd [LISTENERS]     (2000)
//
// Broker and crowd run on this machine; the crowd costs it more than the broker does.
#include <mosquitto.h>
#include <sys/poll.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/broker.h"
#include "tests/support/test_platform.h"

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration d) {
  return std::chrono::duration<double, std::milli>(d).count();
}

void check(int result, const char* what) {
  if (result != MOSQ_ERR_SUCCESS)
    throw std::runtime_error(std::string(what) + ": " + mosquitto_strerror(result));
}

class Listener {
 public:
  Listener(int number, const Broker& broker)
      : client_(mosquitto_new(("crowd" + std::to_string(number)).c_str(), false, this)) {
    mosquitto_connect_callback_set(client_, [](mosquitto* client, void*, int code) {
      if (code == 0) mosquitto_subscribe(client, nullptr, "varlo/ios_general", 1);
    });
    mosquitto_subscribe_callback_set(client_, [](mosquitto*, void* self, int, int, const int*) {
      static_cast<Listener*>(self)->listening = true;
    });
    mosquitto_message_callback_set(client_, [](mosquitto*, void* self, const mosquitto_message*) {
      static_cast<Listener*>(self)->heard = Clock::now();
    });
    check(mosquitto_tls_set(client_, broker.certificates().c_str(), nullptr, nullptr, nullptr,
                            nullptr),
          "certificates");
    check(mosquitto_connect(client_, "localhost", broker.tlsPort(), 600), "connecting");
  }
  ~Listener() { mosquitto_destroy(client_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  pollfd wanted() const {
    const short write = mosquitto_want_write(client_) ? POLLOUT : 0;
    return {mosquitto_socket(client_), static_cast<short>(POLLIN | write), 0};
  }
  void attend(short events) {
    if (events & (POLLIN | POLLHUP | POLLERR)) check(mosquitto_loop_read(client_, 1), "reading");
    if (events & POLLOUT) check(mosquitto_loop_write(client_, 1), "writing");
  }

  bool listening = false;
  Clock::time_point heard;

 private:
  mosquitto* client_;
};

using Crowd = std::vector<std::unique_ptr<Listener>>;

// Attends to whoever has something until all are ready.
template <class Ready>
void attend(Crowd& crowd, Ready ready) {
  std::vector<pollfd> sockets;
  while (!std::all_of(crowd.begin(), crowd.end(), [&](const auto& l) { return ready(*l); })) {
    sockets.clear();
    for (const auto& listener : crowd) sockets.push_back(listener->wanted());
    constexpr int kTurn = 1000;
    ::poll(sockets.data(), sockets.size(), kTurn);
    for (std::size_t i = 0; i < crowd.size(); ++i)
      if (sockets[i].revents) crowd[i]->attend(sockets[i].revents);
  }
}

void run(int count) {
  mosquitto_lib_init();
  testing_support::TestPlatform folders;
  Broker broker(folders.root() / "broker");
  const auto begun = Clock::now();
  Crowd crowd;
  constexpr std::size_t kAtOnce = 50;
  while (crowd.size() < static_cast<std::size_t>(count)) {
    for (std::size_t i = 0; i < kAtOnce; ++i)
      crowd.push_back(std::make_unique<Listener>(static_cast<int>(crowd.size()), broker));
    attend(crowd, [](const Listener& l) { return l.listening; });
  }
  std::printf("%zu listeners in %.1f s\n", crowd.size(), milliseconds(Clock::now() - begun) / 1000);
  constexpr int kRounds = 5;
  for (int round = 0; round < kRounds; ++round) {
    for (auto& listener : crowd) listener->heard = {};
    const auto sent = Clock::now();
    auto sending = std::async(std::launch::async, [&] {
      broker.send({R"({"alert":"Prova","id":")" + std::to_string(round) + "\"}"});
    });
    attend(crowd, [](const Listener& l) { return l.heard != Clock::time_point{}; });
    std::vector<double> times;
    for (const auto& listener : crowd) times.push_back(milliseconds(listener->heard - sent));
    std::sort(times.begin(), times.end());
    sending.get();
    std::printf("from the sending tool's start: first %.0f, middle %.0f, last %.0f ms\n",
                times.front(), times[times.size() / 2], times.back());
  }
}

}  // namespace

int main(int count, char** arguments) {
  try {
    run(count > 1 ? std::atoi(arguments[1]) : 2000);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "push_crowd: %s\n", e.what());
    return 1;
  }
}
