// KesHttpRequest: a wrapper over one request that can still be changed.
//
// Copies share the request. It is sent as it stands when KesHttp executes it; what is
// changed later changes nothing. A link that is no URL gives a request that fails when
// it is sent. Times are milliseconds. Throws "Object was not initialized (%@)" before an
// Initialize, and what the file service throws for a body's file. Main thread.
#pragma once

#include "platform/url/url_request.h"
#include "runtime/core/array.h"
#include "runtime/core/class_table.h"
#include "runtime/core/wrapper.h"

namespace kes {

// The platform's request; answers "setHTTPMethod:" and "setHTTPBody:" by name.
class MutableUrlRequest final : public Object {
 public:
  static void describe(ClassBuilder<MutableUrlRequest>& c);
  void setMethod(const Text& method);
  void setBody(const Ref<KesArray>& bytes);

  platform::UrlRequest request;
};

class KesHttpRequest final : public TypedWrapper<KesHttpRequest, MutableUrlRequest> {
 public:
  static constexpr std::string_view kPlatformClass = "NSMutableURLRequest";
  std::string_view className() const override { return "KesHttpRequest"; }

  void InitializeGet(std::string_view link);
  void InitializeDelete(std::string_view link);
  void InitializeHead(std::string_view link);
  void InitializePost2(std::string_view link, const Ref<KesArray>& body);
  void InitializePut2(std::string_view link, const Ref<KesArray>& body);
  // The file is read while it is sent.
  void InitializePost(std::string_view link, std::string_view dir, std::string_view fileName);
  void InitializePut(std::string_view link, std::string_view dir, std::string_view fileName);

  void SetHeader(std::string_view name, std::string_view value);
  void SetContentType(std::string_view value) { SetHeader("Content-Type", value); }
  void SetContentEncoding(std::string_view value) { SetHeader("Content-Encoding", value); }
  // For the whole request, until the last byte of its answer.
  std::int32_t Timeout() const;
  void setTimeout(std::int32_t milliseconds);
  // The most bytes that the answer may have, any compression undone; a longer one fails.

 private:
  void initialize(std::string_view link, std::string_view method);
  platform::UrlRequest& request() const { return native()->request; }
};

}  // namespace kes
