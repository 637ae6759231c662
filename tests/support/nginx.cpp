#include "tests/support/nginx.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "tests/support/test_platform.h"

using testing_support::TestPlatform;

namespace {

bool ipv6Loopback() {
  const int s = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_addr = in6addr_loopback;
  const bool bound =
      s >= 0 && ::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  if (s >= 0) ::close(s);
  return bound;
}

}  // namespace

Nginx::Nginx(const std::filesystem::path& folder, const std::string& locations)
    : folder_(folder), hasIpv6_(ipv6Loopback()) {
  std::filesystem::create_directories(root());
  std::filesystem::create_directories(folder_ / "temp");
  makeCertificates();
  process_.startSomewhere("nginx", [&] { return start(locations); });
}

void Nginx::makeCertificates() const {
  const auto key = (folder_ / "key.pem").string(), request = (folder_ / "request.pem").string();
  const auto openssl = [&](std::vector<std::string> words) {
    words.insert(words.begin(), "openssl");
    ServerProcess::require(words, folder_.string());
  };
  openssl({"req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
           "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key,
           "-out", request});
  for (const auto& [days, file] :
       {std::pair{"2", certificate()}, std::pair{"-1", expiredCertificate()}})
    openssl({"x509", "-req", "-in", request, "-signkey", key, "-days", days, "-copy_extensions",
             "copy", "-out", file});
}

bool Nginx::start(const std::string& locations) {
  port_ = ServerProcess::freePort();
  tlsPort_ = ServerProcess::freePort();
  expiredPort_ = ServerProcess::freePort();
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
          "  ssl_certificate_key " +
          at + "/key.pem;\n  server {\n    listen 127.0.0.1:" + std::to_string(expiredPort_) +
          " ssl; ssl_certificate " + expiredCertificate() +
          ";\n  }\n  server {\n    listen 127.0.0.1:" + std::to_string(port_) + ";\n" +
          (hasIpv6_ ? "    listen [::1]:" + std::to_string(port_) + ";\n" : std::string()) +
          "    listen 127.0.0.1:" + std::to_string(tlsPort_) + " ssl http2;\n    ssl_certificate " +
          certificate() + ";\n    root " + root().string() + ";\n" + locations + "\n  }\n}\n");

  return process_.start({"/usr/sbin/nginx", "-p", at, "-c", at + "/nginx.conf", "-e", "stderr"},
                        "getrlimit(RLIMIT_NOFILE)");
}
