// Date picker and wheel picker. Events, for what the user does only: "_valuechanged"
// and "_itemselected::" (column, row). Conditions as for KesViewWrapper.
#pragma once

#include "platform/ui/controls/pickers.h"
#include "runtime/core/list.h"
#include "runtime/views/base/control_wrapper.h"

namespace kes {

// Ticks are milliseconds since 1970 UTC.
class KesDatePickerWrapper
    : public ViewWrapper<KesDatePickerWrapper, ui::DatePicker, KesControlWrapper> {
 public:
  static constexpr std::string_view kPlatformClass = "UIDatePicker";
  static constexpr std::string_view kName = "KesDatePickerWrapper";
  static constexpr std::int32_t MODE_TIME = 0, MODE_DATE = 1, MODE_DATE_AND_TIME = 2;
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  std::int64_t Ticks() const { return self().ticks(); }
  void setTicks(std::int64_t ticks) { self().setTicks(ticks); }
};

// What a picker shows, kept with its view as "delegate".
class PickerDelegate final : public Object {
 public:
  std::string_view className() const override { return "KesPickerDelegate"; }
  std::vector<KesList> columns;
};

class KesPickerWrapper : public ViewWrapper<KesPickerWrapper, ui::PickerView> {
 public:
  static constexpr std::string_view kPlatformClass = "UIPickerView";
  static constexpr std::string_view kName = "KesPickerWrapper";
  void innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) override;
  Ref<ui::View> build(Ref<ui::View> view, const Dictionary& properties, bool bridge) const override;
  void SetNumberOfColumns(std::int32_t count);
  void SetItems(std::int32_t column, const KesList& items);
  std::int32_t GetSelectedRow(std::int32_t column) const;
  Value GetSelectedItem(std::int32_t column) const;
  void SelectRow(std::int32_t column, std::int32_t row, bool animated);

 private:
  PickerDelegate& delegate() const;
};

}  // namespace kes
