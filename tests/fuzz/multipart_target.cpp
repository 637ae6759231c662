// Lines by twos, name and value of a form's fields; the rest is a file's contents.
#include <vector>

#include "runtime/data/files/file.h"
#include "runtime/net/multipart_body.h"
#include "target.h"
#include "tests/support/test_platform.h"

namespace {

std::size_t occurrences(std::string_view text, std::string_view what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != text.npos; at = text.find(what, at + what.size())) ++n;
  return n;
}

}  // namespace

void fuzz::multipart(Bytes input) {
  auto rest = textOf(input);
  const auto boundary = "--" + std::string(kes::MultipartBody::kBoundary);
  if (occurrences(rest, boundary)) return;
  kes::MultipartBody body;
  std::size_t fields = 0, length = 0;
  for (; fields < 3; ++fields) {
    const auto name = kes::Text::fromUtf8(takeLine(rest));
    const auto value = kes::Text::fromUtf8(takeLine(rest));
    if (!name || !value) return;
    body.addField(*name, *value);
    length += name->view().size() + value->view().size();
  }
  kes::_multipartfiledata file;
  file.Initialize();
  file.Dir = kes::File().DirTemp();
  file.FileName = "part";
  file.KeyName = file.ContentType = "x";
  testing_support::TestPlatform::write(kes::File().Combine(file.Dir, "part").str(), rest);
  body.addFile(file);

  const auto bytes = body.finish();
  const auto sent = textOf(bytes->bytesData());
  require(occurrences(sent, boundary) == fields + 2, "a boundary before each part and at the end");
  require(sent.ends_with("\r\n" + boundary + "--\r\n"), "the form is closed");
  const auto closing = sent.size() - boundary.size() - 6;
  require(sent.substr(0, closing).ends_with(rest), "the file goes out as it is");
  require(sent.size() >= length + rest.size(), "nothing is left out");
}
