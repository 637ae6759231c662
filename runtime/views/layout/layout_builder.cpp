#include "runtime/views/layout/layout_builder.h"

#include <cmath>
#include <limits>

#include "platform/ui/controls/text_holder.h"
#include "runtime/core/language/common.h"
#include "runtime/views/base/device.h"
#include "runtime/views/base/font.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/layout/geometry.h"
#include "runtime/views/layout/layout_file.h"
#include "runtime/views/layout/layout_format.h"
#include "runtime/views/pages/page.h"

namespace kes {

namespace {

constexpr float kUnusable = std::numeric_limits<float>::max();
constexpr float kReferenceInches = 3.7f;

// The size of the designer's font, scaled; the face stays what the view has by now.
void scaleFont(ui::View& view, const Dictionary& properties, float scale) {
  auto* text = view.textHolder();
  const auto font = KesFont::fromDesignerMap(properties, "font", scale);
  if (text && font.IsInitialized()) text->setFont(text->font().withSize(font.Size()));
}

}  // namespace

KesLayoutBuilder::State& KesLayoutBuilder::state() {
  static State shared;
  return shared;
}

// A layout's life. The file is read whole and the variant that fits the screen chosen; the
// views are built from their properties, each bound to the owner's variable of its name
// and added to its parent; then they are placed, parents first, since a child is anchored
// to the size that its parent has by now. The designer script comes next and may place
// them all again, larger or smaller. Last, custom views are handed to their objects, which
// so see their final size. A panel that follows its size keeps the layout's data: on each
// change the variant is chosen, the views placed and the script run once more, from the
// same properties. Nothing reads the file again, and nothing writes into the properties.

// --- Loading.

KesLayoutValues KesLayoutBuilder::loadLayout(std::string_view fileName, const Ref<Kes>& owner,
                                             const KesPanelWrapper& parent) {
  std::string name(fileName);
  if (!name.ends_with(layout_format::kExtension)) name += layout_format::kExtension;
  LayoutFile file = readLayout(name);
  layoutData_ = platform::makeShared<KesLayoutData>();
  layoutData_->variants = std::move(file.variants);
  layoutData_->props = std::move(file.props);
  layoutData_->designerScriptName = fileToDesignerScriptClassName(name);

  findBestVariant(layoutData_->variants);
  const int chosenIndex = state().chosenIndex;
  ui::Size room{parent.Width(), parent.Height()};
  if (room.width == 0 || room.height == 0) room = device::screenBounds().size();
  const auto views = build(owner, parent.view());
  place(views, room, Build);
  if (props::flag(*layoutData_->props, "handleResizeEvent"))
    KesObjectWrapper::getMap(parent.view()).set("layoutdata", layoutData_);
  runScripts(layoutData_, static_cast<std::int32_t>(room.width),
             static_cast<std::int32_t>(room.height));
  // The objects may load layouts of their own.
  const auto customViews = std::move(customViewWrappers_);
  const auto data = layoutData_;
  for (const auto& view : customViews) view->AfterDesignerScript();
  return data->variants[static_cast<std::size_t>(chosenIndex)];
}

std::optional<KesLayoutValues> KesLayoutBuilder::resizeLayout(const Ref<Kes>&,
                                                              const KesPanelWrapper& panel) {
  const auto* attached = KesObjectWrapper::peekMap(panel.view());
  layoutData_ = attached ? attached->get("layoutdata").as<KesLayoutData>() : nullptr;
  if (!layoutData_) {
    KesCommon::LogError("ResizeLayout: Layout data not found.");
    return std::nullopt;
  }
  findBestVariant(layoutData_->variants);
  const int chosenIndex = state().chosenIndex;
  const ui::Size room{panel.Width(), panel.Height()};
  place(present(), room, Resize);
  runScripts(layoutData_, static_cast<std::int32_t>(room.width),
             static_cast<std::int32_t>(room.height));
  return layoutData_->variants[static_cast<std::size_t>(chosenIndex)];
}

// --- The variant.

void KesLayoutBuilder::findBestVariant(const std::vector<KesLayoutValues>& variants) {
  auto& s = state();
  const KesLayoutValues device = GetDeviceLayoutValues();
  s.chosenIndex = 0;
  float best = kUnusable;
  for (std::size_t i = 0; i < variants.size(); ++i) {
    const float d = distance(variants[i], device);
    if (s.chosen && !(d < best)) continue;
    s.chosen = variants[i];
    s.chosenIndex = static_cast<int>(i);
    best = d;
  }
}

float KesLayoutBuilder::distance(const KesLayoutValues& variant, const KesLayoutValues& device) {
  auto w = static_cast<float>(variant.Width), h = static_cast<float>(variant.Height);
  const auto dw = static_cast<float>(device.Width), dh = static_cast<float>(device.Height);
  if (w > dw * 1.2f || h > dh * 1.2f) return kUnusable;
  if (w > dw) w += 50;
  if (h > dh) h += 50;
  const bool sameOrientation = (w >= h && dw >= dh) || (w < h && dw < dh);
  return std::abs(std::trunc(w - dw)) + std::abs(std::trunc(h - dh)) +
         (sameOrientation ? 0.0f : 100.0f);
}

// --- The views.

template <class ViewOf>
void KesLayoutBuilder::collect(std::vector<Node>& nodes, std::size_t parent, const ViewOf& viewOf) {
  const auto kids = props::map(*nodes[parent].properties, layout_format::kKids);
  if (!kids) return;
  for (std::size_t i = 0; i < kids->size(); ++i) {
    const auto child = props::map(*kids, std::to_string(i));
    if (!child) continue;
    auto view = viewOf(*child, nodes[parent].view.get());
    if (!view) continue;
    nodes.push_back({std::move(view), child.get(), parent});
    collect(nodes, nodes.size() - 1, viewOf);
  }
}

std::vector<KesLayoutBuilder::Node> KesLayoutBuilder::build(const Ref<Kes>& owner,
                                                            ui::View& parent) {
  const Dictionary& root = *layoutData_->props;
  std::vector<Node> nodes{{Ref<ui::View>(&parent), &root, 0}};
  KesViewWrapper::fromBoxed(nodes[0].view).setColor(props::color(root, "backgroundColor"));
  auto* page = dynamic_cast<KesMainView*>(parent.parent());
  if (const auto controller = page ? page->controller() : nullptr)
    KesPage::buildPage(*controller, root, false);
  collect(nodes, 0, [&](const Dictionary& properties, ui::View* into) {
    return buildView(properties, *into, owner);
  });
  return nodes;
}

std::vector<KesLayoutBuilder::Node> KesLayoutBuilder::present() const {
  std::vector<Node> nodes{{nullptr, layoutData_->props.get(), 0}};
  collect(nodes, 0, [&](const Dictionary& properties, ui::View*) {
    return layoutData_->find(props::text(properties, "name").ToLowerCase());
  });
  return nodes;
}

void KesLayoutBuilder::place(const std::vector<Node>& nodes, ui::Size room, Mode mode) const {
  static const Dictionary nowhere;
  const Dictionary& root = *layoutData_->props;
  const std::string variant =
      std::string(layout_format::kVariant) + std::to_string(state().chosenIndex);
  Room in;
  in.damping = props::number(root, "dumpingRatio");
  if (mode == Scale)
    in.scale = static_cast<float>(state().autoscale);
  else
    in.milliseconds = props::integer(root, "duration");
  for (std::size_t i = 1; i < nodes.size(); ++i) {
    const Node& node = nodes[i];
    if (mode == Build && props::isRoot(*node.properties)) continue;
    if (in.scale != 1.0f) scaleFont(*node.view, *node.properties, in.scale);
    in.size = node.parent == 0 ? room : nodes[node.parent].view->bounds().size();
    const auto geometry = props::map(*node.properties, variant);
    applyGeometry(*node.view, geometry ? *geometry : nowhere, in);
  }
}

Ref<ui::View> KesLayoutBuilder::buildView(const Dictionary& properties, ui::View& parent,
                                          const Ref<Kes>& owner) {
  const auto* type = ClassRegistry::instance().find(props::text(properties, "type"));
  Ref<KesViewWrapper> wrapper;
  if (type) wrapper = Value(type->make()).as<KesViewWrapper>();
  if (!wrapper) return nullptr;
  const Ref<ui::View> view = wrapper->build(nullptr, properties, false);

  const Text name = props::text(properties, "name").ToLowerCase();
  const auto target = owner ? owner->eventsTarget() : nullptr;
  const auto* info = target ? target->classInfo() : nullptr;
  const auto* variable = info ? info->field("_" + name.str()) : nullptr;
  // Reading a variable that holds a wrapper gives a copy, free to be used as the new one.
  const auto declared = variable ? variable->get(*target).as<KesViewWrapper>() : nullptr;
  Value bound;
  if (auto* custom = dynamic_cast<KesCustomViewWrapper*>(wrapper.get())) {
    const Text customType = props::text(properties, "customType");
    if (customType.empty()) throw KesException("CustomView CustomType property was not set.");
    customViewWrappers_.emplace_back(custom);
    const auto* customClass = findCustomViewClass(customType);
    custom->setCustomObject(customClass ? Value(customClass->make()) : Value());
    custom->setProps(props::deepCopy(properties));
    bound = declared ? Value(wrapper) : custom->customObject();
  } else {
    if (declared && typeid(*declared) != typeid(*wrapper)) wrapper = declared;
    bound = wrapper;
  }
  wrapper->setObject(view);
  if (variable && !bound.isNil()) variable->set(*target, bound);
  wrapper->innerInitialize(owner, props::text(properties, "eventName"), true);
  parent.addSubview(view);
  layoutData_->viewsMap[name.str()].view = view;
  return view;
}

const ClassInfo* KesLayoutBuilder::findCustomViewClass(std::string_view customType) {
  return ClassRegistry::instance().find(customType);
}

// --- Designer scripts.

void KesLayoutBuilder::runScripts(const Ref<KesLayoutData>& layout, std::int32_t width,
                                  std::int32_t height) {
  auto& s = state();
  s.pageSize = KesLayoutValues(width, height).DeviceApproximateScreenSize();
  if (s.screenSize == 0) {
    const ui::Rect screen = device::screenBounds();
    s.screenSize = KesLayoutValues(static_cast<std::int32_t>(screen.width),
                                   static_cast<std::int32_t>(screen.height))
                       .DeviceApproximateScreenSize();
  }
  if (s.pageSize > s.screenSize) s.pageSize = s.screenSize;
  const auto* script = ClassRegistry::instance().find(layout->designerScriptName);
  const auto instance = script ? script->make() : nullptr;
  if (!instance) return;
  const Value params[] = {layout, width, height};
  for (const Text& method : {variantToMethod(std::nullopt), variantToMethod(s.chosen)})
    Kes::runDynamicMethod(instance.get(), method, false, params);
}

void KesLayoutBuilder::setScaleRate(float rate) {
  auto& s = state();
  const auto d = static_cast<float>(
      static_cast<float>(s.chosen.value_or(KesLayoutValues()).DeviceApproximateScreenSize()) - 0.3);
  const auto ratio = static_cast<float>(s.pageSize / d);
  if (ratio > 0.95f && ratio < 0.95f) {  // never: the formula holds for every ratio
    s.autoscale = 1;
    return;
  }
  s.autoscale =
      (1 + rate * (s.pageSize / kReferenceInches - 1)) / (1 + rate * (d / kReferenceInches - 1));
}

void KesLayoutBuilder::scaleAll(const Ref<KesLayoutData>& layout, std::int32_t width,
                                std::int32_t height) {
  if (!layout || !layout->props) return;
  KesLayoutBuilder builder;
  builder.layoutData_ = layout;
  builder.place(builder.present(), {static_cast<double>(width), static_cast<double>(height)},
                Scale);
}

Text KesLayoutBuilder::variantToMethod(const std::optional<KesLayoutValues>& variant) {
  if (!variant) return "LS_general:::";
  return formatText("LS_%@x%@:::",
                    {std::to_string(variant->Width), std::to_string(variant->Height)});
}

Text KesLayoutBuilder::fileToDesignerScriptClassName(std::string_view fileName) {
  std::string name = "LS_" + Text(fileName).ToLowerCase().str();
  name.resize(std::max<std::size_t>(3, name.size() - std::min<std::size_t>(name.size(), 4)));
  for (char& c : name) {
    const auto u = static_cast<unsigned char>(c);
    const bool letter = u >= 0x80 || (u >= 'a' && u <= 'z') || (u >= '0' && u <= '9');
    if (!letter && &c >= name.data() + 3) c = '_';
  }
  return name;
}

bool KesLayoutBuilder::isPortrait() {
  const KesLayoutValues device = GetDeviceLayoutValues();
  return device.Height > device.Width;
}

}  // namespace kes
