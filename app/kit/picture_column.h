// A page that is read downwards: a text, if there is one, and pictures below it, each as
// wide as the scroll view that holds them and as high as its proportion says. It keeps its
// order when the phone is turned. A plain value; copies stand for the same page. Main
// thread, points.
#pragma once

#include <memory>
#include <vector>

#include "runtime/views/wrappers/image_view_wrapper.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace varlo {

using namespace kes;

class PictureColumn {
 public:
  // No picture is higher, whatever a service says of it.
  static constexpr double kHighest = 10000;

  PictureColumn() = default;
  explicit PictureColumn(KesScrollView scroll);

  void addText(const Ref<Kes>& bi, const Text& text);
  // An empty view at the end, for a picture with that height for a width of 1; what can't be
  // a proportion counts as that of a photograph. `name` is what a screen reader says.
  KesImageViewWrapper addPicture(const Ref<Kes>& bi, const Text& event, double proportion,
                                 const Text& name);
  double width() const { return page_->scroll.Width(); }
  // Places all for the scroll view's present width.
  void layOut();

 private:
  struct Picture {
    KesImageViewWrapper view;
    double proportion;
  };
  struct Page {
    KesScrollView scroll;
    KesLabelWrapper text;
    std::vector<Picture> pictures;
  };
  std::shared_ptr<Page> page_;
};

}  // namespace varlo
