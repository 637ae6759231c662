// kes_searchview: a text field above a list. Typing narrows the list to the items that
// hold the text, the match in red; a tap selects an item.
//
// A custom view: a layout places it and the loader makes it through _initialize and
// _designercreateview. The field and the list stand beside the base in its parent and go
// with it; the owner and the base are known weakly. Items are read when they are given.
// Raises, on its owner, under its prefix: "_ItemClick" (the item's value). Lengths are
// points. Main thread; nothing here throws but what a list of items does.
#pragma once

#include "components/itemsv.h"
#include "runtime/core/language/module.h"
#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/panel_wrapper.h"
#include "runtime/views/wrappers/table_view_wrapper.h"
#include "runtime/views/wrappers/text_field_wrapper.h"

namespace kes {

class kes_searchview final : public KesClass {
 public:
  static void describe(ClassBuilder<kes_searchview>& c);
  void _class_globals() override;

  void _initialize(Ref<Kes> owner, Value callback, Text eventName);
  void _designercreateview(KesPanelWrapper base, KesLabelWrapper label, KesMap properties);

  void _sethint(const Text& text) { _et.setHintText(text); }
  // The items to search, itemsv each, in the order in which they are shown.
  void _setitems(const KesList& items);
  KesPanelWrapper _getbase() const;
  // How much of the screen the keyboard covers; 0 when it is gone.
  void _keyboardstate(double height);

  // What the views raise.
  void _base_resize(double width, double height);
  void _et_textchanged(const Text& former, const Text& now);
  void _lv_selectedchanged(std::int32_t section, std::int32_t row);

  // Adds the row of one item, if the item holds the text.
  void _additemtolist(const Ref<itemsv>& item, const Text& text);
  // Adds the rows of many items, the match coloured where there is one.
  void _additemstolist(const KesList& items, const Text& search);

  // The former way to search, by an index that the owner prepared: an array of a map from
  // prefix to items and one from any piece of text to items.
  void _setindex(const Value& index);
  void _et_textchangedold(const Text& former, const Text& now);
  void _filllist(const Text& text);

  KesMap _prefixlist, _substringlist;
  KesTextFieldWrapper _et;
  KesTableView _lv;
  std::int32_t _min_limit = 2;  // shorter texts are not looked up in the index
  std::int32_t _max_limit = 4;  // the index's longest key
  Text _meventname;
  KesList _allitems;
  double _keyboardheight = 0;

 private:
  // An item beside its text in small letters, by which it is found.
  struct Entry {
    Ref<itemsv> item;
    Text lowered;
  };
  using Entries = std::vector<Entry>;
  static Entries entriesOf(const KesList& items);
  void showEntries(std::shared_ptr<const Entries> shown, const Text& search);

  WeakRef<Shared> _mcallback;
  WeakRef<ui::View> _mbase;
  // Shared with the rows on show, which are filled when they are seen.
  std::shared_ptr<const Entries> entries_;
};

}  // namespace kes
