#include "app/rifiuti/rifiuti.h"

#include <charconv>

#include "app/infocitta/infocitta_entity.h"
#include "app/kit/contrast.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/kit/text_height.h"
#include "app/mappe/modmaps.h"
#include "app/shell/main.h"
#include "runtime/data/files/file.h"
#include "runtime/views/base/font.h"
#include "runtime/views/dialogs/message_box.h"
#include "runtime/views/pages/bar_button_item.h"
#include "runtime/views/richtext/cs_builder.h"

namespace varlo {

using deployment::documents;

namespace {

constexpr const char* kTitle = "Raccolta rifiuti";
constexpr const char* kStoredZone = "ZONARIFIUTI";
constexpr const char* kCalendar = "config.json";
constexpr const char* kWhite = "#FFFFFF";
constexpr double kMargin = 10, kEmptyHeight = 100;
constexpr double kZoneHeight = 50, kHeadingHeight = 20, kButtonHeight = 40;
constexpr double kZoneFont = 18, kFont = 16;
constexpr double kBorder = 3, kCorner = 5;

// What fails in it is logged under the name, and the page goes on without.
template <class Work>
void guarded(const char* what, Work work) {
  Record(what, {}).attempt(work);
}

}  // namespace

void kes_rifiuti::describe(ClassBuilder<kes_rifiuti>& c) {
  c.name("kes_rifiuti");
  c.sub<&kes_rifiuti::_jobdone>("jobdone");
  c.sub<&kes_rifiuti::_sv_itemclick>("sv_itemclick");
  c.sub<&kes_rifiuti::_btn_click>("btn_click");
  c.sub<&kes_rifiuti::_btnmap_click>("btnmap_click");
  c.sub<&kes_rifiuti::_btnp_click>("btnp_click");
  c.sub<&kes_rifiuti::_btnl_click>("btnl_click");
  c.sub<&kes_rifiuti::_home_barbuttonclick>("home_barbuttonclick");
  c.sub<&kes_rifiuti::_home_keyboardstatechanged>("home_keyboardstatechanged");
  c.sub<&kes_rifiuti::_home_resize>("home_resize");
  c.field<&kes_rifiuti::_sv>("sv");
}

void kes_rifiuti::_process_globals() {
  _main = Ref(&kes_main::instance());
  _kvs = make<kes_keyvaluestore>();
}

void kes_rifiuti::_carica() {
  _home.Initialize(bi(), "Home");
  _home.setTitle(kTitle);
  _home.RootPanel().setColor(KesColors::White);
  _main->_navcontrol.ShowPage(_home);
  const Text zone = storedZone();
  if (zone.empty())
    _setting_click();
  else
    _caricazona(zone);
}

// A store that cannot be read is as good as an empty one: the street is asked for again.
Text kes_rifiuti::storedZone() {
  Text zone;
  guarded(kStoredZone, [&] {
    _kvs->_initialize(bi(), File().DirDocuments(), "infovarlo.db");
    if (_kvs->_containskey(kStoredZone)) zone = _kvs->_getsimple(kStoredZone);
  });
  return zone;
}

// --- The street.

Resumable<> kes_rifiuti::_setting_click() {
  guarded(kStoredZone, [&] { _kvs->_remove(kStoredZone); });
  _home.RootPanel().RemoveAllViews();
  _home.RootPanel().LoadLayout("laysv", bi());
  _home.setTitle(kTitle);
  // Nobody raises an event of this name: nothing comes after the streets.
  co_await waitFor("complete", _caricaviezone());
}

Resumable<Value> kes_rifiuti::_caricaviezone() {
  const auto progress = _hd.progress("Caricamento...");
  const auto search = _sv;  // a later page may have another when the streets come
  const auto job = co_await fetch(documents("/InfoVarlo/raccoltarifiuti/master/zone.json"));
  if (!job->_success) {
    noConnection();
    co_return Value();
  }
  KesList items;
  items.Initialize();
  eachRecord(maps(job), [&](const KesMap& street) {
    nameOf(street, "ZONA");
    items.Add(itemsv::of(nameOf(street, "NOME"), street));
  });
  search->_sethint("Seleziona via");
  search->_setitems(items);
  co_return Value();
}

void kes_rifiuti::_sv_itemclick(Value street) {
  const Text zone = nameOf(KesMap::fromBoxed(street), "ZONA");
  guarded(kStoredZone, [&] { _kvs->_putsimple(kStoredZone, zone); });
  _caricazona(zone);
}

// --- The page of a zone.

// Places views one below the other, across the whole page or several in a row. In the end
// the page scrolls as far as it was built, also when a fault ended it early.
class kes_rifiuti::Column {
 public:
  explicit Column(const KesScrollView& view)
      : view_(view), margin_(c().DipToCurrent(kMargin)), width_(view.Width() - 2 * margin_) {}
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;
  ~Column() { view_.setContentHeight(height_); }

  double width() const { return width_; }
  double third() const { return (width_ - 2 * margin_) / 3; }

  void add(const KesViewWrapper& view, double height) {
    view_.Panel().AddView(view, margin_, height_ + margin_, width_, height);
    height_ += margin_ + height;
  }
  void addRow(const std::vector<KesButtonWrapper>& views, double height) {
    double left = margin_;
    for (const auto& view : views) {
      view_.Panel().AddView(view, left, height_ + margin_, third(), height);
      left += margin_ + third();
    }
    height_ += margin_ + height;
  }

 private:
  KesScrollView view_;
  double margin_, width_, height_ = 0;
};

Resumable<> kes_rifiuti::_caricazona(Text zone) {
  try {
    KesPage page = _home;
    page.RootPanel().RemoveAllViews();
    page.RootPanel().LoadLayout("layempty", bi());
    page.setTitle(kTitle);
    zone_ = zone;
    _dati = KesMap();
    co_await sleep(0);

    KesBarButtonItemWrapper change;
    change.InitializeText("Cambia via", "SETTING");
    page.setTopRightButtons(KesList::of({change}));
    const double width = page.RootPanel().Width();
    KesScrollView view;
    view.Initialize(bi(), "", width, c().DipToCurrent(kEmptyHeight));
    page.RootPanel().AddView(view, 0, 0, width, page.RootPanel().Height());
    _svw = view;

    const auto progress = _hd.progress("Caricamento in corso...");
    const auto job = co_await fetch(documents("/InfoVarlo/raccoltarifiuti/master/config.json"));
    if (!job->_success) {
      noConnection();
      co_return;
    }
    _dati = mapOf(job);
    const KesMap zones = mapOf(_dati, "ZONE");
    if (zones.ContainsKey(zone))
      buildZone(view, mapOf(zones, zone), zone);
    else
      view.setContentHeight(0);
  } catch (const std::exception& e) {
    Kes::SetException(e);
    c().Log(std::string(kCalendar) + ": " + e.what());
  }
}

namespace {

KesLabelWrapper boldLabel(const Ref<Kes>& bi, const Text& text, double size) {
  KesLabelWrapper label;
  label.Initialize(bi, "");
  label.setFont(KesFont::CreateNewBold(static_cast<float>(size)));
  label.setTextColor(KesColors::Black);
  label.setText(text);
  return label;
}

}  // namespace

void kes_rifiuti::buildZone(const KesScrollView& view, const KesMap& zone, const Text& key) {
  Column column(view);

  _lblzona = boldLabel(bi(), "ZONA " + key, kZoneFont);
  _lblzona.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  _lblzona.SetBorder(c().DipToCurrent(kBorder), KesColors::Black, c().DipToCurrent(kCorner));
  guarded(kCalendar, [&] {
    const std::int32_t color = _getcolor(nameOf(zone, "COLOR"));
    _lblzona.setColor(color);
    _lblzona.setTextColor(readableOn(color));
  });
  column.add(_lblzona, textHeight(kZoneHeight));

  KesCSBuilder note;
  note.Initialize().Font(KesFont::CreateNewBold(kFont)).Append("ORARIO DI ESPOSIZIONE");
  note.Append(KesCommon::CRLF).Pop().Append(textOf(_dati, "NOTE")).PopAll();
  _lblnote = KesLabelWrapper();
  _lblnote.Initialize(bi(), "");
  _lblnote.setTextColor(KesColors::Black);
  _lblnote.setMultiline(true);
  _lblnote.setAttributedText(note);
  _lblnote.setWidth(column.width());
  _lblnote.SizeToFit();
  column.add(_lblnote, _lblnote.Height());

  _lblday1 = addDay(column, zone, "DAY1",
                    {{"UMIDO", "#CE924F"}, {"CARTA", "#F493AE"}, {"PLASTICA", "#F9A51B"}});
  _lblday2 = addDay(column, zone, "DAY2",
                    {{"UMIDO", "#CE924F"}, {"VETRO", "#253F8E"}, {"SECCO", "#00A1E3"}});

  const auto link = [&](const Text& text, const char* eventName, const Value& tag) {
    auto button = _getbutton(text, kWhite, column.width(), eventName);
    button.setTag(tag);
    column.add(button, textHeight(kButtonHeight));
  };
  if (_dati.ContainsKey("MAPPA")) link("Mappa ritiro sacchi", "btnMap", _dati.Get("MAPPA"));
  if (_dati.ContainsKey("PIATTAFORMA"))
    link("Piattaforma Ecologica", "btnP", _dati.Get("PIATTAFORMA"));
  if (_dati.ContainsKey("LINK")) {
    const KesMap site = mapOf(_dati, "LINK");
    link(nameOf(site, "Title"), "btnL", nameOf(site, "Link"));
  }
}

// What goes out on a day is the same in all zones; the document tells the day's name only.
KesButtonWrapper kes_rifiuti::addDay(Column& column, const KesMap& zone, const char* day,
                                     std::initializer_list<Material> materials) {
  column.add(boldLabel(bi(), "Giorno di ritiro", kFont), textHeight(kHeadingHeight));
  auto name = _getbutton(nameOf(mapOf(zone, day), "NAME"), kWhite, column.width(), "");
  name.setUserInteractionEnabled(false);
  column.add(name, textHeight(kButtonHeight));
  std::vector<KesButtonWrapper> row;
  for (const Material& material : materials)
    row.push_back(_getbutton(material.name, material.color, column.third(), "btn"));
  column.addRow(row, textHeight(kButtonHeight));
  return name;
}

KesButtonWrapper kes_rifiuti::_getbutton(const Text& text, const Text& color, double width,
                                         const Text& eventName) {
  const std::int32_t background = _getcolor(color), ink = readableOn(background);
  KesButtonWrapper button;
  button.InitializeCustom(bi(), eventName, ink,
                          ink == KesColors::Black ? KesColors::DarkGray : KesColors::LightGray);
  button.setText(text);
  button.setFont(KesFont::CreateNewBold(static_cast<float>(c().DipToCurrent(kFont))));
  button.setColor(background);
  button.SetBorder(c().DipToCurrent(kBorder), KesColors::Black, c().DipToCurrent(kCorner));
  button.SetShadow(KesColors::Black, 0, 1, 0.4, false);
  button.setWidth(width);
  button.setHeight(textHeight(kButtonHeight));
  return button;
}

std::int32_t kes_rifiuti::_getcolor(const Text& color) {
  const auto part = [&](std::int32_t at) {
    const Text pair = color.SubString2(at, at + 2);
    const std::string_view digits = pair;
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size())
      throw KesException(formatText("No colour: %@", {color}));
    return value;
  };
  return static_cast<std::int32_t>(0xFF000000U | part(1) << 16 | part(3) << 8 | part(5));
}

// --- What the citizen does.

Value kes_rifiuti::tagOfSender() {
  KesViewWrapper view;
  view.setObject(c().Sender(bi()));
  return view.Tag();
}

void kes_rifiuti::_btn_click() {
  KesButtonWrapper button;
  button.setObject(c().Sender(bi()));
  const Text material = button.Text();
  guarded(kCalendar, [&] {
    const KesMap lists = mapOf(mapOf(_dati, "RIFIUTI"), material);
    const Text line = KesCommon::CRLF;
    Msgbox("SI" + line + textOf(lists, "SI") + line + "NO" + line + textOf(lists, "NO"), material);
  });
}

void kes_rifiuti::_btnmap_click() {
  const Value map = tagOfSender();
  guarded(kCalendar, [&] {
    _main->_modmaps->set_datimappa(KesMap::fromBoxed(map));
    _main->_modmaps->_avvia();
  });
}

void kes_rifiuti::_btnp_click() {
  const Value entity = tagOfSender();
  guarded(kCalendar,
          [&] { _main->_infocitta_entity->_caricaentity(KesMap::fromBoxed(entity), kCalendar); });
}

void kes_rifiuti::_btnl_click() { _main->_app.OpenURL(Kes::ObjectToString(tagOfSender())); }

void kes_rifiuti::_home_barbuttonclick(Value tag) {
  if (tag.textView() == "SETTING") _setting_click();
}

void kes_rifiuti::_home_keyboardstatechanged(double height) {
  if (_sv) _sv->_keyboardstate(height);
}

// The phone was turned: the page is made anew for its width, from what is known already.
void kes_rifiuti::_home_resize(double width, double height) {
  if (!_svw.IsInitialized() || _svw.Parent().nativeOrNull() != _home.RootPanel().nativeOrNull())
    return;
  const bool wider = _svw.Width() != width;
  _svw.SetLayoutAnimated(0, 1, 0, 0, width, height);
  if (!wider) return;
  _svw.setContentWidth(width);
  if (!_dati.IsInitialized()) return;
  guarded(kCalendar, [&] {
    const KesMap zones = mapOf(_dati, "ZONE");
    if (!zones.ContainsKey(zone_)) return;
    _svw.Panel().RemoveAllViews();
    buildZone(_svw, mapOf(zones, zone_), zone_);
  });
}

}  // namespace varlo
