#include "platform/url/content_decoder.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "platform/url/http_headers.h"

namespace platform {

namespace {

// Who codes a body more often than that means harm: each turn multiplies it by a thousand.
constexpr std::size_t kMostCodings = 3;

constexpr int kZlib = 15, kRawDeflate = -15, kGzip = 31;  // as zlib's window bits tell them

enum class Coding { Gzip, Deflate };

// The codings in the order in which they were applied; nothing when one is unknown.
std::optional<std::vector<Coding>> codingsOf(std::string_view list) {
  std::vector<Coding> all;
  while (!list.empty()) {
    auto name = list.substr(0, list.find(','));
    list.remove_prefix(std::min(list.size(), name.size() + 1));
    while (!name.empty() && (name.front() == ' ' || name.front() == '\t')) name.remove_prefix(1);
    while (!name.empty() && (name.back() == ' ' || name.back() == '\t')) name.remove_suffix(1);
    if (HttpHeaders::sameName(name, "gzip") || HttpHeaders::sameName(name, "x-gzip"))
      all.push_back(Coding::Gzip);
    else if (HttpHeaders::sameName(name, "deflate"))
      all.push_back(Coding::Deflate);
    else if (!name.empty() && !HttpHeaders::sameName(name, "identity"))
      return std::nullopt;
  }
  return all;
}

// One coding. The stream is opened by the body's first byte and closed by its own end mark.
class Inflater final : public ContentDecoder {
 public:
  Inflater(Coding coding, Sink sink) : coding_(coding), sink_(std::move(sink)) {}
  ~Inflater() override {
    if (state_ != State::Before) inflateEnd(&z_);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool write(std::string_view bytes) override {
    while (!bytes.empty()) {
      if (state_ == State::Before && !open(bytes.front())) return false;
      if (state_ == State::Over) {
        // A gzip body may have several members; what else follows is padding.
        if (coding_ != Coding::Gzip || bytes.front() != '\x1f') return true;
        if (inflateReset(&z_) != Z_OK) return fail();
        state_ = State::Inside;
      }
      z_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
      z_.avail_in = static_cast<uInt>(bytes.size());
      if (!inflateAll()) return false;
      bytes.remove_prefix(bytes.size() - z_.avail_in);
    }
    return true;
  }

  // A body without a single byte is no coded one.
  bool end() override { return state_ != State::Inside || fail("breaks off"); }

  const std::string& error() const override { return error_; }

 private:
  enum class State { Before, Inside, Over };

  // Some servers leave away the frame that "deflate" should have; no stream without one
  // begins as the frame does.
  bool open(char first) {
    const bool framed = (static_cast<unsigned char>(first) & 15) == Z_DEFLATED;
    const int window = coding_ == Coding::Gzip ? kGzip : framed ? kZlib : kRawDeflate;
    if (inflateInit2(&z_, window) != Z_OK) return fail("can't be undone");
    state_ = State::Inside;
    return true;
  }

  // Until the input is used up or the stream is over.
  bool inflateAll() {
    std::array<char, std::size_t{16} * 1024> piece;
    do {
      z_.next_out = reinterpret_cast<Bytef*>(piece.data());
      z_.avail_out = static_cast<uInt>(piece.size());
      const int result = inflate(&z_, Z_NO_FLUSH);
      if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) return fail();
      const auto made = piece.size() - z_.avail_out;
      if (made && !sink_({piece.data(), made})) return false;
      if (result == Z_STREAM_END) {
        state_ = State::Over;
        return true;
      }
    } while (z_.avail_in > 0 || z_.avail_out == 0);
    return true;
  }

  bool fail(const char* how = "is damaged") {
    error_ = std::string("The body's compression ") + how + ".";
    return false;
  }

  const Coding coding_;
  const Sink sink_;
  State state_ = State::Before;
  z_stream z_{};
  std::string error_;
};

// Codings that were applied one upon the other, undone from the last to the first.
class Chain final : public ContentDecoder {
 public:
  Chain(const std::vector<Coding>& codings, Sink sink) {
    for (const auto coding : codings) {
      auto* inner = stages_.empty() ? nullptr : stages_.back().get();
      stages_.push_back(std::make_unique<Inflater>(
          coding,
          inner ? Sink([inner](std::string_view b) { return inner->write(b); }) : std::move(sink)));
    }
  }
  bool write(std::string_view bytes) override { return stages_.back()->write(bytes); }
  bool end() override {
    return std::all_of(stages_.rbegin(), stages_.rend(), [](auto& s) { return s->end(); });
  }
  const std::string& error() const override {
    const auto failed = std::find_if(stages_.begin(), stages_.end(),
                                     [](const auto& s) { return !s->error().empty(); });
    return (failed == stages_.end() ? stages_.front() : *failed)->error();
  }

 private:
  std::vector<std::unique_ptr<Inflater>> stages_;
};

class Refusal final : public ContentDecoder {
 public:
  bool write(std::string_view) override { return false; }
  bool end() override { return true; }
  const std::string& error() const override { return error_; }

 private:
  const std::string error_ = "The body is compressed too many times.";
};

}  // namespace

std::unique_ptr<ContentDecoder> ContentDecoder::make(std::string_view contentEncoding, Sink sink) {
  const auto codings = codingsOf(contentEncoding);
  if (!codings || codings->empty()) return nullptr;
  if (codings->size() > kMostCodings) return std::make_unique<Refusal>();
  if (codings->size() == 1) return std::make_unique<Inflater>(codings->front(), std::move(sink));
  return std::make_unique<Chain>(*codings, std::move(sink));
}

}  // namespace platform
