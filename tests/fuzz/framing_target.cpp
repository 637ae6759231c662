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

  std::vector<std::vector<std::uint8_t>> messages;
  std::string end;

 private:
  void newData(kes::Ref<kes::KesArray> bytes) { messages.push_back(bytes->bytesData()); }
  void error() { end += "error"; }
  void terminated() { end += "terminated"; }
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
  while (receiver->end.empty()) {
    require(queue.waitForTask(4000), "a stream that has ended is reported");
    queue.drain();
  }
  streams->Close();
  queue.drain();

  // What should have come, told one message after the other.
  std::size_t count = 0;
  std::string end = "terminated";
  while (!rest.empty()) {
    const auto length = rest.size() < 4 ? -1 : kes::loadNumber<std::int32_t>(rest.data(), order);
    if (length < 0 || length > kLongest || rest.size() - 4 < static_cast<std::size_t>(length)) {
      end = "error";
      break;
    }
    const auto message = rest.subspan(4, static_cast<std::size_t>(length));
    require(
        count < receiver->messages.size() && std::ranges::equal(receiver->messages[count], message),
        "each message arrives as it was sent");
    ++count;
    rest = rest.subspan(4 + message.size());
  }
  require(receiver->messages.size() == count, "nothing arrives that was not sent");
  require(receiver->end == end, "the end is told once, and as what it was");
}
