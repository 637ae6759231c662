// The HTTP engine: sockets, threads and the protocol, behind plain requests and
// answers. The only place that knows the library below.
//
// Owned by the TownHost. The handler runs on the serving threads, many at once.
// An answer may ask to be sent badly: not at all, cut short, or under a wrong
// length; the connection is closed then. start() throws std::runtime_error if
// the port can't be had. Listens on loopback only.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace town {

struct Call {
  std::string method;
  std::string target;  // as it stood in the request line
  std::string path;    // decoded, without the query
  std::multimap<std::string, std::string> query;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;  // as received, whatever its type or coding

  // The first header of that name in any case; "" if there is none.
  std::string header(const std::string& name) const;
};

struct Answer {
  int status = 200;
  std::string type = "text/plain; charset=utf-8";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;

  bool drop = false;                    // hang up without a word
  std::optional<std::size_t> sendOnly;  // this much of the body, then hang up
  long announceMore = 0;                // what Content-Length is off by
};

class Engine {
 public:
  using Handler = std::function<Answer(const Call&)>;

  explicit Engine(Handler handler);
  ~Engine();  // stops

  // 0 takes any free port. Returns the port.
  int start(int port);

  // Open connections are cut; returns when no thread is left. May be repeated.
  void stop();

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

}  // namespace town
