#include "runtime/views/register_views.h"

#include "runtime/views/app/bundle.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/layout/custom_view_wrapper.h"
#include "runtime/views/pages/side_menu.h"
#include "runtime/views/richtext/rich_string.h"
#include "runtime/views/wrappers/button_wrapper.h"
#include "runtime/views/wrappers/image_view_wrapper.h"
#include "runtime/views/wrappers/indicator_wrappers.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/picker_wrappers.h"
#include "runtime/views/wrappers/table_view_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"
#include "runtime/views/wrappers/text_view_wrapper.h"
#include "runtime/views/wrappers/value_controls.h"
#include "runtime/views/wrappers/web_view_wrapper.h"

namespace kes {

void registerViews() {
  auto& registry = ClassRegistry::instance();
  registry.addAll<KesViewWrapper, KesControlWrapper, KesPanelWrapper, KesCustomViewWrapper,
                  KesLabelWrapper, KesButtonWrapper, KesTextInputTraitsWrapper, KesTextFieldWrapper,
                  KesTextViewWrapper, KesImageViewWrapper, KesScrollView, KesWebViewWrapper,
                  KesSwitchWrapper, KesSliderWrapper, KesStepperWrapper, KesSegmentedControlWrapper,
                  KesDatePickerWrapper, KesPickerWrapper, KesProgressWrapper,
                  KesActivityIndicatorWrapper, KesTableView, KexViewWrapper>();
  registry.addAll<KesDrawerController, Bundle, AlertView, iCustomDialog, kes_richstring>();
}

}  // namespace kes
