// KesLayoutData: one loaded layout, as designer scripts and later resizes see it.
//
// Shared by the load and, when the layout follows its panel's size, by the panel. Knows
// its views weakly. Main thread.
#pragma once

#include <unordered_map>
#include <vector>

#include "runtime/views/base/view_wrapper.h"
#include "runtime/views/layout/layout_values.h"

namespace kes {

struct KesViewData {
  WeakRef<ui::View> view;
};

class KesLayoutData final : public Object {
 public:
  std::string_view className() const override { return "KesLayoutData"; }

  std::vector<KesLayoutValues> variants;
  Ref<Dictionary> props;                                  // the root map
  std::unordered_map<std::string, KesViewData> viewsMap;  // by lower-case designer name
  Text designerScriptName;

  Ref<ui::View> find(std::string_view name) const;  // null when it has gone
  // The wrapper is not initialised when there is no such view.
  KesViewWrapper get(std::string_view name) const;
  void setText(std::string_view name, const Value& text);
  void setTextSize(std::string_view name, double size);
  double getTextSize(std::string_view name) const;
};

}  // namespace kes
