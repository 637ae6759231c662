#include "townhost/engine.h"

#include <httplib.h>
#include <strings.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

#include "townhost/connection.h"
#include "townhost/worker_pool.h"

namespace town {
namespace {

constexpr int waitingConnections = 512;  // not yet accepted
constexpr std::size_t mostThreads = 512;
constexpr std::size_t longestBody = 64u << 20;
constexpr std::size_t longestPath = 2048;
// Longer than any client keeps an idle connection for reuse: the client then
// never writes into one that we are just closing.
constexpr int idleMilliseconds = 120'000;
constexpr int ioMilliseconds = 30'000;

// What the library shall not act upon: it would unpack, split up or recode
// bodies that have to arrive, and leave, exactly as they are.
constexpr const char* keptFromLibrary[] = {"Content-Type", "Content-Encoding", "Accept-Encoding",
                                           "Range"};

void fill(httplib::Response& response, const Answer& answer) {
  response.status = answer.status;
  for (const auto& [name, value] : answer.headers) response.set_header(name, value);
  if (answer.body.empty() && answer.announceMore <= 0) return;

  const auto whole = static_cast<long>(answer.body.size());
  const auto announced = static_cast<std::size_t>(std::max(1L, whole + answer.announceMore));
  const auto toSend = std::min(answer.body.size(), answer.sendOnly.value_or(answer.body.size()));
  const bool complete = toSend >= announced;
  response.set_content_provider(
      announced, answer.type,
      [body = answer.body, toSend, complete](std::size_t, std::size_t, httplib::DataSink& sink) {
        return (toSend == 0 || sink.write(body.data(), toSend)) && complete;
      });
}

}  // namespace

class Engine::Server final : public httplib::Server {
 public:
  // The request being served by this thread.
  struct Exchange {
    httplib::Headers headers;
    bool understood = false;  // or else nobody knows where the next request begins
    bool hangUp = false;
    Connection* connection = nullptr;
  };
  static thread_local Exchange* current;

  explicit Server(Engine::Handler handler) : handler_(std::move(handler)) {
    const auto serve = [this](const httplib::Request& request, httplib::Response& response) {
      this->serve(request, response);
    };
    const char* any = R"([\s\S]*)";
    Get(any, serve).Post(any, serve).Put(any, serve).Patch(any, serve).Delete(any, serve);
    Options(any, serve);
    set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
      if (request.path.size() <= longestPath) return HandlerResponse::Unhandled;
      response.status = 414;
      current->hangUp = true;  // a body may follow, and nobody will read it
      return HandlerResponse::Handled;
    });
    set_payload_max_length(longestBody);
    set_keep_alive_max_count(1'000'000);
    set_keep_alive_timeout(idleMilliseconds / 1000);
    set_tcp_nodelay(true);
    // The default lets two hosts share a port, each getting some of the calls.
    set_socket_options([](socket_t socket) {
      int on = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
  }

  ~Server() override { end(); }

  int begin(int port) {
    if (port == 0)
      port = bind_to_any_port("127.0.0.1");
    else if (!bind_to_port("127.0.0.1", port))
      port = -1;
    if (port <= 0) throw std::runtime_error("the port can't be had");
    // The library's own backlog is five, less than one screen's worth of calls.
    ::listen(svr_sock_, waitingConnections);

    std::promise<void> running;
    new_task_queue = [&running] {
      running.set_value();  // stop() has no effect before this
      return new WorkerPool(mostThreads);
    };
    auto started = running.get_future();
    listener_ = std::thread([this] { listen_after_bind(); });
    started.wait();
    return port;
  }

  void end() {
    std::lock_guard once(ending_);
    if (!listener_.joinable()) return;
    stopping_ = true;
    stop();
    {
      std::lock_guard lock(mutex_);
      for (auto* connection : open_) connection->hangUp();
    }
    listener_.join();
  }

 private:
  bool process_and_close_socket(socket_t socket) override {
    Connection connection(socket, ioMilliseconds, ioMilliseconds);
    {
      std::lock_guard lock(mutex_);
      if (stopping_) return false;
      open_.insert(&connection);
    }
    bool good = true;
    while (good && connection.awaitRequest(idleMilliseconds)) {
      Exchange exchange;
      exchange.connection = &connection;
      current = &exchange;
      bool closed = false;
      good = process_request(connection, false, closed, [&](httplib::Request& request) {
        exchange.understood = true;
        exchange.headers = request.headers;
        for (const char* name : keptFromLibrary) request.headers.erase(name);
        request.ranges.clear();
      });
      current = nullptr;
      good = good && !closed && exchange.understood && !exchange.hangUp;
    }
    std::lock_guard lock(mutex_);
    open_.erase(&connection);
    return good;
  }

  void serve(const httplib::Request& request, httplib::Response& response) {
    Call call{request.method, request.target, request.path, {}, {}, request.body};
    call.query.insert(request.params.begin(), request.params.end());
    call.headers.assign(current->headers.begin(), current->headers.end());
    // The library adds these for its handlers; the client didn't send them.
    std::erase_if(call.headers, [](const auto& h) {
      return h.first == "REMOTE_ADDR" || h.first == "REMOTE_PORT" || h.first == "LOCAL_ADDR" ||
             h.first == "LOCAL_PORT";
    });

    Answer answer;
    try {
      answer = handler_(call);
    } catch (const std::exception& fault) {
      answer = Answer{500, "text/plain; charset=utf-8", fault.what()};
    }
    if (answer.drop) {
      current->hangUp = true;
      current->connection->hangUp();
      return;
    }
    fill(response, answer);
    current->hangUp = answer.sendOnly || answer.announceMore != 0;
  }

  const Engine::Handler handler_;
  std::thread listener_;
  std::atomic<bool> stopping_{false};
  std::mutex ending_;
  std::mutex mutex_;
  std::set<Connection*> open_;
};

thread_local Engine::Server::Exchange* Engine::Server::current = nullptr;

std::string Call::header(const std::string& name) const {
  for (const auto& [key, value] : headers)
    if (::strcasecmp(key.c_str(), name.c_str()) == 0) return value;
  return "";
}

Engine::Engine(Handler handler) : server_(std::make_unique<Server>(std::move(handler))) {}
Engine::~Engine() = default;
int Engine::start(int port) { return server_->begin(port); }
void Engine::stop() { server_->end(); }

}  // namespace town
