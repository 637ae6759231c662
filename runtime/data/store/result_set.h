// KesResultSet: a wrapper over the rows of a query, walked once from the first to the last.
//
// Copies walk the same rows. It is open until NextRow has answered false, Close was
// called, the last copy is gone, or its database was closed; from then on columns read as
// absent. Columns are named, whatever the case, or counted from 0; an absent column or a
// NULL reads as 0, nil or null. One thread at a time. Throws "Object was not initialized
// (%@)" without a query; a failure on the way ends the rows and goes to the log.
#pragma once

#include "runtime/core/wrapper.h"
#include "runtime/data/store/sqlite_database.h"

namespace kes {

class KesResultSet final : public TypedWrapper<KesResultSet, sqlite::Query> {
 public:
  static constexpr std::string_view kPlatformClass = "FMResultSet";
  std::string_view className() const override { return "KesResultSet"; }
  static KesResultSet over(Ref<sqlite::Query> query);

  bool NextRow() { return native()->next(); }
  void Close() { native()->close(); }
  std::int32_t ColumnCount() const { return native()->columnCount(); }
  Value GetColumnName(std::int32_t index) const { return native()->columnName(index); }

  std::int32_t GetInt(std::string_view column) const { return GetInt2(indexOf(column)); }
  std::int64_t GetLong(std::string_view column) const { return GetLong2(indexOf(column)); }
  double GetDouble(std::string_view column) const { return GetDouble2(indexOf(column)); }
  Value GetString(std::string_view column) const { return GetString2(indexOf(column)); }
  Ref<KesArray> GetBlob(std::string_view column) const { return GetBlob2(indexOf(column)); }

  std::int32_t GetInt2(std::int32_t index) const {
    return static_cast<std::int32_t>(native()->number(index));
  }
  std::int64_t GetLong2(std::int32_t index) const { return native()->number(index); }
  double GetDouble2(std::int32_t index) const { return native()->real(index); }
  Value GetString2(std::int32_t index) const { return native()->text(index); }
  Ref<KesArray> GetBlob2(std::int32_t index) const { return native()->bytes(index); }

 private:
  int indexOf(std::string_view column) const;
};

}  // namespace kes
