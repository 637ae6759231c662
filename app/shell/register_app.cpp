#include "app/shell/register_app.h"

#include "app/infocitta/cinfocitta.h"
#include "app/infocitta/infocitta.h"
#include "app/infocitta/infocitta_entity.h"
#include "app/shell/layout_scripts.h"
#include "app/shell/main.h"
#include "components/register_components.h"
#include "runtime/data/register_data.h"
#include "runtime/net/register_net.h"
#include "runtime/views/register_views.h"

namespace varlo {

void registerApp() {
  registerData();
  registerNet();
  registerViews();
  registerComponents();
  ClassRegistry::instance().addAll<kes_main, kes_infocitta, kes_infocitta_entity, kes_cinfocitta>();
  registerLayoutScripts();
}

}  // namespace varlo
