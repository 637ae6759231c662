#include "tests/support/broker.h"

#include <pwd.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/test_platform.h"

using testing_support::TestPlatform;

namespace {

constexpr const char* kSecret = "segreto";

}  // namespace

Broker::Broker(const std::filesystem::path& folder) : folder_(folder) {
  std::filesystem::create_directories(folder_);
  const auto path = [&](const char* name) { return (folder_ / name).string(); };
  const auto run = [&](const std::vector<std::string>& command) {
    ServerProcess::require(command, folder_.string());
  };
  for (const char* name : {"ca", "other"})
    run({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
         "-nodes", "-days", "2", "-subj", std::string("/CN=") + name, "-keyout",
         path(name) + ".key", "-out", path(name) + ".pem"});
  run({"openssl", "req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
       "-subj", "/CN=localhost", "-keyout", path("key.pem"), "-out", path("request.pem")});
  TestPlatform::write(folder_ / "names", "subjectAltName=DNS:localhost");
  run({"openssl", "x509", "-req", "-days", "2", "-in", path("request.pem"), "-CA", path("ca.pem"),
       "-CAkey", path("ca.key"), "-CAcreateserial", "-extfile", path("names"), "-out",
       path("cert.pem")});
  run({"mosquitto_passwd", "-b", "-c", path("accounts"), "comune", kSecret});
  TestPlatform::write(folder_ / "rules",
                      "pattern read varlo/#\n\nuser comune\ntopic write varlo/#\n");
  process_.startSomewhere("mosquitto", [&] { return tryPorts(); });
}

bool Broker::tryPorts() {
  tlsPort_ = ServerProcess::freePort();
  plainPort_ = ServerProcess::freePort();
  const auto at = folder_.string();
  const passwd* self = ::getpwuid(::getuid());
  TestPlatform::write(folder_ / "mosquitto.conf",
                      "user " + std::string(self ? self->pw_name : "nobody") +
                          "\nlog_dest stderr\nlog_type error\nlog_type warning\n"
                          "log_type information\nconnection_messages false\n"
                          "allow_anonymous true\npassword_file " +
                          at + "/accounts\nacl_file " + at +
                          "/rules\n"
                          "persistence true\npersistence_location " +
                          at +
                          "/\nautosave_on_changes true\nautosave_interval 1\n"
                          "listener " +
                          std::to_string(tlsPort_) + " 127.0.0.1\ncertfile " + at +
                          "/cert.pem\nkeyfile " + at +
                          "/key.pem\n"
                          "listener " +
                          std::to_string(plainPort_) + " 127.0.0.1\n");
  return process_.start({"/usr/sbin/mosquitto", "-c", at + "/mosquitto.conf"}, " running");
}

void Broker::start() {
  if (!process_.start({"/usr/sbin/mosquitto", "-c", (folder_ / "mosquitto.conf").string()},
                      " running"))
    throw std::runtime_error("mosquitto does not start again: " + process_.said());
}

bool Broker::holds(const std::string& text) const {
  return TestPlatform::read(folder_ / "mosquitto.db").find(text) != std::string::npos;
}

void Broker::send(const std::vector<std::string>& messages, const std::string& topic,
                  bool retained) {
  std::string lines;
  for (const auto& message : messages) lines += message + "\n";
  TestPlatform::write(folder_ / "lines", lines);
  ServerProcess::require(
      {"/bin/sh", "-c",
       "exec mosquitto_pub $6 -q 1 -l -h localhost -p \"$1\" --cafile \"$2\" -u comune -P \"$3\" "
       "-t \"varlo/$4\" < \"$5\"",
       "sh", std::to_string(tlsPort_), certificates(), kSecret, topic, (folder_ / "lines").string(),
       retained ? "-r" : ""},
      folder_.string());
}

std::string Broker::sendAsAnybody(const std::string& message) {
  ServerProcess tool;
  tool.start(
      {"mosquitto_pub", "-V", "5", "-q", "1", "-h", "localhost", "-p", std::to_string(tlsPort_),
       "--cafile", certificates(), "-t", "varlo/ios_general", "-m", message},
      "(its end)");
  return tool.said();
}
