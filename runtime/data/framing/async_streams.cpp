#include "runtime/data/framing/async_streams.h"

#include <signal.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "runtime/core/background_event.h"
#include "runtime/data/bytes/byte_range.h"

namespace kes {

namespace {
// What may be under way to the main thread before reading pauses.
constexpr std::size_t kMostUndelivered = std::size_t{4} << 20;
constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr std::size_t kPrefix = sizeof(std::int32_t);
}  // namespace

// What the object and its two threads share; it outlives the object if that ends on one of
// the threads.
class KesAsyncStreams::Line : public std::enable_shared_from_this<Line> {
 public:
  Line(KesAsyncStreams* owner, const Ref<Kes>& bi, Text prefix,
       std::unique_ptr<ByteChannel> channel, ByteOrder order, std::int32_t longest)
      : owner_(owner),
        bi_(bi),
        prefix_(std::move(prefix)),
        channel_(std::move(channel)),
        order_(order),
        longest_(longest) {}

  void start() {
    reader_ = std::thread([me = shared_from_this()] { me->readLoop(); });
    writer_ = std::thread([me = shared_from_this()] { me->writeLoop(); });
  }

  void write(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > static_cast<std::size_t>(longest_))
      throw KesException(formatText("Message too long: %@", {std::to_string(bytes.size())}));
    std::vector<std::uint8_t> message(kPrefix + bytes.size());
    storeNumber(message.data(), static_cast<std::int32_t>(bytes.size()), order_);
    std::copy(bytes.begin(), bytes.end(), message.begin() + kPrefix);
    {
      std::lock_guard lock(mutex_);
      if (!over_) toWrite_.push_back(std::move(message));
    }
    changed_.notify_all();
  }

  std::int32_t waiting() const {
    std::lock_guard lock(mutex_);
    return static_cast<std::int32_t>(toWrite_.size());
  }

  // Ends the work; true for whoever was the first to say so.
  bool end() {
    {
      std::lock_guard lock(mutex_);
      if (over_) return false;
      over_ = true;
      toWrite_.clear();
    }
    channel_->interrupt();
    changed_.notify_all();
    return true;
  }

  void join() {
    bool onOwnThread = false;
    for (auto* thread : {&reader_, &writer_}) {
      if (!thread->joinable()) continue;
      if (thread->get_id() == std::this_thread::get_id()) {
        thread->detach();
        onOwnThread = true;
      } else {
        thread->join();
      }
    }
    // Events under way may keep this line for a while; the other side is not to wait.
    if (!onOwnThread) channel_.reset();
  }

 private:
  // Tells the main thread when an event has been handled.
  struct Delivery {
    std::shared_ptr<Line> line;
    std::size_t bytes;
    ~Delivery() {
      {
        std::lock_guard lock(line->mutex_);
        line->undelivered_ -= bytes;
      }
      line->changed_.notify_all();
    }
  };

  void raise(std::string_view suffix, std::vector<Value> params, std::shared_ptr<void> kept = {}) {
    const Text event = prefix_ + Text(suffix);
    BackgroundEvent(bi_.lock(), owner_.lock(), event, std::move(kept)).raise(std::move(params));
  }

  void finish(std::string_view suffix) {
    if (end()) raise(suffix, {});
  }
  void fail(const std::exception& e) {
    if (!end()) return;
    Kes::SetException(e);
    raise("_error", {});
  }

  // The count read, which is less than asked for only at the end.
  std::size_t readFully(std::span<std::uint8_t> into) {
    std::size_t done = 0;
    while (done < into.size()) {
      const auto n = channel_->read(into.subspan(done));
      if (n == 0) break;
      done += n;
    }
    return done;
  }

  void readLoop() {
    try {
      for (;;) {
        std::uint8_t prefix[kPrefix];
        const auto got = readFully(prefix);
        if (got == 0) return finish("_terminated");
        if (got < kPrefix) throw KesException("Message cut off");
        const auto length = loadNumber<std::int32_t>(prefix, order_);
        if (length < 0 || length > longest_)
          throw KesException(formatText("Message too long: %@", {std::to_string(length)}));
        deliver(readMessage(static_cast<std::size_t>(length)));
      }
    } catch (const std::exception& e) {
      fail(e);
    }
  }

  std::vector<std::uint8_t> readMessage(std::size_t length) {
    std::vector<std::uint8_t> message;
    while (message.size() < length) {
      // By blocks: the room is made as the bytes come, not as they are announced.
      const auto from = message.size();
      const auto block = std::min(kBlock, length - from);
      message.resize(from + block);
      if (readFully(std::span(message).subspan(from)) < block)
        throw KesException("Message cut off");
    }
    return message;
  }

  void deliver(std::vector<std::uint8_t> message) {
    const auto bytes = message.size() + kPrefix;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return over_ || undelivered_ < kMostUndelivered; });
      if (over_) return;
      undelivered_ += bytes;
    }
    auto delivery = std::shared_ptr<Delivery>(new Delivery{shared_from_this(), bytes});
    raise("_newdata:", {KesArray::initBytesWithData(std::move(message))}, std::move(delivery));
  }

  void writeLoop() {
    // A reader that is gone is an error of the write and no signal.
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
    try {
      for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return over_ || !toWrite_.empty(); });
        if (over_) return;
        const auto message = std::move(toWrite_.front());
        toWrite_.pop_front();
        lock.unlock();
        channel_->write(message);
      }
    } catch (const std::exception& e) {
      fail(e);
    }
  }

  const WeakRef<KesAsyncStreams> owner_;
  const WeakRef<Kes> bi_;
  const Text prefix_;
  std::unique_ptr<ByteChannel> channel_;
  const ByteOrder order_;
  const std::int32_t longest_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::size_t undelivered_ = 0;
  std::deque<std::vector<std::uint8_t>> toWrite_;
  std::thread reader_;
  std::thread writer_;
};

KesAsyncStreams::~KesAsyncStreams() { Close(); }

void KesAsyncStreams::start(const Ref<Kes>& bi, const Text& eventPrefix,
                            std::unique_ptr<ByteChannel> channel, ByteOrder order,
                            std::int32_t longestMessage) {
  Close();
  const Text prefix = eventPrefix.ToLowerCase();
  for (const auto* suffix : {"_newdata:", "_error", "_terminated"})
    bi->errorIfMissingEvent(prefix, suffix);
  line_ = std::make_shared<Line>(this, bi, prefix, std::move(channel), order, longestMessage);
  line_->start();
}

void KesAsyncStreams::Write(const Ref<KesArray>& bytes) {
  if (!line_) throw KesException("Object was not initialized (KesAsyncStreams)");
  line_->write(wholeBytes(bytes));
}

std::int32_t KesAsyncStreams::OutputQueueSize() const { return line_ ? line_->waiting() : 0; }

void KesAsyncStreams::Close() {
  if (!line_) return;
  line_->end();
  line_->join();
  line_ = nullptr;
}

}  // namespace kes
