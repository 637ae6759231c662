#include "app/kit/picture_column.h"

#include <algorithm>
#include <cmath>

#include "runtime/core/language/common.h"

namespace varlo {

namespace {

constexpr double kGap = 8, kOfAPhotograph = 0.75;
constexpr float kTextSize = 17;

}  // namespace

PictureColumn::PictureColumn(KesScrollView scroll) : page_(std::make_shared<Page>()) {
  page_->scroll = std::move(scroll);
}

void PictureColumn::addText(const Ref<Kes>& bi, const Text& text) {
  auto& label = page_->text;
  label.Initialize(bi, "");
  label.setMultiline(true);
  label.setText(text);
  label.setTextColor(KesColors::Black);
  label.setFont(KesFont::CreateNew(kTextSize));
  label.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  page_->scroll.Panel().AddView(label, 0, 0, page_->scroll.Width(), 0);
  layOut();
}

KesImageViewWrapper PictureColumn::addPicture(const Ref<Kes>& bi, const Text& event,
                                              double proportion, const Text& name) {
  KesImageViewWrapper view;
  view.Initialize(bi, event);
  view.setContentMode(KesImageViewWrapper::MODE_FIT);
  view.view().setAccessibleName(std::string(name.view()));
  page_->scroll.Panel().AddView(view, 0, 0, 0, 0);
  const bool possible = std::isfinite(proportion) && proportion > 0;
  page_->pictures.push_back({view, possible ? proportion : kOfAPhotograph});
  layOut();
  return view;
}

// From top to bottom in one go whenever something comes or the width changes: pictures have
// their proportion before they have arrived, so that nothing jumps when they do.
void PictureColumn::layOut() {
  if (!page_) return;
  const double width = page_->scroll.Width();
  double top = 0;
  if (auto& label = page_->text; label.IsInitialized()) {
    label.setLeft(0);
    label.setTop(kGap);
    label.setWidth(width);
    label.SizeToFit();
    label.setWidth(width);
    label.setLeft(0);
    top = kGap + label.Height() + kGap;
  }
  for (auto& [view, proportion] : page_->pictures) {
    const double height = std::min(width * proportion, kHighest);
    view.SetLayoutAnimated(0, 0, 0, top, width, height);
    top += height;
  }
  page_->scroll.setContentWidth(width);
  page_->scroll.setContentHeight(std::max(top, page_->scroll.Height()));
}

}  // namespace varlo
