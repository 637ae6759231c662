#include "components/searchview.h"

#include <algorithm>

#include "runtime/core/language/common.h"
#include "runtime/views/base/device.h"
#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/richtext/rich_string.h"

namespace kes {

namespace {

constexpr double kFieldHeight = 60;

double fieldHeight() { return device::textHeight(KesCommon::DipToCurrent(kFieldHeight)); }

// Where small letters take more room than the large ones did, the place found may lie
// beyond the item's own text.
struct Match {
  Match(const Text& own, std::int32_t found, std::int32_t length)
      : begin(std::min(found, own.Length())), end(std::min(found + length, own.Length())) {}
  std::int32_t begin, end;
};

KesCSBuilder withMatchInRed(const Text& own, const Match& match) {
  KesCSBuilder rich;
  rich.Initialize().Append(own.SubString2(0, match.begin)).Color(KesColors::Red);
  rich.Append(own.SubString2(match.begin, match.end)).Pop().Append(own.SubString(match.end));
  return rich;
}

}  // namespace

void kes_searchview::describe(ClassBuilder<kes_searchview>& c) {
  c.name("kes_searchview");
  c.sub<&kes_searchview::_initialize>("initialize");
  c.sub<&kes_searchview::_designercreateview>("designercreateview");
  c.sub<&kes_searchview::_base_resize>("base_resize");
  c.sub<&kes_searchview::_et_textchanged>("et_textchanged");
  c.sub<&kes_searchview::_et_textchangedold>("et_textchangedold");
  c.sub<&kes_searchview::_lv_selectedchanged>("lv_selectedchanged");
  c.sub<&kes_searchview::_keyboardstate>("keyboardstate");
  c.sub<&kes_searchview::_sethint>("sethint");
  c.sub<&kes_searchview::_setitems>("setitems");
  c.sub<&kes_searchview::_setindex>("setindex");
  c.sub<&kes_searchview::_getbase>("getbase");
}

void kes_searchview::_class_globals() {
  _prefixlist = _substringlist = KesMap();
  _et = KesTextFieldWrapper();
  _lv = KesTableView();
  _min_limit = 2;
  _max_limit = 4;
  _meventname = "";
  _allitems.Initialize();
  entries_ = std::make_shared<Entries>();
  _keyboardheight = 0;
}

void kes_searchview::_initialize(Ref<Kes>, Value callback, Text eventName) {
  initializeClassModule();
  _et.Initialize(bi(), "et");
  _et.setShowClearButton(true);
  _lv.Initialize(bi(), "lv", false);
  _lv.setVisible(false);
  _prefixlist.Initialize();
  _substringlist.Initialize();
  _mcallback = WeakRef<Shared>(callback.object());
  _meventname = std::move(eventName);
}

void kes_searchview::_designercreateview(KesPanelWrapper base, KesLabelWrapper label, KesMap) {
  _mbase = WeakRef<ui::View>(base.native());
  base.setUserInteractionEnabled(false);
  _et.setFont(label.Font());
  _et.setTextColor(label.TextColor());
  _et.setBorderStyle(KesTextFieldWrapper::STYLE_ROUNDED);
  auto parent = KesPanelWrapper::fromBoxed(base.Parent().object());
  parent.AddView(_et, base.Left(), base.Top(), base.Width(), fieldHeight());
  parent.AddView(_lv, base.Left(), base.Top() + _et.Height(), base.Width(), 0);
  _base_resize(base.Width(), base.Height());
  _et_textchanged("", "");
}

KesPanelWrapper kes_searchview::_getbase() const {
  KesPanelWrapper base;
  base.setObject(_mbase.lock());
  return base;
}

// --- Where the field and the list are.

void kes_searchview::_base_resize(double width, double height) {
  const KesPanelWrapper base = _getbase();
  if (!base.IsInitialized()) return;
  const double field = fieldHeight();
  double bottom = height;
  if (_keyboardheight > 0)
    bottom = std::min(bottom, base.CalcRelativeKeyboardHeight(_keyboardheight));
  _et.SetLayoutAnimated(0, 1, base.Left(), base.Top(), width, field);
  _lv.SetLayoutAnimated(0, 1, base.Left(), base.Top() + field, width,
                        std::max(0.0, bottom - field));
}

void kes_searchview::_keyboardstate(double height) {
  _keyboardheight = height;
  const KesPanelWrapper base = _getbase();
  if (base.IsInitialized()) _base_resize(base.Width(), base.Height());
}

// --- Searching.

kes_searchview::Entries kes_searchview::entriesOf(const KesList& items) {
  Entries entries;
  entries.reserve(static_cast<std::size_t>(items.Size()));
  for (const Value& v : items)
    if (auto item = v.as<itemsv>()) {
      Text lowered = item->text.ToLowerCase();
      entries.push_back({std::move(item), std::move(lowered)});
    }
  return entries;
}

void kes_searchview::_setitems(const KesList& items) {
  _allitems = items;
  entries_ = std::make_shared<Entries>(entriesOf(items));
  showEntries(entries_, "");
}

// A key costs a walk over the texts and the rows that can be seen: the others are written
// down by number and get their rich text when somebody scrolls to them.
void kes_searchview::_et_textchanged(const Text&, const Text& now) {
  if (!_lv.IsInitialized()) return;
  _lv.Clear();
  if (now.empty()) return;
  if (!_lv.Visible()) _lv.setVisible(true);
  const Text search = now.ToLowerCase();
  struct Found {
    std::uint32_t entry, byte;
  };
  std::vector<Found> found;
  for (std::uint32_t i = 0; i < entries_->size(); ++i)
    if (const auto byte = (*entries_)[i].lowered.view().find(search);
        byte != std::string_view::npos)
      found.push_back({i, static_cast<std::uint32_t>(byte)});
  const auto count = static_cast<std::int32_t>(found.size());
  _lv.AddSingleLines(count, [entries = entries_, found = std::move(found),
                             length = search.Length()](std::int32_t row, KesTableCellWrapper cell) {
    const auto& [entry, byte] = found[static_cast<std::size_t>(row)];
    const auto& [item, lowered] = (*entries)[entry];
    const auto begin = static_cast<std::int32_t>(ui::utf16Length(lowered.view().substr(0, byte)));
    cell.setText(withMatchInRed(item->text, {item->text, begin, length}));
    cell.setTag(item->value);
  });
  _lv.ReloadAll();
}

void kes_searchview::_additemtolist(const Ref<itemsv>& item, const Text& text) {
  const Text search = text.ToLowerCase();
  const auto found = item->text.ToLowerCase().IndexOf(search);
  if (found == -1) return;
  KesTableCellWrapper cell = _lv.AddSingleLine("");
  cell.setText(withMatchInRed(item->text, {item->text, found, search.Length()}));
  cell.setTag(item->value);
}

void kes_searchview::_additemstolist(const KesList& items, const Text& search) {
  Entries shown = entriesOf(items);
  if (search.Length() > _max_limit)
    std::erase_if(shown, [&](const Entry& e) { return !e.lowered.Contains(search); });
  showEntries(std::make_shared<Entries>(std::move(shown)), search);
}

void kes_searchview::showEntries(std::shared_ptr<const Entries> shown, const Text& search) {
  if (!_lv.IsInitialized()) return;
  const auto count = static_cast<std::int32_t>(shown->size());
  _lv.AddSingleLines(
      count, [shown = std::move(shown), search](std::int32_t row, KesTableCellWrapper cell) {
        const auto& [item, lowered] = (*shown)[static_cast<std::size_t>(row)];
        auto text = make<kes_richstring>(nullptr, item->text);
        if (const auto found = lowered.IndexOf(search); found != -1) {
          const Match match(item->text, found, search.Length());
          text->_color(KesColors::Red, match.begin, match.end);
        }
        cell.setText(text->_getattributedstring());
        cell.setTag(item->value);
      });
  _lv.ReloadAll();
}

void kes_searchview::_lv_selectedchanged(std::int32_t section, std::int32_t row) {
  const KesTableCellWrapper chosen = _lv.GetItem(section, row);
  _et.setText(chosen.PlainText());
  _lv.SetSelection(0, -1);
  _et.ResignFocus();
  _lv.setVisible(false);
  if (const Value owner = _mcallback.lock(); !owner.isNil())
    c().CallSub2(bi(), owner, _meventname + "_ItemClick", chosen.Tag());
}

// --- The former way to search.

void kes_searchview::_setindex(const Value& index) {
  const KesList both = KesList::fromBoxed(index);
  _prefixlist = KesMap::fromBoxed(both.Get(0));
  _substringlist = KesMap::fromBoxed(both.Get(1));
}

void kes_searchview::_et_textchangedold(const Text&, const Text& now) {
  _lv.Clear();
  if (!_lv.Visible()) _lv.setVisible(true);
  _filllist(now);
}

void kes_searchview::_filllist(const Text& text) {
  if (text.Length() < _min_limit) {
    _additemstolist(_allitems, "");
    return;
  }
  const Text search = text.ToLowerCase();
  const Text key = search.SubString2(0, std::min(search.Length(), _max_limit));
  for (const KesMap* index : {&_prefixlist, &_substringlist})
    if (index->ContainsKey(key)) _additemstolist(KesList::fromBoxed(index->Get(key)), search);
}

}  // namespace kes
