// A server that sends exactly the bytes that a test wants: for answers that no
// well-behaved server gives.
//
// Listens on loopback, on any free port. The script runs once for each connection, on
// a thread of its own; when it returns the connection is closed. The destructor cuts
// what is open and joins.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace testing_support {

class RawServer {
 public:
  class Peer {
   public:
    explicit Peer(int socket) : socket_(socket) {}
    // One request, head and body as they came; empty when the client hung up.
    std::string readRequest();
    void send(std::string_view bytes);
    // Returns when the client has hung up.
    void awaitHangUp();
    int connection = 0;  // counted from 0

   private:
    friend class RawServer;
    int socket_;
    std::string pending_;
  };
  using Script = std::function<void(Peer&)>;

  explicit RawServer(Script script);
  ~RawServer();
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  std::string url(std::string_view path = "/") const;
  int port() const { return port_; }
  int connections() const { return connections_; }

 private:
  void listen();

  Script script_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_{0};
  std::atomic<bool> ending_{false};
  mutable std::mutex mutex_;
  std::vector<int> open_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

// A whole answer; the headers each with their line end, the length added.
std::string answer(std::string_view body, std::string_view headers = "",
                   std::string_view status = "200 OK");
// Gives these bytes for the first request of each connection.
RawServer::Script answering(std::string bytes);

}  // namespace testing_support
