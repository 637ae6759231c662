#include "runtime/core/language/module.h"

#include "platform/base/log.h"

namespace kes {

Kes& Component::events() const {
  if (!bi_) throw KesException(formatText("Object was not initialized (%@)", {className()}));
  return *bi_;
}

void KesClass::initializeClassModule() {
  if (!bi_) {
    bi_ = createBI();
    bi_->init(*this);
    releasedName_ = Text(className());
  }
  _class_globals();
}

Text KesClass::description() const { return KesCommon::TypeToString(*this, true); }

KesClass::~KesClass() {
  if (bi_) platform::log("Class (" + releasedName_.str() + ") instance released.");
}

}  // namespace kes
