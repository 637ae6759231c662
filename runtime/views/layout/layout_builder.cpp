#include "runtime/views/layout/layout_builder.h"

#include <cmath>
#include <limits>

#include "runtime/core/common.h"
#include "runtime/data/files/file.h"
#include "runtime/views/base/device.h"
#include "runtime/views/base/font.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/layout/data_input_stream.h"
#include "runtime/views/layout/layout_format.h"
#include "runtime/views/pages/page.h"

namespace kes {

namespace {

constexpr float kUnusable = std::numeric_limits<float>::max();
constexpr float kReferenceInches = 3.7f;

// What the builder writes into a view's map: the geometry of the variant at hand, and
// what it knows of the surroundings.
constexpr const char* kGeometry[] = {"left", "top", "width", "height", "hanchor", "vanchor"};
constexpr std::size_t kWritten = std::size(kGeometry) + 4;

struct Layout {
  std::vector<KesLayoutValues> variants;
  Ref<Dictionary> props;
};

std::vector<KesLayoutValues> readVariants(KesDataInputStream& in) {
  std::vector<KesLayoutValues> variants;
  const std::int32_t count = in.readInt();
  for (std::int32_t i = 0; i < count && !in.atEnd(); ++i) {
    in.readFloat();  // layout values are normalised
    const std::int32_t width = in.readInt();
    variants.emplace_back(width, in.readInt());
  }
  return variants;
}

Layout readLayout(KesInputStream file) {
  KesDataInputStream in(std::move(file));
  in.readInt();
  in.readAndDiscard(in.readInt());
  const auto table = in.readStringTable();
  Layout layout;
  layout.variants = readVariants(in);
  layout.props = in.readMap(table, kWritten);
  return layout;
}

std::string variantKey(int index) {
  return std::string(layout_format::kVariant) + std::to_string(index);
}

}  // namespace

struct KesLayoutBuilder::Pass {
  Mode mode;
  std::string variant;
  float scale = 1.0f;
  Ref<Kes> owner;
};

KesLayoutBuilder::State& KesLayoutBuilder::state() {
  static State shared;
  return shared;
}

// --- Loading.

KesLayoutValues KesLayoutBuilder::loadLayout(std::string_view fileName, const Ref<Kes>& owner,
                                             const KesPanelWrapper& parent) {
  std::string name(fileName);
  if (!name.ends_with(layout_format::kExtension)) name += layout_format::kExtension;
  layoutData_ = platform::makeShared<KesLayoutData>();
  customViewWrappers_.clear();
  auto file = File().OpenInput(File().DirAssets(), name);
  Layout layout;
  try {
    layout = readLayout(file);
    if (layout.variants.empty()) throw KesException("The layout has no variant");
  } catch (const KesException& e) {
    file.Close();
    KesCommon::LogError(formatText("Layout file %@ is damaged: %@", {name, e.reason()}));
    throw KesException(name, e.reason());
  }
  file.Close();
  layoutData_->variants = std::move(layout.variants);
  findBestVariant(layoutData_->variants);
  layoutData_->props = layout.props;

  double width = parent.Width(), height = parent.Height();
  if (width == 0 || height == 0) {
    const ui::Rect screen = device::screenBounds();
    width = screen.width;
    height = screen.height;
  }
  const int chosenIndex = state().chosenIndex;
  loadLayoutHelper(*layoutData_->props, &parent.view(), true,
                   {Build, variantKey(chosenIndex), 1.0f, owner}, width, height, 0, 0);
  if (props::flag(*layoutData_->props, "handleResizeEvent"))
    KesObjectWrapper::getMap(parent.view()).set("layoutdata", layoutData_);
  layoutData_->designerScriptName = fileToDesignerScriptClassName(name);
  runScripts(layoutData_, static_cast<std::int32_t>(width), static_cast<std::int32_t>(height));
  // The objects may load layouts of their own.
  const auto customViews = std::move(customViewWrappers_);
  const auto data = layoutData_;
  for (const auto& view : customViews) view->AfterDesignerScript();
  return data->variants[static_cast<std::size_t>(chosenIndex)];
}

std::optional<KesLayoutValues> KesLayoutBuilder::resizeLayout(const Ref<Kes>& owner,
                                                              const KesPanelWrapper& panel) {
  const auto* attached = KesObjectWrapper::peekMap(panel.view());
  layoutData_ = attached ? attached->get("layoutdata").as<KesLayoutData>() : nullptr;
  if (!layoutData_) {
    KesCommon::LogError("ResizeLayout: Layout data not found.");
    return std::nullopt;
  }
  findBestVariant(layoutData_->variants);
  const int chosenIndex = state().chosenIndex;
  const double width = panel.Width(), height = panel.Height();
  loadLayoutHelper(*layoutData_->props, &panel.view(), true,
                   {Resize, variantKey(chosenIndex), 1.0f, owner}, width, height, 0, 0);
  runScripts(layoutData_, static_cast<std::int32_t>(width), static_cast<std::int32_t>(height));
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

void KesLayoutBuilder::loadLayoutHelper(Dictionary& properties, ui::View* parent, bool isTop,
                                        const Pass& pass, double parentWidth, double parentHeight,
                                        std::int32_t duration, float dampingRatio) {
  Ref<ui::View> current;
  if (isTop) {
    dampingRatio = props::number(properties, "dumpingRatio");
    duration = pass.mode == Scale ? 0 : props::integer(properties, "duration");
    current = Ref<ui::View>(parent);
    if (pass.mode == Build) {
      KesViewWrapper::fromBoxed(current).setColor(props::color(properties, "backgroundColor"));
      auto* page = dynamic_cast<KesMainView*>(parent->parent());
      if (const auto controller = page ? page->controller() : nullptr)
        KesPage::buildPage(*controller, properties, false);
    }
  } else {
    const auto geometry = props::map(properties, pass.variant);
    for (const char* key : kGeometry)
      properties.put(key, geometry ? props::value(*geometry, key) : Value());
    properties.put("pw", static_cast<float>(parentWidth));
    properties.put("ph", static_cast<float>(parentHeight));
    properties.put("dumpingRatio", dampingRatio);
    properties.put("duration", duration);
    const Text name = props::text(properties, "name").ToLowerCase();
    if (pass.mode == Build) {
      current = buildView(properties, name, *parent, pass.owner);
    } else {
      current = layoutData_->find(name);
      if (current) buildResize(*current, properties, pass.scale);
    }
    if (!current) return;
  }
  const auto kids = props::map(properties, layout_format::kKids);
  if (!kids) return;
  if (!isTop) {
    parentWidth = current->bounds().width;
    parentHeight = current->bounds().height;
  }
  for (std::size_t i = 0; i < kids->size(); ++i)
    if (const auto child = props::map(*kids, std::to_string(i)))
      loadLayoutHelper(*child, current.get(), false, pass, parentWidth, parentHeight, duration,
                       dampingRatio);
}

Ref<ui::View> KesLayoutBuilder::buildView(Dictionary& properties, const Text& name,
                                          ui::View& parent, const Ref<Kes>& owner) {
  const auto* type = ClassRegistry::instance().find(props::text(properties, "type"));
  Ref<KesViewWrapper> wrapper;
  if (type) wrapper = Value(type->make()).as<KesViewWrapper>();
  if (!wrapper) return nullptr;
  const Ref<ui::View> view = wrapper->build(nullptr, properties, false);

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

void KesLayoutBuilder::buildResize(ui::View& view, Dictionary& properties, float scale) {
  float w = props::number(properties, "width") * scale;
  float h = props::number(properties, "height") * scale;
  float l = props::number(properties, "left") * scale;
  float t = props::number(properties, "top") * scale;
  const auto pw = static_cast<float>(props::integer(properties, "pw"));
  const auto ph = static_cast<float>(props::integer(properties, "ph"));
  const auto hanchor = props::integer(properties, "hanchor");
  const auto vanchor = props::integer(properties, "vanchor");
  if (hanchor == 1) l = pw - l - w;
  if (hanchor == 2) w = pw - w - l;
  if (vanchor == 1) t = ph - t - h;
  if (vanchor == 2) h = ph - h - t;
  if (scale != 1.0f) {
    const auto font = textFont(view);
    const auto scaled = KesFont::fromDesignerMap(properties, "font", scale, false);
    if (font && scaled.IsInitialized()) setTextFont(view, font->withSize(scaled.Size()));
  }
  const auto finite = [](float v) { return std::isfinite(v) ? v : 0.0f; };
  SetLayoutAnimated(view, props::integer(properties, "duration"),
                    props::number(properties, "dumpingRatio"), finite(l), finite(t), finite(w),
                    finite(h));
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
  const auto& s = state();
  builder.loadLayoutHelper(
      *layout->props, nullptr, true,
      {Scale, variantKey(s.chosenIndex), static_cast<float>(s.autoscale), nullptr},
      static_cast<float>(width), static_cast<float>(height), 0, 0);
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
