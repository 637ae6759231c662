// KesHttpResponse: one answer of a server, and where its body lies.
//
// Held by Ref. The body can be read for one turn (platform/url/url_body.h tells its life).
// On the error path there is no body, and perhaps no answer: the status is then 0 and
// texts are empty. GetString2 throws "Invalid CharSet %@" and "Error decoding data as
// string."; reading a body that has gone throws "Error reading from stream: %@". Sizes are
// bytes.
#pragma once

#include <memory>

#include "platform/url/url_body.h"
#include "platform/url/url_request.h"
#include "runtime/core/map.h"
#include "runtime/data/files/input_stream.h"

namespace kes {

class KesHttpResponse final : public Object {
 public:
  KesHttpResponse() = default;
  KesHttpResponse(std::shared_ptr<const platform::UrlResponse> res,
                  std::shared_ptr<platform::UrlBody> location);
  std::string_view className() const override { return "KesHttpResponse"; }

  std::int32_t StatusCode() const { return res_ ? res_->status : 0; }
  KesInputStream GetInputStream() const;  // opened; not initialized where there is no body
  Text GetString() const { return GetString2("UTF8"); }
  Text GetString2(std::string_view charset) const;
  std::int64_t ContentLength() const;
  Text ContentEncoding() const { return header("Content-Encoding"); }
  Text ContentType() const { return header("Content-Type"); }
  KesMap GetHeaders() const;  // read-only, names as the server wrote them

 private:
  Text header(std::string_view name) const;

  std::shared_ptr<const platform::UrlResponse> res_;
  std::shared_ptr<platform::UrlBody> location_;
};

}  // namespace kes
