// kes_menudelgiorno: today's menu of one restaurant, as it posted it on its page of the
// social network under a hashtag. One instance; main thread.
#pragma once

#include "app/kit/feature.h"
#include "app/kit/picture_column.h"
#include "app/kit/records.h"
#include "runtime/views/pages/page.h"

namespace varlo {

class kes_main;

class kes_menudelgiorno final : public Feature<kes_menudelgiorno> {
 public:
  static void describe(ClassBuilder<kes_menudelgiorno>& c);
  void _process_globals() override;

  void _caricadati(KesMap restaurant);
  Text _dataestesa(std::int64_t ticks);
  Resumable<> _fb_scaricadati(Text page);
  // Fills the page with what its service says of it, in one JSON object.
  void _fb_elabora(const Text& document);
  void _home_resize(double width, double height);

  KesPage _home;
  KesLabelWrapper _ltitle, _ltel, _laddress;
  KesImageViewWrapper _logo;
  KesScrollView _ppost;

  Ref<kes_main> _main;

 private:
  void showRestaurant(const Record& restaurant);
  void showPost(const Record& post);
  void addPicture(const Record& attachment);

  PictureColumn post_;
};

}  // namespace varlo
