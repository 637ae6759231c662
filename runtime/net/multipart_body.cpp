#include "runtime/net/multipart_body.h"

#include "runtime/core/language/common.h"
#include "runtime/data/files/file.h"

namespace kes {

namespace {
const std::string kDelimiter = "--" + std::string(MultipartBody::kBoundary);
}  // namespace

MultipartBody::MultipartBody() { stream_.InitializeToBytesArray(0); }

void MultipartBody::_multipartstartsection() {
  constexpr std::uint8_t lineEnd[] = {13, 10};
  if (!first_) stream_.write(lineEnd);
  first_ = false;
}

void MultipartBody::write(const std::string& text) {
  const auto bytes = KesCommon::GetBytes(Text(text).Replace("\n", "\r\n"), "UTF8");
  stream_.write(bytes);
}

void MultipartBody::addField(const Text& name, const Text& value) {
  _multipartstartsection();
  write(kDelimiter + "\nContent-Disposition: form-data; name=\"" + name.str() + "\"\n\n" +
        value.str());
}

void MultipartBody::addFile(const _multipartfiledata& file) {
  _multipartstartsection();
  write(kDelimiter + "\nContent-Disposition: form-data; name=\"" + file.KeyName.str() +
        "\"; filename=\"" + file.FileName.str() + "\"\nContent-Type: " + file.ContentType.str() +
        "\n\n");
  KesFile::Copy2(File().OpenInput(file.Dir, file.FileName), stream_);
}

Ref<KesArray> MultipartBody::finish() {
  _multipartstartsection();
  write(kDelimiter + "--\n");
  return stream_.ToBytesArray();
}

}  // namespace kes
