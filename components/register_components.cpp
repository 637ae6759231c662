#include "components/register_components.h"

#include "components/customlistview.h"
#include "components/itemsv.h"
#include "components/searchview.h"

namespace kes {

void registerComponents() {
  ClassRegistry::instance().addAll<clvitem, kes_customlistview, itemsv, kes_searchview>();
}

}  // namespace kes
