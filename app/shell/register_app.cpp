#include "app/shell/register_app.h"
#include "runtime/data/dates/dateutils.h"

#include "app/infocitta/cinfocitta.h"
#include "app/kit/sorttype.h"
#include "app/shell/layout_scripts.h"
#include "app/shell/modules.h"
#include "components/register_components.h"
#include "runtime/data/register_data.h"
#include "runtime/maps/register_maps.h"
#include "runtime/net/register_net.h"
#include "runtime/views/register_views.h"

namespace varlo {

void registerApp() {
  registerData();
  registerNet();
  registerViews();
  registerMaps();
  registerComponents();
  AppModules::registerAll();
  ClassRegistry::instance().addAll<kes_cinfocitta, _sorttype>();
  registerLayoutScripts();
}

}  // namespace varlo
