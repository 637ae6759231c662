#include "components/register_components.h"

#include "components/customlistview.h"

namespace kes {

void registerComponents() { ClassRegistry::instance().addAll<clvitem, kes_customlistview>(); }

}  // namespace kes
