#include "runtime/net/http_response.h"

#include <charconv>

#include "runtime/core/language/common.h"

namespace kes {

namespace {

// Headers are meant to be ASCII; what isn't UTF-8 either is taken as Latin-1.
Text headerText(const std::string& bytes) {
  if (auto text = Text::fromUtf8(bytes)) return *text;
  std::u16string units;
  for (unsigned char c : bytes) units += static_cast<char16_t>(c);
  return Text::fromUtf16(units);
}

}  // namespace

KesHttpResponse::KesHttpResponse(std::shared_ptr<const platform::UrlResponse> res,
                                 std::shared_ptr<platform::UrlBody> location)
    : res_(std::move(res)), location_(std::move(location)) {}

KesInputStream KesHttpResponse::GetInputStream() const {
  if (!location_) return {};
  const auto bytes = location_->bytes();
  return KesInputStream::over(bytes ? memoryInput({bytes->begin(), bytes->end()})
                                    : fileInput(location_->path()));
}

Text KesHttpResponse::GetString2(std::string_view charset) const {
  if (!location_) return {};
  if (const auto bytes = location_->bytes())
    return KesCommon::BytesToString(
        {reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size()}, 0,
        static_cast<int>(bytes->size()), charset);
  auto stream = GetInputStream();
  const auto bytes = stream.readAll(location_->size());
  stream.Close();
  return KesCommon::BytesToString(bytes, 0, static_cast<int>(bytes.size()), charset);
}

std::int64_t KesHttpResponse::ContentLength() const {
  const auto text = header("Content-Length").str();
  std::int64_t length = 0;
  std::from_chars(text.data(), text.data() + text.size(), length);
  return length;
}

Text KesHttpResponse::header(std::string_view name) const {
  const auto* value = res_ ? res_->headers.find(name) : nullptr;
  return value ? headerText(*value) : Text();
}

KesMap KesHttpResponse::GetHeaders() const {
  auto table = platform::makeShared<Dictionary>();
  if (res_)
    for (const auto& [name, value] : res_->headers) table->put(headerText(name), headerText(value));
  KesMap map;
  map.setDict(std::move(table));
  return map;
}

}  // namespace kes
