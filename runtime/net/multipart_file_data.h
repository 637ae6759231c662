// _multipartfiledata: one file of a form that is posted. A plain shared record, held by
// Ref. Main thread.
#pragma once

#include "runtime/core/class_table.h"

namespace kes {

class _multipartfiledata final : public Object {
 public:
  static void describe(ClassBuilder<_multipartfiledata>& c);

  void Initialize();
  Text description() const override;

  bool IsInitialized = false;
  Text Dir;
  Text FileName;
  Text KeyName;
  Text ContentType;
};

}  // namespace kes
