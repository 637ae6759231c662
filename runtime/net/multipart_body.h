// MultipartBody: a posted form as the bytes that go out, put together in memory.
//
// Line feeds of names and values go out as CR LF, file contents as they are; nothing is
// escaped. Throws what the file service throws. Used by one thread.
#pragma once

#include "runtime/data/files/output_stream.h"
#include "runtime/net/multipart_file_data.h"

namespace kes {

class MultipartBody {
 public:
  static constexpr std::string_view kBoundary = "---------------------------1461124740692";

  MultipartBody();
  void addField(const Text& name, const Text& value);
  void addFile(const _multipartfiledata& file);
  // The whole, closed.
  Ref<KesArray> finish();

 private:
  void _multipartstartsection();
  void write(const std::string& text);

  KesOutputStream stream_;
  bool first_ = true;
};

}  // namespace kes
