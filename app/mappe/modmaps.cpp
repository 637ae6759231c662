#include "app/mappe/modmaps.h"

#include "app/kit/contrast.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/mappe/open_data.h"
#include "app/shell/main.h"

namespace varlo {

namespace {

constexpr double kDialogInset = 50, kDialogHeight = 200;
// What a dialog has room for in a wide window, and what it needs above and below in a low one.
constexpr double kDialogMostWidth = 380, kDialogRest = 140;

// The number in a field, be it a number or a text that reads as one.
double coordinate(const KesMap& row, const Text& field) {
  const Value value = row.Get(field.view());
  // A reader of numbers would stop at the comma of "45,8" and be content.
  if (value.isText() && !KesCommon::IsNumber(value.textView()))
    throw KesException("Cannot parse: " + Kes::ObjectToString(value));
  return Kes::ObjectToNumber(value).asDouble();
}

Text addressOf(const KesMap& description) {
  const Text address = textOf(description, "URL");
  return address.StartsWith("/") ? deployment::documents(address.view()) : address;
}

}  // namespace

void kes_modmaps::describe(ClassBuilder<kes_modmaps>& c) {
  c.name("kes_modmaps");
  c.sub<&kes_modmaps::_gmap_infowindowclick>("gmap_infowindowclick");
  c.sub<&kes_modmaps::_pcontent_resize>("pcontent_resize");
  c.sub<&kes_modmaps::_jobdone>("jobdone");
  c.sub<&kes_modmaps::_dialog_result>("dialog_result");
  c.field<&kes_modmaps::_pcontent>("pcontent");
  c.field<&kes_modmaps::_msglbl>("msglbl");
}

void kes_modmaps::_process_globals() { _main = Ref(&kes_main::instance()); }

// --- The page.

Resumable<> kes_modmaps::_avvia() {
  try {
    _home.Initialize(bi(), "Home");
    _home.RootPanel().LoadLayout("laycontent", bi());
    _home.setTitle(textOf(_datimappa, "Nome"));
    _main->_navcontrol.ShowPage(_home);
    co_await sleep(10);  // until the page has its size
    _addmap();
    _loaddati();
  } catch (const std::exception& e) {
    toastFault(e);
  }
}

void kes_modmaps::_addmap() {
  try {
    _gmap.Initialize(bi(), "gmap", _main->_tokenmaps);
    _gmap.setTiles(deployment::tiles(), deployment::tilesAttribution());
    const double width = _home.RootPanel().Width(), height = _home.RootPanel().Height();
    back_.Initialize(bi(), "");
    back_.setColor(KesColors::Black);
    _pcontent.AddView(back_, 0, 0, width, height);
    back_.AddView(_gmap, 0, 0, width, height);
    auto settings = _gmap.GetUiSettings();
    settings.setCompassEnabled(true);
    settings.setMyLocationButtonEnabled(true);
    _gmap.setMyLocationEnabled(true);
    const auto& town = deployment::townOnTheMap();
    _gmap.AnimateCamera(KesCameraPosition().Initialize(town.latitude, town.longitude, town.zoom));
  } catch (const std::exception& e) {
    toastFault(e);
  }
}

void kes_modmaps::_pcontent_resize(double width, double height) {
  if (!back_.IsInitialized() || !_gmap.IsInitialized()) return;
  for (KesViewWrapper view : {KesViewWrapper(back_), KesViewWrapper(_gmap)}) {
    view.setWidth(width);
    view.setHeight(height);
    view.setLeft(0);
    view.setTop(0);
  }
}

void kes_modmaps::toastFault(const std::exception& fault) {
  Kes::SetException(fault);
  _hd.ToastMessageShow(c().LastException().Message(), true);
}

// --- Its markers.

Resumable<> kes_modmaps::_loaddati() {
  const KesGoogleMap map = _gmap;
  const auto progress = _hd.progress("Scaricamento dati in corso ...");
  const auto job = co_await fetch(openDataAddress(addressOf(_datimappa)));
  if (!job->_success) co_return noData();
  if (!map.isEqual(_gmap)) co_return;  // another map has been opened meanwhile
  try {
    _mappadati(job->_getstring2("UTF8"));
  } catch (const std::exception& e) {
    Kes::SetException(e);
    c().Log("Map: " + c().LastException().Message());
    noData();
  }
}

void kes_modmaps::noData() { _hd.ToastMessageShow("Errore in download dati", false); }

void kes_modmaps::_mappadati(const Text& text) {
  _markers.Initialize();
  for (const Record& row : parsedMaps(textOf(_datimappa, "Nome"), text))
    row.attempt([&] {
      if (isShown(row)) addMarker(row, row.place());
    });
}

// Without a filter every row is shown; with one, a row that any of its elements fits.
bool kes_modmaps::isShown(const KesMap& row) const {
  const Value filter = _datimappa.Get("FILTER");
  if (filter.isNilOrNull()) return true;
  for (const Record& element : maps("FILTER", filter)) {
    const KesMap& wanted = element;
    if (row.Get(textOf(wanted, "FIELD").view()) == wanted.Get("VALUE")) return true;
  }
  return false;
}

void kes_modmaps::addMarker(const KesMap& row, const Text& place) {
  const double latitude = coordinate(row, textOf(_datimappa, "LAT")),
               longitude = coordinate(row, textOf(_datimappa, "LON"));
  if (latitude == 0 && longitude == 0) c().Log(place + ": stands at 0, 0");
  KesMarker marker =
      _gmap.AddMarker(latitude, longitude, textOf(row, textOf(_datimappa, "TITLE").view()));
  if (_datimappa.ContainsKey("SNIPPET")) {
    marker.setSnippet("Click per dettagli");
    marker.setTag(_htmldecode(textOf(row, textOf(_datimappa, "SNIPPET").view())));
  }
  _markers.Put(marker, row);
}

// The towns' registers write these three entities; all others stay as they stand.
Text kes_modmaps::_htmldecode(const Text& text) {
  return text.Replace("&apos;", "'").Replace("&agrave;", "à").Replace("&deg;", "°");
}

// --- A marker's dialog.

Resumable<> kes_modmaps::_gmap_infowindowclick(KesMarker marker) {
  KesPanelWrapper panel;
  panel.Initialize(bi(), "");
  panel.setWidth(std::min(_home.RootPanel().Width() - c().DipToCurrent(kDialogInset),
                          c().DipToCurrent(kDialogMostWidth)));
  panel.setHeight(std::min(c().DipToCurrent(kDialogHeight),
                           _home.RootPanel().Height() - c().DipToCurrent(kDialogRest)));
  panel.LoadLayout("laylbl", bi());
  const Value details = marker.Tag();
  _msglbl.setText(details.isNilOrNull() ? Text() : Kes::ObjectToString(details));
  _detailsdialog.Initialize(panel);
  _detailsdialog.CustomColor = townColor();
  const auto result = co_await waitFor<std::int32_t>(
      "dialog_result:",
      _detailsdialog.ShowAsync(bi(), marker.Title(), "Naviga Verso", "Chiudi", "", false));
  if (result != iCustomDialog::RESULT_POSITIVE) co_return;
  const auto at = marker.Position();
  const Text query = Kes::NumberToString(at.Latitude) + "," + Kes::NumberToString(at.Longitude);
  _main->_app.OpenURL(deployment::mapsLink(query.view()));
}

}  // namespace varlo
