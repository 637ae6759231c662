// Undoes the content codings of an answer's body while it comes: gzip and deflate, by zlib.
//
// One decoder for one body, used by one thread at a time. It holds some 50 KiB a coding,
// whatever the body's size: what comes out goes to the sink in pieces of at most 16 KiB.
// write() and end() report a failure by giving false; error() then says why, unless it was
// the sink that said no.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

class ContentDecoder {
 public:
  // What to ask servers for.
  static constexpr std::string_view kAccepted = "gzip, deflate";
  // Takes the next piece of the plain body; false stops the decoder.
  using Sink = std::function<bool(std::string_view)>;

  // For the value of a Content-Encoding. Null when there is nothing to undo: no coding, or
  // one that we don't know, whose body passes through as it comes.
  static std::unique_ptr<ContentDecoder> make(std::string_view contentEncoding, Sink sink);

  virtual ~ContentDecoder() = default;
  virtual bool write(std::string_view bytes) = 0;
  // The body's last byte has been written. False when it breaks off within a coding.
  virtual bool end() = 0;
  virtual const std::string& error() const = 0;
};

}  // namespace platform
