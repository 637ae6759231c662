// KesLayoutBuilder: reads a layout file, picks the variant that fits the screen best,
// makes the views, binds them to the owner's variables and runs the layout's script.
//
// One builder for each load or resize. The chosen variant and the scale are shared by
// all layouts of the process and kept between loads. Main thread, points. Throws what
// opening the file throws, "Unknown type: %d" and its like for a damaged file,
// "CustomView CustomType property was not set.", and what custom views throw.
#pragma once

#include <optional>

#include "runtime/views/layout/custom_view_wrapper.h"
#include "runtime/views/layout/layout_data.h"

namespace kes {

class KesLayoutBuilder {
 public:
  enum Mode { Build = 1, Resize = 2, Scale = 3 };

  // What all layouts share.
  struct State {
    std::optional<KesLayoutValues> chosen;
    int chosenIndex = 0;
    double pageSize = 0, screenSize = 0, autoscale = 0;  // inches, inches, factor
  };
  static State& state();

  // From the assets folder; ".kil" may be left out.
  KesLayoutValues loadLayout(std::string_view fileName, const Ref<Kes>& owner,
                             const KesPanelWrapper& parent);
  // Lays the panel's layout out again for its present size; nothing without a layout.
  std::optional<KesLayoutValues> resizeLayout(const Ref<Kes>& owner, const KesPanelWrapper& panel);

  static void findBestVariant(const std::vector<KesLayoutValues>& variants);
  // How badly a variant fits a device; the largest float for one that is unusable.
  static float distance(const KesLayoutValues& variant, const KesLayoutValues& device);
  static const ClassInfo* findCustomViewClass(std::string_view customType);
  // Left, top, width, height and anchors of the view's map, and with a scale the font.
  static void buildResize(ui::View& view, Dictionary& properties, float scale);

  // For designer scripts.
  static void setScaleRate(float rate);
  static void scaleAll(const Ref<KesLayoutData>& layout, std::int32_t width, std::int32_t height);
  static void runScripts(const Ref<KesLayoutData>& layout, std::int32_t width, std::int32_t height);
  static Text variantToMethod(const std::optional<KesLayoutValues>& variant);
  static Text fileToDesignerScriptClassName(std::string_view fileName);
  static double getPageSize() { return state().pageSize; }
  static bool isPortrait();

 private:
  struct Pass;
  void loadLayoutHelper(Dictionary& properties, ui::View* parent, bool isTop, const Pass& pass,
                        double parentWidth, double parentHeight, std::int32_t duration,
                        float dampingRatio);
  Ref<ui::View> buildView(Dictionary& properties, const Text& name, ui::View& parent,
                          const Ref<Kes>& owner);

  Ref<KesLayoutData> layoutData_;
  std::vector<Ref<KesCustomViewWrapper>> customViewWrappers_;
};

}  // namespace kes
