// KesControlWrapper: a view that can be switched off. Base of buttons, fields, switches
// and their kind; conditions as for KesViewWrapper.
#pragma once

#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesControlWrapper : public ViewWrapper<KesControlWrapper, ui::View> {
 public:
  static constexpr std::string_view kPlatformClass = "UIControl";
  static constexpr std::string_view kName = "KesControlWrapper";
  bool accepts(const Value& v) const override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;

  bool Enabled() const { return view().enabled(); }
  void setEnabled(bool enabled) { view().setEnabled(enabled); }
};

}  // namespace kes
