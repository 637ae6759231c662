// KesBarButtonItemWrapper: a button of a page's navigation bar or toolbar. A press raises
// "_barbuttonclick:" with its Tag on the page that shows it. A plain copyable member;
// main thread. Throws "Object was not initialized (%@)" before one of the Initialize
// operations.
#pragma once

#include "platform/ui/pages/bar_item.h"
#include "runtime/core/kes.h"
#include "runtime/views/base/font.h"
#include "runtime/views/base/view_wrapper.h"

namespace kes {

class KesBitmap;

class KesBarButtonItemWrapper final
    : public TypedWrapper<KesBarButtonItemWrapper, ui::BarButtonItem> {
 public:
  static constexpr std::string_view kPlatformClass = "UIBarButtonItem";
  std::string_view className() const override { return "KesBarButtonItemWrapper"; }

  static constexpr std::int32_t ITEM_DONE = 0, ITEM_CANCEL = 1, ITEM_EDIT = 2, ITEM_SAVE = 3,
                                ITEM_ADD = 4, ITEM_FLEXIBLE_SPACE = 5, ITEM_COMPOSE = 7,
                                ITEM_REPLY = 8, ITEM_ACTION = 9, ITEM_ORGANIZE = 10,
                                ITEM_BOOKMARKS = 11, ITEM_SEARCH = 12, ITEM_REFRESH = 13,
                                ITEM_STOP = 14, ITEM_CAMERA = 15, ITEM_TRASH = 16, ITEM_PLAY = 17,
                                ITEM_PAUSE = 18, ITEM_REWIND = 19, ITEM_FASTFORWARD = 20,
                                ITEM_UNDO = 21, ITEM_REDO = 22;

  KesBarButtonItemWrapper& InitializeSystem(std::int32_t item, const Value& tag);
  KesBarButtonItemWrapper& InitializeText(const Value& text, const Value& tag);
  KesBarButtonItemWrapper& InitializeBitmap(const KesBitmap& bitmap, const Value& tag);
  KesBarButtonItemWrapper& InitializeCustom(const KesViewWrapper& view);

  bool Enabled() const { return native()->enabled(); }
  void setEnabled(bool enabled) { native()->setEnabled(enabled); }
  std::int32_t TintColor() const;
  void setTintColor(std::int32_t argb);
  void SetFont(const KesFont& font) { native()->setTitleFont(font.font()); }
  // For assistive technology, where the item shows no text of its own.
  void setAccessibleName(std::string_view name) { native()->setAccessibleName(std::string(name)); }

  // A layout's "topRight0" and its like: nothing when there is no button.
  static Ref<ui::BarButtonItem> buildBarButton(const Ref<Dictionary>& properties, bool bridge);
};

}  // namespace kes
