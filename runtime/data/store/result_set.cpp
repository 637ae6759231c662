#include "runtime/data/store/result_set.h"

#include "runtime/core/language/common.h"

namespace kes {

KesResultSet KesResultSet::over(Ref<sqlite::Query> query) {
  KesResultSet set;
  set.wrap(Value(std::move(query)));
  return set;
}

int KesResultSet::indexOf(std::string_view column) const {
  const int index = native()->columnIndex(column);
  if (index < 0) KesCommon::Log(formatText("No column named '%@'", {column}));
  return index;
}

}  // namespace kes
