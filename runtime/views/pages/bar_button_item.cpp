#include "runtime/views/pages/bar_button_item.h"

#include "runtime/views/base/image_source.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

// The designer's numbers for what is no system item.
constexpr std::int32_t kNoButton = -3, kImageButton = -2, kTextButton = -1;

}  // namespace

KesBarButtonItemWrapper& KesBarButtonItemWrapper::InitializeSystem(std::int32_t item,
                                                                   const Value& tag) {
  setObject(ui::BarButtonItem::system(item));
  setTag(tag);
  return *this;
}

KesBarButtonItemWrapper& KesBarButtonItemWrapper::InitializeText(const Value& text,
                                                                 const Value& tag) {
  setObject(ui::BarButtonItem::text(textForm(text)));
  setTag(tag);
  return *this;
}

KesBarButtonItemWrapper& KesBarButtonItemWrapper::InitializeBitmap(const KesBitmap& bitmap,
                                                                   const Value& tag) {
  setObject(ui::BarButtonItem::image(imageOf(bitmap)));
  setTag(tag);
  return *this;
}

KesBarButtonItemWrapper& KesBarButtonItemWrapper::InitializeCustom(const KesViewWrapper& view) {
  setObject(ui::BarButtonItem::custom(Ref<ui::View>(&view.view())));
  return *this;
}

std::int32_t KesBarButtonItemWrapper::TintColor() const {
  return UIColorToColor(native()->tint().value_or(ui::Color()));
}

void KesBarButtonItemWrapper::setTintColor(std::int32_t argb) {
  native()->setTint(KesColorToUIColor(argb));
}

Ref<ui::BarButtonItem> KesBarButtonItemWrapper::buildBarButton(const Ref<Dictionary>& properties,
                                                               bool bridge) {
  if (!properties) return nullptr;
  const auto type = props::integer(*properties, "btype");
  if (type == kNoButton) return nullptr;
  const auto font = KesFont::fromDesignerMap(*properties, "font");
  Ref<ui::BarButtonItem> item;
  if (type == kTextButton)
    item = ui::BarButtonItem::text(props::ownText(*properties).str());
  else if (type == kImageButton)
    item = ui::BarButtonItem::image(buildBitmap(props::string(*properties, "image"), bridge));
  else
    item = ui::BarButtonItem::system(type);
  if (font.IsInitialized()) item->setTitleFont(font.font());
  item->setEnabled(props::flag(*properties, "enabled"));
  if (const auto tint = props::buildColor(*properties, "tintColor")) item->setTint(*tint);
  if (!bridge) {
    KesBarButtonItemWrapper::fromBoxed(item).setTag(props::value(*properties, "tag"));
  }
  return item;
}

}  // namespace kes
