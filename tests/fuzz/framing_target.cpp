// A byte for the byte order, then a stream of length-prefixed messages.
#include <vector>

#include "platform/base/platform.h"
#include "runtime/core/language/module.h"
#include "runtime/data/framing/async_streams.h"
#include "target.h"

namespace {

constexpr std::int32_t kLongest = 1000;

class Receiver final : public kes::KesClass {
 public:
  static void describe(kes::ClassBuilder<Receiver>& c) {
    c.name("fuzz_receiver");
    c.sub<&Receiver::newData>("x_newdata");
    c.sub<&Receiver::error>("x_error");
    c.sub<&Receiver::terminated>("x_terminated");
  }
  void _initialize() { initializeClassModule(); }

  std::vector<std::string> heard;
  bool ended = false;

 private:
  void newData(kes::Ref<kes::KesArray> bytes) {
    heard.emplace_back(fuzz::textOf(bytes->bytesData()));
  }
  void error() { end("error"); }
  void terminated() { end("terminated"); }
  void end(const char* how) {
    heard.emplace_back(how);
    ended = true;
  }
};

}  // namespace

void fuzz::framing(Bytes input) {
  if (input.empty()) return;
  const auto order = input[0] & 1 ? kes::ByteOrder::Little : kes::ByteOrder::Big;
  auto rest = input.subspan(1);
  kes::ClassRegistry::instance().addAll<Receiver>();
  const auto receiver = kes::make<Receiver>();
  receiver->_initialize();
  const auto streams = platform::makeShared<kes::KesAsyncStreams>();
  streams->start(receiver->bi(), "x",
                 kes::streamChannel(
                     kes::KesInputStream::over(kes::memoryInput({rest.begin(), rest.end()})), {}),
                 order, kLongest);
  auto& queue = platform::current().mainQueue();
  while (!receiver->ended) {
    require(queue.waitForTask(4000), "a stream that has ended is reported");
    queue.drain();
  }
  streams->Close();
  queue.drain();

  std::vector<std::string> expected;
  while (rest.size() >= 4) {
    const auto length = kes::loadNumber<std::int32_t>(rest.data(), order);
    if (length < 0 || length > kLongest || rest.size() - 4 < static_cast<std::size_t>(length))
      break;
    expected.emplace_back(textOf(rest.subspan(4, static_cast<std::size_t>(length))));
    rest = rest.subspan(4 + static_cast<std::size_t>(length));
  }
  expected.emplace_back(rest.empty() ? "terminated" : "error");
  require(receiver->heard == expected, "messages arrive as they were sent, and their end once");
}
