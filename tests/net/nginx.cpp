#include "nginx.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "tests/support/test_platform.h"

using testing_support::TestPlatform;

namespace {

constexpr const char* kProgram = "/usr/sbin/nginx";

pid_t spawn(std::vector<std::string> command, std::vector<std::string> environment,
            posix_spawn_file_actions_t* actions) {
  std::vector<char*> arguments, variables;
  for (auto& a : command) arguments.push_back(a.data());
  for (auto& e : environment) variables.push_back(e.data());
  arguments.push_back(nullptr);
  variables.push_back(nullptr);
  pid_t process = -1;
  const int error =
      posix_spawnp(&process, arguments[0], actions, nullptr, arguments.data(), variables.data());
  if (error) throw std::runtime_error(command[0] + ": " + std::strerror(error));
  return process;
}

int awaitEnd(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

void makeCertificate(const std::filesystem::path& folder) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  const auto process = spawn(
      {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
       "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1",
       "-keyout", (folder / "key.pem").string(), "-out", (folder / "cert.pem").string()},
      {"PATH=/usr/bin:/bin", "HOME=" + folder.string()}, &actions);
  posix_spawn_file_actions_destroy(&actions);
  if (awaitEnd(process) != 0) throw std::runtime_error("openssl made no certificate");
}

int freePort() {
  const int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (s < 0 || ::bind(s, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    throw std::runtime_error(std::string("no free port: ") + std::strerror(errno));
  ::close(s);
  return ntohs(address.sin_port);
}

// Reads until the server says what it says once it listens; false when it ends first.
bool awaitListening(int log, std::string& said) {
  char buffer[1024];
  while (said.find("getrlimit(RLIMIT_NOFILE)") == std::string::npos) {
    const auto n = ::read(log, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    said.append(buffer, static_cast<std::size_t>(n));
  }
  return true;
}

}  // namespace

Nginx::Nginx(const std::filesystem::path& folder, const std::string& locations) : folder_(folder) {
  std::filesystem::create_directories(root());
  std::filesystem::create_directories(folder_ / "temp");
  makeCertificate(folder_);
  std::string said;
  // Somebody else may take a port that was free a moment ago.
  for (int attempt = 0; attempt < 5; ++attempt) {
    said.clear();
    if (start(locations, said)) return;
  }
  throw std::runtime_error("nginx does not start: " + said);
}

bool Nginx::start(const std::string& locations, std::string& said) {
  port_ = freePort();
  tlsPort_ = freePort();
  const auto at = folder_.string();
  TestPlatform::write(
      folder_ / "nginx.conf",
      "daemon off; master_process off; pid " + at +
          "/pid; error_log stderr notice;\nevents { worker_connections 256; }\nhttp {\n"
          "  access_log off; default_type text/plain;\n"
          "  client_body_temp_path " +
          at + "/temp/body; proxy_temp_path " + at + "/temp/proxy; fastcgi_temp_path " + at +
          "/temp/fcgi; uwsgi_temp_path " + at + "/temp/uwsgi; scgi_temp_path " + at +
          "/temp/scgi;\n"
          "  server {\n    listen 127.0.0.1:" +
          std::to_string(port_) + ";\n    listen 127.0.0.1:" + std::to_string(tlsPort_) +
          " ssl http2;\n    ssl_certificate " + at + "/cert.pem; ssl_certificate_key " + at +
          "/key.pem;\n    root " + root().string() + ";\n" + locations + "\n  }\n}\n");

  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
  process_ = spawn({kProgram, "-p", at, "-c", at + "/nginx.conf", "-e", "stderr"},
                   {"PATH=/usr/bin:/bin"}, &actions);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  log_ = ends[0];
  if (awaitListening(log_, said)) return true;
  stop();
  return false;
}

void Nginx::stop() {
  if (process_ > 0) {
    ::kill(process_, SIGTERM);
    awaitEnd(process_);
    process_ = -1;
  }
  if (log_ >= 0) ::close(log_);
  log_ = -1;
}

Nginx::~Nginx() { stop(); }
