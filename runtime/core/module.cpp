#include "runtime/core/module.h"

#include "platform/base/log.h"

namespace kes {

void KesClass::initializeClassModule() {
  if (!bi_) {
    bi_ = platform::makeShared<Kes>(*this);
    releasedName_ = Text(className());
  }
  _class_globals();
}

Text KesClass::description() const { return KesCommon::TypeToString(*this, true); }

KesClass::~KesClass() {
  if (bi_) platform::log("Class (" + releasedName_.str() + ") instance released.");
}

}  // namespace kes
