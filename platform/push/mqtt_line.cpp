#include "platform/push/mqtt_line.h"

#include <mosquitto.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "platform/base/log.h"
#include "platform/push/inbox.h"
#include "platform/push/payload.h"

namespace push {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr int kKeepAlive = 60;            // seconds between signs of life
constexpr int kTurn = 1000;               // milliseconds a turn of the library may wait
constexpr auto kLongestConnecting = 15s;  // from the first packet to the broker's welcome
constexpr auto kShortestPause = 500ms;    // before a lost line is taken up again
constexpr auto kLongestPause = 30s;
constexpr auto kLongestGoodbye = 1s;
constexpr int kQuality = 1;  // at least once
constexpr int kRefused = 128;

void prepareLibrary() {
  static const int ready = mosquitto_lib_init();
  if (ready != MOSQ_ERR_SUCCESS) throw std::runtime_error("the library for MQTT does not start");
}

}  // namespace

// The connection and the thread that works for it. What both threads touch is under the
// mutex; the library is only entered without it, but for calls that put a packet into its
// own queue.
class MqttLine::Link : public std::enable_shared_from_this<Link> {
 public:
  Link(Options options, platform::MainQueue& queue)
      : options_(std::move(options)),
        inbox_(std::make_shared<Inbox>(options_.folder + "/push.db", queue)),
        queue_(&queue) {
    prepareLibrary();
    client_ = mosquitto_new(inbox_->identity().c_str(), false, this);
    if (!client_) throw std::runtime_error("the library for MQTT has no memory");
    mosquitto_threaded_set(client_, true);
    mosquitto_connect_with_flags_callback_set(
        client_, [](mosquitto*, void* link, int code, int flags) {
          static_cast<Link*>(link)->welcomed(code, (flags & 1) != 0);
        });
    mosquitto_message_callback_set(client_,
                                   [](mosquitto*, void* link, const mosquitto_message* message) {
                                     static_cast<Link*>(link)->received(*message);
                                   });
    mosquitto_subscribe_callback_set(
        client_, [](mosquitto*, void*, int, int count, const int* qualities) {
          if (std::any_of(qualities, qualities + count, [](int q) { return q >= kRefused; }))
            platform::log("The broker of push messages refuses a topic.");
        });
    if (options_.broker.tls) useTls();
  }
  ~Link() { mosquitto_destroy(client_); }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  Inbox& inbox() { return *inbox_; }

  void connect(Completion completion) {
    const std::lock_guard lock(mutex_);
    completions_.push_back(std::move(completion));
    wanted_ = true;
    hurry_ = state_ != State::Connecting;
    if (state_ == State::Connected) {
      complete(inbox_->identity());
    } else if (!running_) {
      running_ = true;
      std::thread([self = shared_from_this()] { self->work(); }).detach();
    }
    changed_.notify_all();
  }

  void disconnect() {
    const std::lock_guard lock(mutex_);
    leave();
  }

  void subscribe(const std::string& topic) {
    const std::lock_guard lock(mutex_);
    const auto full = options_.prefix + "/" + topic;
    topics_.insert(full);
    if (state_ == State::Connected) mosquitto_subscribe(client_, nullptr, full.c_str(), kQuality);
  }

  void unsubscribe(const std::string& topic) {
    const std::lock_guard lock(mutex_);
    const auto full = options_.prefix + "/" + topic;
    topics_.erase(full);
    if (state_ == State::Connected) mosquitto_unsubscribe(client_, nullptr, full.c_str());
  }

  // Says goodbye and waits a moment for the thread; it may be held up by a name server, and
  // then ends by itself.
  void close() {
    inbox_->close();
    std::unique_lock lock(mutex_);
    ended_ = true;
    queue_ = nullptr;
    leave();
    changed_.wait_for(lock, kLongestGoodbye, [&] { return !running_; });
  }

 private:
  enum class State { Apart, Connecting, Connected, Leaving };

  void useTls() {
    const auto& file = options_.certificates;
    int result = MOSQ_ERR_SUCCESS;
    if (file.empty())
      result = mosquitto_int_option(client_, MOSQ_OPT_TLS_USE_OS_CERTS, 1);
    else
      result = mosquitto_tls_set(client_, file.c_str(), nullptr, nullptr, nullptr, nullptr);
    // Verifies the chain and, as long as nobody asks for insecurity, the host's name.
    if (result == MOSQ_ERR_SUCCESS) result = mosquitto_tls_opts_set(client_, 1, "tlsv1.2", nullptr);
    if (result == MOSQ_ERR_SUCCESS) return;
    mosquitto_destroy(client_);
    throw std::runtime_error("the line of push messages cannot be made safe: " +
                             std::string(mosquitto_strerror(result)));
  }

  // With the lock held.
  void leave() {
    wanted_ = false;
    completions_.clear();
    if (state_ == State::Connecting || state_ == State::Connected) {
      state_ = State::Leaving;
      mosquitto_disconnect(client_);
    }
    changed_.notify_all();
  }

  // With the lock held.
  void complete(std::optional<std::string> connection) {
    if (!queue_) return completions_.clear();
    for (auto& completion : std::exchange(completions_, {}))
      queue_->post([completion = std::move(completion), connection] { completion(connection); });
  }

  // --- The thread.

  void work() {
    auto pause = std::chrono::milliseconds(kShortestPause);
    std::unique_lock lock(mutex_);
    bool wasConnected = false;
    while (!ended_) {
      if (!wanted_) break;  // the next connect() starts another thread
      hurry_ = false;
      const bool connected = attempt(lock);
      if (connected) pause = kShortestPause;
      wasConnected = wasConnected || connected;
      if (!wanted_ || hurry_) continue;
      // The first one is asked for anew by whoever wants it; a lost one comes back by itself.
      if (!wasConnected) {
        wanted_ = false;
        continue;
      }
      changed_.wait_for(lock, pause, [&] { return ended_ || !wanted_ || hurry_; });
      pause = std::min(2 * pause, std::chrono::milliseconds(kLongestPause));
    }
    running_ = false;
    changed_.notify_all();
  }

  // One connection from its first packet to its end; whether the broker bade it welcome.
  bool attempt(std::unique_lock<std::mutex>& lock) {
    state_ = State::Connecting;
    lock.unlock();
    const auto begun = SteadyClock::now();
    const auto& broker = options_.broker;
    // The waiting form: it tries one address of the host after the other, and the library's
    // other form goes round in circles where a safe port answers nobody.
    int result = mosquitto_connect(client_, broker.host.c_str(), broker.port, kKeepAlive);
    bool welcome = false;
    auto goodbye = SteadyClock::time_point::max();
    bool late = false;
    while (result == MOSQ_ERR_SUCCESS) {
      result = mosquitto_loop(client_, kTurn, 1);
      lock.lock();
      welcome = welcome || state_ == State::Connected;
      const bool leaving = state_ == State::Leaving;
      lock.unlock();
      const auto now = SteadyClock::now();
      late = !welcome && now - begun > kLongestConnecting;
      // It was asked to leave while the address was looked up: the library knew no socket yet.
      if (leaving && goodbye == SteadyClock::time_point::max()) {
        goodbye = now + kLongestGoodbye;
        mosquitto_disconnect(client_);
      }
      if (late || now > goodbye) ::shutdown(mosquitto_socket(client_), SHUT_RDWR);
    }
    lock.lock();
    const bool left = state_ == State::Leaving;
    state_ = State::Apart;
    if (!left) tellOnce(welcome ? "was lost" : reason(late ? MOSQ_ERR_TIMEOUT : result));
    if (!welcome && !hurry_) complete(std::nullopt);
    return welcome;
  }

  std::string reason(int result) const {
    if (refusal_ != 0) return std::string("cannot be had: ") + mosquitto_connack_string(refusal_);
    return std::string("cannot be had: ") + mosquitto_strerror(result);
  }

  // A broker that is away all night is one line of the log, not one every half second.
  void tellOnce(const std::string& what) {
    if (std::exchange(lastTold_, what) != what)
      platform::log("The line of push messages " + what + ".");
  }

  // --- What the library calls, on the thread.

  void welcomed(int code, bool sessionKept) {
    const std::lock_guard lock(mutex_);
    refusal_ = code;
    if (code != 0) return;
    // A broker that has forgotten the session counts its packets anew.
    if (!sessionKept) inbox_->forget("packet:");
    if (state_ != State::Connecting) return;
    state_ = State::Connected;
    lastTold_.clear();
    for (const auto& topic : topics_)
      mosquitto_subscribe(client_, nullptr, topic.c_str(), kQuality);
    complete(inbox_->identity());
  }

  // The library sends its acknowledgement in the turn after this one, so that by then the
  // message is in the store.
  void received(const mosquitto_message& message) {
    const std::string_view bytes(static_cast<const char*>(message.payload),
                                 static_cast<std::size_t>(message.payloadlen));
    // What the broker retains comes with each subscribing, the first time as any other.
    const auto retained = "retained:" + digest(bytes);
    if (message.retain)
      inbox_->take(bytes, retained);
    else
      inbox_->take(bytes, "packet:" + std::to_string(message.mid) + ":" + digest(bytes), retained);
  }

  const Options options_;
  const std::shared_ptr<Inbox> inbox_;
  mosquitto* client_ = nullptr;

  std::mutex mutex_;
  std::condition_variable changed_;
  platform::MainQueue* queue_;
  std::vector<Completion> completions_;
  std::set<std::string> topics_;
  State state_ = State::Apart;
  bool wanted_ = false;   // somebody wants to be connected
  bool hurry_ = false;    // and has just said so
  bool running_ = false;  // there is a thread
  bool ended_ = false;
  int refusal_ = 0;
  std::string lastTold_;
};

MqttLine::MqttLine(Options options, platform::MainQueue& queue)
    : link_(std::make_shared<Link>(std::move(options), queue)) {}
MqttLine::~MqttLine() { link_->close(); }

void MqttLine::connect(Completion completion) { link_->connect(std::move(completion)); }
void MqttLine::disconnect() { link_->disconnect(); }
void MqttLine::subscribe(const std::string& topic) { link_->subscribe(topic); }
void MqttLine::unsubscribe(const std::string& topic) { link_->unsubscribe(topic); }
void MqttLine::setReceiver(Receiver receiver) { link_->inbox().setReceiver(std::move(receiver)); }

}  // namespace push
