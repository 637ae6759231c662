// kes_modpizzaprezzi: the price list of one pizzeria, a page of pictures. They are kept in
// the temporary folder under "<Folder>-<LastUpdate>", so the second opening downloads
// nothing. One instance; main thread.
#pragma once

#include "app/kit/feature.h"
#include "app/kit/picture_column.h"
#include "runtime/views/pages/page.h"

namespace varlo {

class kes_main;

class kes_modpizzaprezzi final : public Feature<kes_modpizzaprezzi> {
 public:
  static void describe(ClassBuilder<kes_modpizzaprezzi>& c);
  void _process_globals() override;

  Resumable<> _pizzaprezzi_caricapizzeria(KesMap shop);
  void _home_resize(double width, double height);

  KesPage _home;
  KesPanelWrapper _pcontent;

  Ref<kes_main> _main;

 private:
  // As wide as the page; throws for a file that is no picture.
  void showPicture(PictureColumn& page, const Text& folder, const Text& name);

  PictureColumn prices_;
};

}  // namespace varlo
