// kes_customlistview: the scrolling list of nearly every screen. One panel an item, of
// any height, with a gap between items through which the divider colour shows.
//
// A custom view: a layout places it with its designer properties and the loader makes it
// through _initialize and _designercreateview. All items stay as views; the class is a
// model of offsets over a scroll view. Item sizes and offsets are whole points along the
// list's axis; an item owns the gap below it. Raises, on its owner, under its prefix:
// "_ItemClick" (index, value), "_VisibleRangeChanged" (first, last), "_ScrollChanged"
// (offset), "_ReachEnd". A bad index throws the list's range exception. Main thread.
#pragma once

#include <optional>

#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/wrappers/kex_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace kes {

// One item of the list.
class clvitem final : public Object {
 public:
  static void describe(ClassBuilder<clvitem>& c);

  KexViewWrapper Panel;  // the outer panel; its subview 0 is the application's
  std::int32_t Size = 0;
  Value value;
  std::int32_t Color = 0;  // of Panel at rest
  bool TextItem = false;
  std::int32_t Offset = 0;
};

class kes_customlistview final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_customlistview>& c);
  void _class_globals() override;

  void _initialize(Ref<Kes> owner, Value callback, Text eventName);
  void _designercreateview(KesPanelWrapper base, KesLabelWrapper label, KesMap properties);

  void _add(const KexViewWrapper& panel, const Value& value);
  void _addtextitem(const Text& text, const Value& value);
  void _addtextitemcs(const KesCSBuilder& text, const Value& value);
  void _insertat(std::int32_t index, const KexViewWrapper& panel, const Value& value);
  void _insertattextitem(std::int32_t index, const Value& text, const Value& value, bool isRich);
  void _removeat(std::int32_t index);
  void _replaceat(std::int32_t index, const KexViewWrapper& panel, std::int32_t itemSize,
                  const Value& value);
  void _resizeitem(std::int32_t index, std::int32_t itemSize);
  void _clear();
  // A quiet line in place of items, until there is one or the list is cleared. For a list
  // that came back empty; one that is still on its way says nothing.
  void showEmptyText(const Text& text);

  std::int32_t _getsize() const { return static_cast<std::int32_t>(items_.size()); }
  Value _getvalue(std::int32_t index) const { return item(index).value; }
  Ref<clvitem> _getitem(std::int32_t index) const { return Ref<clvitem>(&item(index)); }
  KexViewWrapper _getpanel(std::int32_t index) const { return item(index).Panel.GetView(0); }
  KesPanelWrapper _getbase() const { return _mbase; }
  KexViewWrapper _asview() const;
  std::int32_t _getitemfromview(const KexViewWrapper& view) const;
  std::int32_t _getfirstvisibleindex() const;
  std::int32_t _getlastvisibleindex() const;
  std::int32_t _finditemoffset(std::int32_t index) const { return item(index).Offset; }
  std::int32_t _findindexfromoffset(std::int32_t offset) const;
  void _jumptoitem(std::int32_t index);
  void _scrolltoitem(std::int32_t index) { _jumptoitem(index); }

  // What the views raise.
  void _base_resize(double width, double height);
  void _sv_scrollchanged(double x, double y);
  void _panel_click();

  KesPanelWrapper _mbase;
  KexViewWrapper _sv;
  double _dividersize = 0;
  Text _eventname;
  std::int32_t _defaulttextcolor = 0;
  std::int32_t _defaulttextbackgroundcolor = 0;
  std::int32_t _animationduration = 300;  // milliseconds
  std::int64_t _lastreachendevent = 0;    // ticks
  std::int32_t _pressedcolor = 0;
  KesLabelWrapper _designerlabel;
  bool _horizontal = false;
  std::int32_t _firstvisibleindex = -1;
  std::int32_t _lastvisibleindex = 0x7FFFFFFF;
  bool _monitorvisiblerange = false;
  bool _firescrollchanged = false;

 private:
  Value callback() const { return callback_.lock(); }
  bool hears(const char* suffix, int parameters) const;
  clvitem& item(std::int32_t index) const;
  void takeEmptyTextAway();
  // `former` is the size of the item that is replaced.
  void insertAtImpl(std::int32_t index, const KexViewWrapper& panel, std::int32_t itemSize,
                    const Value& value, std::optional<std::int32_t> former);
  void setItemOffset(clvitem& item, std::int32_t offset);
  void scrollHandler();
  void updateVisibleRange();
  Resumable<> panelClickHandler(KexViewWrapper panel);

  // Along the list's axis, whichever it is.
  double contentSize() const;
  void setContentSize(double size);
  double scrollOffset() const;
  double visibleSize() const;
  void place(const clvitem& item, std::int32_t duration, double offset, double size) const;

  // Known weakly, since it holds the list as a rule.
  WeakRef<Shared> callback_;
  std::vector<Ref<clvitem>> items_;
  KesLabelWrapper emptyLabel_;  // while there is nothing else to see
};

}  // namespace kes
