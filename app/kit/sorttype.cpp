#include "app/kit/sorttype.h"

#include "runtime/core/language/common.h"

namespace varlo {

void _sorttype::describe(ClassBuilder<_sorttype>& c) {
  c.name("_sorttype");
  c.storedField<&_sorttype::IsInitialized>("_IsInitialized");
  c.storedField<&_sorttype::KEY>("_KEY");
  c.storedField<&_sorttype::Title>("_Title");
  c.storedField<&_sorttype::Value>("_Value");
}

void _sorttype::Initialize() {
  IsInitialized = true;
  KEY = Title = Text();
  Value = kes::Value(platform::makeShared<Object>());
}

Text _sorttype::description() const { return KesCommon::TypeToString(*this, false); }

Ref<_sorttype> _sorttype::of(Text key, Text title, kes::Value value) {
  auto record = platform::makeShared<_sorttype>();
  record->IsInitialized = true;
  record->KEY = std::move(key);
  record->Title = std::move(title);
  record->Value = std::move(value);
  return record;
}

}  // namespace varlo
