// kes_modmaps: the page of one thematic map, its markers read from the document that the
// map's description names. One instance; main thread.
//
// A description has "Nome", "URL" (an address; one that begins with a slash is a path of the
// town's documents), the names of the document's fields "LAT", "LON", "TITLE" and perhaps
// "SNIPPET", and perhaps "FILTER".
#pragma once

#include "app/kit/feature.h"
#include "runtime/maps/google_map.h"
#include "runtime/views/dialogs/custom_dialog.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/wrappers/label_wrapper.h"

namespace varlo {

class kes_main;

class kes_modmaps final : public Feature<kes_modmaps> {
 public:
  static void describe(ClassBuilder<kes_modmaps>& c);
  void _process_globals() override;

  // The description of the map that _avvia() shows.
  void set_datimappa(KesMap description) { _datimappa = std::move(description); }
  Resumable<> _avvia();
  void _addmap();
  Resumable<> _loaddati();
  // The rows of a document, as markers of the map on show.
  void _mappadati(const Text& text);
  Text _htmldecode(const Text& text);
  // The dialog of a marker, from which the way there leads out of the app.
  Resumable<> _gmap_infowindowclick(KesMarker marker);
  void _pcontent_resize(double width, double height);
  void _dialog_result(Value) {}

  Ref<kes_main> _main;
  KesPage _home;
  KesGoogleMap _gmap;
  KesPanelWrapper _pcontent;
  KesMap _datimappa;
  KesMap _markers;  // from a marker to its row
  iCustomDialog _detailsdialog;
  KesLabelWrapper _msglbl;

 private:
  bool isShown(const KesMap& row) const;
  void addMarker(const KesMap& row, const Text& place);
  void toastFault(const std::exception& fault);
  void noData();

  KesPanelWrapper back_;  // behind the map
};

}  // namespace varlo
