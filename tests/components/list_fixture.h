// A list on a page, 300 x 200 points, with an owner that notes down its events.
#pragma once

#include <gmock/gmock.h>

#include "components/customlistview.h"
#include "components/register_components.h"
#include "runtime/data/register_data.h"
#include "runtime/views/app/services.h"
#include "runtime/views/base/font.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/register_views.h"
#include "tests/support/headless_phone.h"

namespace kes {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsTrue;
using Trace = std::vector<std::string>;

constexpr double kListWidth = 300, kListHeight = 200;
constexpr std::int32_t kDivider = 2;

// Listens to everything that a list under the prefix "Lst" tells.
class Listener final : public KesClass {
 public:
  static void describe(ClassBuilder<Listener>& c) {
    c.name("test_listener");
    c.sub<&Listener::itemClick>("lst_itemclick");
    c.sub<&Listener::visibleRangeChanged>("lst_visiblerangechanged");
    c.sub<&Listener::scrollChanged>("lst_scrollchanged");
    c.sub<&Listener::reachEnd>("lst_reachend");
  }
  void _initialize() { initializeClassModule(); }

  Trace trace;
  std::function<void()> onItemClick;

 private:
  void itemClick(int index, Value value) {
    trace.push_back("click " + std::to_string(index) + " " + value.description().str());
    if (onItemClick) onItemClick();
  }
  void visibleRangeChanged(int first, int last) {
    trace.push_back("range " + std::to_string(first) + ".." + std::to_string(last));
  }
  void scrollChanged(int offset) { trace.push_back("scroll " + std::to_string(offset)); }
  void reachEnd() { trace.push_back("end"); }
};

// Has none of these subs.
class Deaf final : public KesClass {
 public:
  static void describe(ClassBuilder<Deaf>& c) { c.name("test_deaf"); }
  void _initialize() { initializeClassModule(); }
};

class ListTest : public testing::Test {
 protected:
  ListTest() {
    registerData();
    registerViews();
    lendServices();
    registerComponents();
    ClassRegistry::instance().addAll<Listener, Deaf>();
    listener = owner<Listener>();
    window->makeKey();
    window->show();
    page.Initialize(listener->bi(), "page");
    window->setRootViewController(page.native());
    phone.pump.drain();
    list = newList(listener, "Vertical");
  }

  template <class T>
  static Ref<T> owner() {
    auto made = make<T>();
    made->_initialize();
    return made;
  }

  Ref<kes_customlistview> newList(const Ref<Object>& owner, const char* orientation) {
    KesPanelWrapper base;
    base.Initialize(nullptr, "");
    base.setColor(KesColors::Yellow);
    page.RootPanel().RemoveAllViews();
    page.RootPanel().AddView(base, 0, 0, kListWidth, kListHeight);
    KesLabelWrapper label;
    label.Initialize(nullptr, "");
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

  testing_support::HeadlessPhone phone;
  ui::Ref<ui::Window> window = ui::makeShared<ui::Window>(phone.app.screenBounds());
  Ref<Listener> listener;
  KesPage page;
  Ref<kes_customlistview> list;
};

}  // namespace kes
