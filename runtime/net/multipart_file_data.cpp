#include "runtime/net/multipart_file_data.h"

#include "runtime/core/language/common.h"

namespace kes {

void _multipartfiledata::describe(ClassBuilder<_multipartfiledata>& c) {
  c.name("_multipartfiledata");
  c.storedField<&_multipartfiledata::IsInitialized>("_IsInitialized");
  c.storedField<&_multipartfiledata::Dir>("_Dir");
  c.storedField<&_multipartfiledata::FileName>("_FileName");
  c.storedField<&_multipartfiledata::KeyName>("_KeyName");
  c.storedField<&_multipartfiledata::ContentType>("_ContentType");
}

void _multipartfiledata::Initialize() {
  IsInitialized = true;
  Dir = FileName = KeyName = ContentType = Text();
}

Text _multipartfiledata::description() const { return KesCommon::TypeToString(*this, false); }

}  // namespace kes
