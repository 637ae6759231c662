// One accepted socket as the HTTP engine sees it, with the one thing more that
// the engine can't do: hanging up in the middle of an answer.
//
// Lives on the thread that serves the connection. hangUp() alone may come from
// another thread. Reads and writes give up after the stated number of
// milliseconds.
#pragma once

#include <httplib.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace town {

class Connection final : public httplib::Stream {
 public:
  Connection(int socket, int readTimeout, int writeTimeout);
  ~Connection() override;  // closes the socket

  // Waits for the first byte of a request; false when none will come.
  bool awaitRequest(int milliseconds);

  // Both directions end now; a client in the middle of an answer sees it cut.
  void hangUp();

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* to, std::size_t size) override;
  ssize_t write(const char* from, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  bool ready(short events, int milliseconds) const;

  const int socket_;
  const int readTimeout_;
  const int writeTimeout_;
  std::atomic<bool> gone_{false};
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0;
};

}  // namespace town
