// A list on a page, 300 x 200 points, with an owner that notes down its events.
#pragma once

#include "components/customlistview.h"
#include "components/register_components.h"
#include "runtime/views/base/font.h"
#include "tests/support/failures.h"
#include "tests/support/runtime_phone.h"

namespace kes {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::thrownBy;

constexpr double kListWidth = 300, kListHeight = 200;
constexpr std::int32_t kDivider = 2;

// Listens to everything that a list under the prefix "Lst" tells.
class Listener final : public EventNotes {
 public:
  static void describe(ClassBuilder<Listener>& c) {
    c.name("test_listener");
    c.sub<&Listener::itemClick>("lst_itemclick");
    c.sub<&Listener::note<"range", int, int>>("lst_visiblerangechanged");
    c.sub<&Listener::note<"scroll", int>>("lst_scrollchanged");
    c.sub<&Listener::note<"end">>("lst_reachend");
  }
  void itemClick(int index, Value value) {
    note<"click">(index, value);
    if (onItemClick) onItemClick();
  }
  std::function<void()> onItemClick;
};

// Has none of these subs.
class Deaf final : public EventNotes {
 public:
  static void describe(ClassBuilder<Deaf>& c) { c.name("test_deaf"); }
};

class ListTest : public testing::Test {
 protected:
  ListTest() {
    registerComponents();
    ClassRegistry::instance().addAll<Listener, Deaf>();
    listener = make<Listener>(0);
    page = phone.showPage(listener->bi(), "page");
    list = newList(listener, "Vertical");
  }

  Ref<kes_customlistview> newList(const Ref<Object>& owner, const char* orientation) {
    auto base = fresh<KesPanelWrapper>();
    base.setColor(KesColors::Yellow);
    page.RootPanel().RemoveAllViews();
    page.RootPanel().AddView(base, 0, 0, kListWidth, kListHeight);
    auto label = fresh<KesLabelWrapper>();
    label.setFont(KesFont::CreateNew(20));
    label.setTextColor(KesColors::Blue);
    label.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
    KesMap properties;
    properties.Initialize();
    properties.Put("ListOrientation", orientation);
    properties.Put("DividerColor", KesColors::Gray);
    properties.Put("DividerHeight", kDivider);
    properties.Put("PressedColor", KesColors::Red);
    properties.Put("InsertAnimationDuration", 300);
    auto made = make<kes_customlistview>(listener->bi(), owner, "Lst");
    made->_designercreateview(base, label, properties);
    phone.pump.drain();
    return made;
  }

  KexViewWrapper panelOf(std::int32_t size, std::int32_t color = KesColors::Green) {
    KexViewWrapper panel = KesXUI::CreatePanel(list->bi(), "");
    panel.setWidth(size);
    panel.setHeight(size);
    panel.setColor(color);
    return panel;
  }
  void add(std::int32_t size, const Value& value = {}) { list->_add(panelOf(size), value); }
  void addAll(std::initializer_list<std::int32_t> sizes) {
    for (const auto size : sizes) add(size, list->_getsize());
  }

  std::vector<int> offsets() const {
    std::vector<int> all;
    all.reserve(static_cast<std::size_t>(list->_getsize()));
    for (std::int32_t i = 0; i < list->_getsize(); ++i) all.push_back(list->_finditemoffset(i));
    return all;
  }
  std::vector<int> tags() const {
    std::vector<int> all;
    all.reserve(static_cast<std::size_t>(list->_getsize()));
    for (std::int32_t i = 0; i < list->_getsize(); ++i)
      all.push_back(static_cast<int>(list->_getitem(i)->Panel.Tag().asInt64()));
    return all;
  }
  // Where the items' panels are seen at this moment, along a vertical list.
  ui::Rect seen(std::int32_t index) const { return view(index).presented().frame(); }
  ui::View& view(std::int32_t index) const { return list->_getitem(index)->Panel.view(); }
  double contentHeight() const { return list->_sv.ScrollViewContentHeight(); }
  void scrollTo(double y) { list->_sv.setScrollViewOffsetY(y); }

  Trace takeTrace() { return std::exchange(listener->trace, {}); }
  Trace happened() { return phone.heardBy(*listener); }

  RuntimePhone phone;
  Ref<Listener> listener;
  KesPage page;
  Ref<kes_customlistview> list;
};

}  // namespace kes
