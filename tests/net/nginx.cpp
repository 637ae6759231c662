#include "nginx.h"

#include <stdexcept>

#include "tests/support/test_platform.h"

using testing_support::TestPlatform;

Nginx::Nginx(const std::filesystem::path& folder, const std::string& locations) : folder_(folder) {
  std::filesystem::create_directories(root());
  std::filesystem::create_directories(folder_ / "temp");
  if (!ServerProcess::run({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                           "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
                           "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout",
                           (folder_ / "key.pem").string(), "-out", (folder_ / "cert.pem").string()},
                          folder_.string()))
    throw std::runtime_error("openssl made no certificate");
  for (int attempt = 0; attempt < 5; ++attempt)
    if (start(locations)) return;
  throw std::runtime_error("nginx does not start: " + process_.said());
}

bool Nginx::start(const std::string& locations) {
  port_ = ServerProcess::freePort();
  tlsPort_ = ServerProcess::freePort();
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

  return process_.start({"/usr/sbin/nginx", "-p", at, "-c", at + "/nginx.conf", "-e", "stderr"},
                        "getrlimit(RLIMIT_NOFILE)");
}
