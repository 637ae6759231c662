#include "components/customlistview.h"

#include <algorithm>
#include <limits>

#include "runtime/data/dates/date_time.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace kes {

namespace {

constexpr std::int32_t kUnknownLast = 0x7FFFFFFF;
constexpr double kReach = 2;                  // screens that a finger scrolls in an animation
constexpr std::int64_t kReachEndPause = 100;  // milliseconds
constexpr double kReachEndDistance = 5;
constexpr double kTextLeft = 5, kTextTop = 2, kTextMinHeight = 50;
constexpr double kEmptyTop = 24, kEmptyHeight = 24, kEmptyFontSize = 15;
constexpr auto kEmptyColor = static_cast<std::int32_t>(0xFF5B6770);
constexpr std::int32_t kPressMilliseconds = 50, kHoldMilliseconds = 200, kFadeMilliseconds = 200;

std::int32_t whole(double points) { return static_cast<std::int32_t>(Value(points).asInt64()); }

}  // namespace

void clvitem::describe(ClassBuilder<clvitem>& c) {
  c.name("_clvitem");
  c.field<&clvitem::Panel>("Panel");
  c.field<&clvitem::Size>("Size");
  c.field<&clvitem::value>("Value");
  c.field<&clvitem::Color>("Color");
  c.field<&clvitem::TextItem>("TextItem");
  c.field<&clvitem::Offset>("Offset");
}

void kes_customlistview::describe(ClassBuilder<kes_customlistview>& c) {
  c.name("kes_customlistview");
  c.sub<&kes_customlistview::_initialize>("initialize");
  c.sub<&kes_customlistview::_designercreateview>("designercreateview");
  c.sub<&kes_customlistview::_base_resize>("base_resize");
  c.sub<&kes_customlistview::_sv_scrollchanged>("sv_scrollchanged");
  c.sub<&kes_customlistview::_panel_click>("panel_click");
}

void kes_customlistview::_class_globals() {
  items_.clear();
  _animationduration = 300;
  _firstvisibleindex = -1;
  _lastvisibleindex = kUnknownLast;
}

void kes_customlistview::_initialize(Ref<Kes>, Value callback, Text eventName) {
  initializeClassModule();
  callback_ = WeakRef<Shared>(callback.object());
  _eventname = std::move(eventName);
  _defaulttextcolor = KesColors::Black;
  _defaulttextbackgroundcolor = KesColors::White;
  _monitorvisiblerange = c().SubExists(bi(), callback, _eventname + "_VisibleRangeChanged", 2);
  _firescrollchanged = c().SubExists(bi(), callback, _eventname + "_ScrollChanged", 1);
}

bool kes_customlistview::hears(const char* suffix, int parameters) const {
  const Value owner = callback();
  return !owner.isNil() && c().SubExists(bi(), owner, _eventname + suffix, parameters);
}

void kes_customlistview::_designercreateview(KesPanelWrapper base, KesLabelWrapper label,
                                             KesMap properties) {
  const auto number = [&](const char* key) { return Kes::ObjectToNumber(properties.Get(key)); };
  KesXUI xui;
  _mbase = base;
  _horizontal = properties.GetDefault("ListOrientation", "Vertical") == Value("Horizontal");
  KesScrollView scroll;
  scroll.Initialize(bi(), "sv", 0, 0);
  _sv = scroll;
  _sv.ScrollViewInnerPanel().setColor(xui.PaintOrColorToColor(properties.Get("DividerColor")));
  _dividersize = c().DipToCurrent(number("DividerHeight").asDouble());
  _pressedcolor = xui.PaintOrColorToColor(properties.Get("PressedColor"));
  _animationduration = static_cast<std::int32_t>(Kes::ObjectToLongNumber(
      properties.GetDefault("InsertAnimationDuration", _animationduration)));
  _defaulttextcolor = label.TextColor();
  _defaulttextbackgroundcolor = base.Color();
  _designerlabel = label;
  _mbase.AddView(_sv, 0, 0, _mbase.Width(), _mbase.Height());
  _base_resize(_mbase.Width(), _mbase.Height());
}

// --- Adding and removing.

void kes_customlistview::_add(const KexViewWrapper& panel, const Value& value) {
  _insertat(_getsize(), panel, value);
}

void kes_customlistview::_addtextitem(const Text& text, const Value& value) {
  _insertattextitem(_getsize(), text, value, false);
}

void kes_customlistview::_addtextitemcs(const KesCSBuilder& text, const Value& value) {
  _insertattextitem(_getsize(), text, value, true);
}

void kes_customlistview::_insertat(std::int32_t index, const KexViewWrapper& panel,
                                   const Value& value) {
  insertAtImpl(index, panel, whole(_horizontal ? panel.Width() : panel.Height()), value,
               std::nullopt);
}

void kes_customlistview::_insertattextitem(std::int32_t index, const Value& text,
                                           const Value& value, bool isRich) {
  if (_horizontal) {
    c().Log("AddTextItem is only supported in vertical orientation.");
    return;
  }
  KexViewWrapper panel = KesXUI().CreatePanel(bi(), "");
  const double width = _sv.ScrollViewContentWidth() - 2 * c().DipToCurrent(kTextLeft);
  KesLabelWrapper label;
  label.Initialize(bi(), "");
  label.setTextAlignment(_designerlabel.TextAlignment());
  label.setFont(_designerlabel.Font());
  label.setMultiline(true);
  label.setTextColor(_defaulttextcolor);
  if (isRich)
    label.setAttributedText(KesCSBuilder::fromBoxed(text));
  else
    label.setText(Kes::ObjectToString(text));
  label.setWidth(width);
  label.SizeToFit();
  const double height = std::max(c().DipToCurrent(kTextMinHeight), label.Height());
  panel.AddView(label, c().DipToCurrent(kTextLeft), c().DipToCurrent(kTextTop), width, height);
  panel.setColor(_defaulttextbackgroundcolor);
  panel.setWidth(_sv.ScrollViewContentWidth());
  panel.setHeight(height + c().DipToCurrent(kTextTop));
  _insertat(index, panel, value);
  items_[static_cast<std::size_t>(index)]->TextItem = true;
}

void kes_customlistview::insertAtImpl(std::int32_t index, const KexViewWrapper& appPanel,
                                      std::int32_t itemSize, const Value& value,
                                      std::optional<std::int32_t> former) {
  if (index < 0 || index > _getsize()) item(index);  // throws
  takeEmptyTextAway();
  KexViewWrapper outer = KesXUI().CreatePanel(bi(), "Panel");
  KexViewWrapper inner = appPanel;
  outer.setColor(inner.Color());
  inner.setColor(KesColors::Transparent);
  outer.AddView(inner, 0, 0, _horizontal ? itemSize : _sv.ScrollViewContentWidth(),
                _horizontal ? _sv.ScrollViewContentHeight() : itemSize);
  outer.setTag(index);

  auto added = platform::makeShared<clvitem>();
  added->Panel = outer;
  added->Size = itemSize;
  added->value = value;
  added->Color = outer.Color();

  const std::int32_t initialSize = former.value_or(0);
  const double extra = former ? 0 : _dividersize;
  KexViewWrapper content = _sv.ScrollViewInnerPanel();
  const bool append = index == _getsize() && !former;
  if (append) {
    items_.push_back(added);
    added->Offset = whole(index == 0 ? _dividersize : contentSize());
    if (_horizontal)
      content.AddView(outer, added->Offset, 0, itemSize, _sv.Height());
    else
      content.AddView(outer, 0, added->Offset, _sv.Width(), itemSize);
  } else {
    double offset = _dividersize;
    if (index > 0) {
      const clvitem& before = item(index - 1);
      offset = before.Offset + before.Size + _dividersize;
    }
    // What lies so far above the screen that no finger brings it into sight meanwhile has
    // nothing to show on its way.
    const double bottom = scrollOffset() + visibleSize();
    const double top = scrollOffset() - kReach * visibleSize();
    for (std::int32_t i = index; i < _getsize(); ++i) {
      clvitem& moved = item(i);
      const auto to = whole(moved.Offset + itemSize - initialSize + extra);
      const auto nearest = std::min(to, moved.Offset), furthest = std::max(to, moved.Offset);
      if (nearest < bottom && furthest + moved.Size > top) {
        moved.Offset = to;
        place(moved, _animationduration, to, moved.Size);
      } else {
        setItemOffset(moved, to);
      }
      moved.Panel.setTag(i + 1);
    }
    items_.insert(items_.begin() + index, added);
    added->Offset = whole(offset);
    // The new item grows open from nothing.
    if (_horizontal)
      content.AddView(outer, offset, 0, 0, _sv.Height());
    else
      content.AddView(outer, 0, offset, _sv.Width(), 0);
    place(*added, _animationduration, offset, itemSize);
  }

  setContentSize(contentSize() + itemSize - initialSize + extra);
  if (items_.size() == 1 && !former) setContentSize(contentSize() + _dividersize);
  if (index < _lastvisibleindex || [&] {
        const clvitem& last = item(_lastvisibleindex);
        return last.Offset + last.Size + _dividersize < visibleSize();
      }())
    updateVisibleRange();
}

void kes_customlistview::_removeat(std::int32_t index) {
  const Ref<clvitem> removed = _getitem(index);
  if (_getsize() <= 1) {
    _clear();
    return;
  }
  for (std::int32_t i = index + 1; i < _getsize(); ++i) {
    clvitem& moved = item(i);
    moved.Panel.setTag(i - 1);
    setItemOffset(moved, whole(moved.Offset - removed->Size - _dividersize));
  }
  setContentSize(contentSize() - removed->Size - _dividersize);
  items_.erase(items_.begin() + index);
  removed->Panel.RemoveViewFromParent();
}

void kes_customlistview::_replaceat(std::int32_t index, const KexViewWrapper& panel,
                                    std::int32_t itemSize, const Value& value) {
  const Ref<clvitem> old = _getitem(index);
  items_.erase(items_.begin() + index);
  old->Panel.RemoveViewFromParent();
  insertAtImpl(index, panel, itemSize, value, old->Size);
}

void kes_customlistview::_resizeitem(std::int32_t index, std::int32_t itemSize) {
  KexViewWrapper panel = _getpanel(index);
  const Value value = item(index).value;
  // Of the item at rest: the panel around it may be pressed at this moment.
  panel.setColor(item(index).Color);
  panel.RemoveViewFromParent();
  _replaceat(index, panel, itemSize, value);
}

void kes_customlistview::_clear() {
  takeEmptyTextAway();
  items_.clear();
  _sv.ScrollViewInnerPanel().RemoveAllViews();
  setContentSize(0);
}

void kes_customlistview::showEmptyText(const Text& text) {
  if (!items_.empty()) return;
  takeEmptyTextAway();
  emptyLabel_.Initialize(bi(), "");
  emptyLabel_.setText(text);
  emptyLabel_.setFont(KesFont::CreateNew(kEmptyFontSize));
  emptyLabel_.setTextColor(kEmptyColor);
  emptyLabel_.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  _mbase.AddView(emptyLabel_, 0, c().DipToCurrent(kEmptyTop), _mbase.Width(),
                 c().DipToCurrent(kEmptyHeight));
}

void kes_customlistview::takeEmptyTextAway() {
  if (!emptyLabel_.IsInitialized()) return;
  emptyLabel_.RemoveViewFromParent();
  emptyLabel_ = KesLabelWrapper();
}

// --- Where items are.

clvitem& kes_customlistview::item(std::int32_t index) const {
  if (index < 0 || index >= _getsize())
    throw KesException("NSRangeException",
                       formatText("Index %@ is out of range of a list of %@.",
                                  {std::to_string(index), std::to_string(_getsize())}));
  return *items_[static_cast<std::size_t>(index)];
}

KexViewWrapper kes_customlistview::_asview() const {
  KexViewWrapper view;
  view.setObject(_mbase.object());
  return view;
}

std::int32_t kes_customlistview::_getitemfromview(const KexViewWrapper& view) const {
  const Shared* content = _sv.ScrollViewInnerPanel().object().object();
  KexViewWrapper v = view;
  for (KexViewWrapper parent = v.Parent(); parent.object().object() != content; parent = v.Parent())
    v = parent;
  return static_cast<std::int32_t>(v.Tag().asInt64());
}

std::int32_t kes_customlistview::_findindexfromoffset(std::int32_t offset) const {
  const std::int32_t last = _getsize() - 1;
  const auto half = [](std::int32_t n) { return (n + 1) / 2; };
  std::int32_t position = _getsize() / 2;
  for (std::int32_t step = half(position);; step = half(step)) {
    const std::int32_t next = position == last ? kUnknownLast : item(position + 1).Offset - 1;
    // Offsets above the first item belong to it.
    const std::int32_t previous =
        position == 0 ? std::numeric_limits<std::int32_t>::min() : item(position).Offset;
    if (offset > next)
      position = std::min(position + step, last);
    else if (offset < previous)
      position = std::max(position - step, 0);
    else
      return position;
  }
}

std::int32_t kes_customlistview::_getfirstvisibleindex() const {
  return _findindexfromoffset(whole(scrollOffset() + _dividersize));
}

std::int32_t kes_customlistview::_getlastvisibleindex() const {
  return _findindexfromoffset(whole(scrollOffset() + visibleSize()));
}

void kes_customlistview::_jumptoitem(std::int32_t index) {
  const double top = std::max(0.0, item(index).Offset - _dividersize);
  if (_horizontal)
    _sv.setScrollViewOffsetX(top);
  else
    _sv.setScrollViewOffsetY(top);
}

double kes_customlistview::contentSize() const {
  return _horizontal ? _sv.ScrollViewContentWidth() : _sv.ScrollViewContentHeight();
}

void kes_customlistview::setContentSize(double size) {
  if (_horizontal)
    _sv.setScrollViewContentWidth(size);
  else
    _sv.setScrollViewContentHeight(size);
}

double kes_customlistview::scrollOffset() const {
  return _horizontal ? _sv.ScrollViewOffsetX() : _sv.ScrollViewOffsetY();
}

double kes_customlistview::visibleSize() const { return _horizontal ? _sv.Width() : _sv.Height(); }

void kes_customlistview::place(const clvitem& item, std::int32_t duration, double offset,
                               double size) const {
  KexViewWrapper panel = item.Panel;
  if (_horizontal)
    panel.SetLayoutAnimated(duration, offset, 0, size, panel.Height());
  else
    panel.SetLayoutAnimated(duration, 0, offset, panel.Width(), size);
}

void kes_customlistview::setItemOffset(clvitem& item, std::int32_t offset) {
  item.Offset = offset;
  if (_horizontal)
    item.Panel.setLeft(offset);
  else
    item.Panel.setTop(offset);
}

// --- What the citizen does.

void kes_customlistview::_sv_scrollchanged(double, double) { scrollHandler(); }

void kes_customlistview::scrollHandler() {
  const double position = scrollOffset() + visibleSize();
  const auto now = DateTime().Now();
  if (position >= contentSize() - c().DipToCurrent(kReachEndDistance) &&
      now > _lastreachendevent + kReachEndPause) {
    if (hears("_ReachEnd", 0)) {
      _lastreachendevent = now;
      c().CallSubDelayed(bi(), callback(), _eventname + "_ReachEnd");
    } else {
      // Nobody listens: ask again tomorrow at the earliest.
      _lastreachendevent = now + KesDateTime::TicksPerDay;
    }
  }
  updateVisibleRange();
  if (_firescrollchanged && hears("_ScrollChanged", 1))
    c().CallSub2(bi(), callback(), _eventname + "_ScrollChanged", whole(scrollOffset()));
}

void kes_customlistview::updateVisibleRange() {
  if (!_monitorvisiblerange || items_.empty() || !hears("_VisibleRangeChanged", 2)) return;
  const auto first = _getfirstvisibleindex(), last = _getlastvisibleindex();
  if (first == _firstvisibleindex && last == _lastvisibleindex) return;
  _firstvisibleindex = first;
  _lastvisibleindex = last;
  c().CallSubDelayed3(bi(), callback(), _eventname + "_VisibleRangeChanged", first, last);
}

void kes_customlistview::_panel_click() {
  KexViewWrapper panel;
  panel.setObject(c().Sender(bi()));
  panelClickHandler(panel);
}

// The event comes during the flash. The handler may have emptied the list meanwhile; the
// colour then fades on a panel that is no longer shown.
Resumable<> kes_customlistview::panelClickHandler(KexViewWrapper panel) {
  const auto index = static_cast<std::int32_t>(panel.Tag().asInt64());
  const Ref<clvitem> clicked = _getitem(index);
  const auto rest = clicked->Color;
  panel.SetColorAnimated(kPressMilliseconds, rest, _pressedcolor);
  if (hears("_ItemClick", 2))
    c().CallSub3(bi(), callback(), _eventname + "_ItemClick", panel.Tag(), clicked->value);
  co_await sleep(kHoldMilliseconds);
  panel.SetColorAnimated(kFadeMilliseconds, _pressedcolor, rest);
}

void kes_customlistview::_base_resize(double width, double height) {
  _sv.SetLayoutAnimated(0, 0, 0, width, height);
  if (emptyLabel_.IsInitialized()) emptyLabel_.setWidth(width);
  if (_horizontal)
    _sv.setScrollViewContentHeight(height);
  else
    _sv.setScrollViewContentWidth(width);
  for (const auto& entry : items_) {
    KexViewWrapper panel = entry->Panel, inner = panel.GetView(0);
    if (_horizontal) {
      panel.setHeight(_sv.ScrollViewContentHeight());
      inner.setHeight(_sv.ScrollViewContentHeight());
      continue;
    }
    panel.setWidth(_sv.ScrollViewContentWidth());
    inner.setWidth(_sv.ScrollViewContentWidth());
    if (entry->TextItem) {
      KexViewWrapper label = inner.GetView(0);
      label.SetLayoutAnimated(0, label.Left(), label.Top(), panel.Width() - 2 * label.Left(),
                              label.Height());
    }
  }
  if (!items_.empty()) updateVisibleRange();
}

}  // namespace kes
