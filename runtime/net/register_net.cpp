#include "runtime/net/register_net.h"

#include "runtime/net/httpjob.h"

namespace kes {

void registerNet() {
  ClassRegistry::instance()
      .addAll<MutableUrlRequest, _multipartfiledata, kes_httpjob, kes_httputils2service>();
}

}  // namespace kes
