#include "runtime/views/wrappers/picker_wrappers.h"

#include <algorithm>

#include "runtime/views/base/properties.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {
constexpr int kSampleRows = 10, kMostColumns = 16;
}

void KesDatePickerWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::DatePicker& picker = self();
  if (hasMethod(picker, "_valuechanged"))
    picker.onChange = [&picker](platform::Ticks) { raiseUIEvent(picker, "_valuechanged", {}); };
}

Ref<ui::View> KesDatePickerWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                          bool bridge) const {
  auto picker = ensure(view);
  picker->setMode(
      static_cast<ui::DatePicker::Mode>(std::clamp(props::integer(properties, "mode"), 0, 3)));
  picker->setMinuteInterval(std::clamp(props::integer(properties, "minuteInterval"), 1, 30));
  return KesControlWrapper::build(picker, properties, bridge);
}

void KesPickerWrapper::innerInitialize(const Ref<Kes>& bi, const Text& eventName, bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  delegate();
  ui::PickerView& picker = self();
  if (hasMethod(picker, "_itemselected::"))
    picker.onChange = [&picker](int column, int row) {
      raiseUIEvent(picker, "_itemselected::",
                   {static_cast<std::int32_t>(column), static_cast<std::int32_t>(row)});
    };
}

Ref<ui::View> KesPickerWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                      bool bridge) const {
  auto picker = ensure(view);
  std::vector<Value> rows;
  for (int i = 1; i <= kSampleRows; ++i) rows.emplace_back("Item #" + std::to_string(i));
  fromBoxed(picker).SetItems(0, KesList::of(std::move(rows)));
  return KesViewWrapper::build(picker, properties, bridge);
}

PickerDelegate& KesPickerWrapper::delegate() const {
  auto& map = getMap(self());
  auto delegate = map.get("delegate").as<PickerDelegate>();
  if (!delegate) {
    delegate = platform::makeShared<PickerDelegate>();
    map.set("delegate", delegate);
  }
  delegate->columns.resize(static_cast<std::size_t>(self().columns()));
  return *delegate;
}

void KesPickerWrapper::SetNumberOfColumns(std::int32_t count) {
  self().setColumns(std::clamp(count, 1, kMostColumns));
}

void KesPickerWrapper::SetItems(std::int32_t column, const KesList& items) {
  std::vector<std::string> texts;
  for (const Value& item : items) texts.push_back(textForm(item));
  auto& columns = delegate().columns;
  columns.at(static_cast<std::size_t>(column)) = items;
  self().setItems(column, std::move(texts));
}

std::int32_t KesPickerWrapper::GetSelectedRow(std::int32_t column) const {
  return self().selected(column);
}

Value KesPickerWrapper::GetSelectedItem(std::int32_t column) const {
  const auto& items = delegate().columns.at(static_cast<std::size_t>(column));
  return items.Get(GetSelectedRow(column));
}

void KesPickerWrapper::SelectRow(std::int32_t column, std::int32_t row, bool) {
  self().setSelected(column, row);
}

}  // namespace kes
