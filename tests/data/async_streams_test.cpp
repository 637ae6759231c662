#include "runtime/data/framing/async_streams.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "data_fixture.h"

using kes::ByteOrder;
using kes::KesAsyncStreams;

namespace {

class AsyncStreams : public RecordedTest {
 protected:
  ~AsyncStreams() override { hangUp(); }

  // On a connection of its own each time.
  void start(ByteOrder order = ByteOrder::Big, std::int32_t longest = 100) {
    hangUp();
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
      throw std::runtime_error("no socket pair");
    peer = ends[1];
    recorder->events.clear();
    streams->start(recorder->bi(), "X", kes::descriptorChannel(ends[0]), order, longest);
  }
  void send(const Bytes& bytes) const {
    ASSERT_EQ(::write(peer, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  // That many bytes from our side.
  Bytes received(std::size_t count) const {
    Bytes bytes(count);
    for (std::size_t done = 0; done < count;) {
      const auto n = ::read(peer, bytes.data() + done, count - done);
      if (n <= 0) return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(done)};
      done += static_cast<std::size_t>(n);
    }
    return bytes;
  }
  void hangUp() {
    if (peer >= 0) ::close(std::exchange(peer, -1));
  }

  int peer = -1;
  Ref<KesAsyncStreams> streams = makeShared<KesAsyncStreams>();
};

}  // namespace

TEST_F(AsyncStreams, MessagesArriveWholeAndInOrder) {
  start();
  // Two in one piece, one empty, one that comes byte by byte.
  send(fromHex("00000003 616263 00000000 00000001 7a"));
  for (const auto b : fromHex("00000002 6f6b")) send({b});
  ASSERT_TRUE(waitForEvents(4));
  hangUp();
  ASSERT_TRUE(waitForEvents(5));
  EXPECT_THAT(recorder->events,
              ElementsAre("newdata(abc)", "newdata()", "newdata(z)", "newdata(ok)", "terminated"));
  for (const auto& sender : recorder->senders) EXPECT_EQ(sender.object(), streams.get());
}

TEST_F(AsyncStreams, BothSidesSpeakTheChosenByteOrder) {
  for (const auto order : {ByteOrder::Big, ByteOrder::Little}) {
    start(order);
    streams->Write(arrayOf("ciao"));
    streams->Write(arrayOf(""));
    EXPECT_EQ(toHex(received(12)),
              order == ByteOrder::Big ? "000000046369616f00000000" : "040000006369616f00000000");
    send(fromHex(order == ByteOrder::Big ? "00000001 61" : "01000000 61"));
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(recorder->events[0], "newdata(a)");
    streams->Close();
    EXPECT_TRUE(received(1).empty()) << "closed on both sides";
  }
  EXPECT_EQ(thrownBy([&] { streams->Write(arrayOf("x")); }),
            "Object was not initialized (KesAsyncStreams)");
}

TEST_F(AsyncStreams, WhatIsNoMessageEndsInOneError) {
  const struct {
    const char* hex;
    bool hangUp;
    const char* event;
  } cases[] = {
      {"00000065", false, "error(Message too long: 101)"},
      {"7fffffff", false, "error(Message too long: 2147483647)"},
      {"ffffffff", false, "error(Message too long: -1)"},
      {"0000", true, "error(Message cut off)"},
      {"00000004 6162", true, "error(Message cut off)"},
  };
  for (const auto& c : cases) {
    start();
    send(fromHex("00000001 61"));
    send(fromHex(c.hex));
    if (c.hangUp) hangUp();
    ASSERT_TRUE(waitForEvents(2)) << c.hex;
    streams->Write(arrayOf("into the void"));
    streams->Close();
    phone.drain();
    EXPECT_THAT(recorder->events, ElementsAre("newdata(a)", c.event)) << c.hex;
  }
}

TEST_F(AsyncStreams, DemandsItsHandlers) {
  EXPECT_EQ(thrownBy([&] { streams->Initialize(recorder->bi(), "Net", {}, {}, false); }),
            "net_newdata: event not found.");
  EXPECT_FALSE(streams->IsInitialized());
}

TEST_F(AsyncStreams, RunsOverTheRuntimesStreamsAsWell) {
  kes::KesInputStream in;
  in.InitializeFromBytesArray(KesArray::initBytesWithData(fromHex("01000000 61 02000000 6263")), 0,
                              11);
  kes::KesOutputStream out;
  out.InitializeToBytesArray(0);
  streams->Initialize(recorder->bi(), "x", in, out, true);
  ASSERT_TRUE(waitForEvents(3));
  EXPECT_THAT(recorder->events, ElementsAre("newdata(a)", "newdata(bc)", "terminated"));
  EXPECT_EQ(thrownBy([&] {
              streams->Write(KesArray::initBytes({KesAsyncStreams::kLongestMessage + 1}));
            }),
            "Message too long: 16777217");
}

TEST_F(AsyncStreams, CloseEndsAReadAndAWriteThatHang) {
  start(ByteOrder::Big, 8 << 20);
  // More than the socket takes, and nobody reads it.
  streams->Write(KesArray::initBytes({8 << 20}));
  streams->Write(arrayOf("never"));
  streams->Close();
  EXPECT_FALSE(streams->IsInitialized());
  phone.drain();
  EXPECT_TRUE(recorder->events.empty()) << "closing is no event";
}

TEST_F(AsyncStreams, TheObjectMayGoWhileItsEventsAreUnderWay) {
  start();
  send(fromHex("00000001 61"));
  ASSERT_TRUE(phone.platform().mainQueue().waitForTask(10000));
  const kes::WeakRef<KesAsyncStreams> gone(streams);
  streams = nullptr;
  ASSERT_TRUE(phone.runUntil([&] {
    recorder->senders.clear();
    return gone.expired();
  }));
  EXPECT_THAT(recorder->events, ElementsAre("newdata(a)"));
  EXPECT_TRUE(received(1).empty()) << "its end closes the stream";
}

TEST_F(AsyncStreams, ReadingPausesWhenTheMainThreadFallsBehind) {
  constexpr std::size_t kMessage = 256 << 10, kMessages = 64;
  start(ByteOrder::Big, kMessage);
  Bytes message(4 + kMessage, 'x');
  kes::storeNumber(message.data(), static_cast<std::int32_t>(kMessage), ByteOrder::Big);
  std::size_t sent = 0;
  const auto pump = [&](int milliseconds) {
    pollfd room{peer, POLLOUT, 0};
    while (sent < kMessages * message.size() && ::poll(&room, 1, milliseconds) > 0) {
      const auto at = sent % message.size();
      const auto n = ::send(peer, message.data() + at, message.size() - at, MSG_DONTWAIT);
      if (n > 0) sent += static_cast<std::size_t>(n);
    }
  };
  pump(300);
  EXPECT_LT(sent, std::size_t{8} << 20) << "16 MB are offered, 4 MB may be under way";
  ASSERT_TRUE(phone.runUntil([&] {
    pump(0);
    return recorder->events.size() == kMessages;
  }));
}
