// An app that only listens, until something stops it:
//
//   push_listener FOLDER PORT CERTIFICATES OUT [N]
//
// keeps its line in FOLDER and writes each message as a line to the file OUT. Says
// "connected" on standard error. With N it is killed by the Nth message, before anybody
// has seen that one.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/base/platform.h"
#include "platform/push/mqtt_line.h"

int main(int count, char** arguments) {
  if (count < 5) return 2;
  platform::SystemClock clock;
  platform::MainQueue queue(clock);
  push::MqttLine line({push::BrokerAddress::parse("mqtts://localhost:" + std::string(arguments[2])),
                       "varlo", arguments[1], arguments[3]},
                      queue);
  const int out = ::open(arguments[4], O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  int left = count > 5 ? std::atoi(arguments[5]) : -1;
  line.setReceiver([&](const std::string& json, const std::function<void()>& done) {
    if (--left == 0) ::kill(::getpid(), SIGKILL);
    const std::string text = json + "\n";
    if (::write(out, text.data(), text.size()) != static_cast<ssize_t>(text.size())) ::_exit(3);
    done();
  });
  std::function<void()> connect = [&] {
    line.connect([&](const std::optional<std::string>& connection) {
      if (!connection) return queue.postAfter(500, connect);
      line.subscribe("ios_general");
      std::fputs("connected\n", stderr);
    });
  };
  connect();
  for (;;) {
    queue.waitForTask(1000);
    queue.drain();
  }
}
