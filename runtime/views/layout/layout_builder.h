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

  // For designer scripts.
  static void setScaleRate(float rate);
  static void scaleAll(const Ref<KesLayoutData>& layout, std::int32_t width, std::int32_t height);
  static void runScripts(const Ref<KesLayoutData>& layout, std::int32_t width, std::int32_t height);
  static Text variantToMethod(const std::optional<KesLayoutValues>& variant);
  static Text fileToDesignerScriptClassName(std::string_view fileName);
  static double getPageSize() { return state().pageSize; }
  static bool isPortrait();

 private:
  // A view of the layout with its properties. The first node is the panel, which needs no
  // view where nothing is built.
  struct Node {
    Ref<ui::View> view;
    const Dictionary* properties;
    std::size_t parent;  // its number, which is smaller
  };
  // Appends what is below a node, parents first; a view that `viewOf` doesn't give is left
  // out with all that it holds.
  template <class ViewOf>
  static void collect(std::vector<Node>& nodes, std::size_t parent, const ViewOf& viewOf);
  std::vector<Node> build(const Ref<Kes>& owner, ui::View& parent);
  std::vector<Node> present() const;
  Ref<ui::View> buildView(const Dictionary& properties, ui::View& parent, const Ref<Kes>& owner);
  void place(const std::vector<Node>& nodes, ui::Size room, Mode mode) const;

  Ref<KesLayoutData> layoutData_;
  std::vector<Ref<KesCustomViewWrapper>> customViewWrappers_;
};

}  // namespace kes
