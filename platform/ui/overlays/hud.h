// The progress overlay and the toast, as ordinary views in the window's overlay.
//
// Progress: at most one, a spinner with a label, shown until hidden; it covers the content
// of the page and is modal there, while bars, menu, Back and Escape stay the user's. Toast: a
// text that goes by itself and lets touches through; a newer one replaces it. Owned by
// the Application. Main thread; milliseconds.
#pragma once

#include <string>

#include "platform/ui/tree/view.h"

namespace ui {

class Application;
class Label;

class Hud {
 public:
  explicit Hud(Application& application);
  ~Hud();

  void showProgress(std::string label);  // while one is shown, only its label changes
  void hideProgress();                   // with none shown, nothing
  bool progressShown() const { return progress_.get() != nullptr; }
  std::string progressText() const;
  View* progressView() const { return progress_.get(); }
  // Whether it is a layer of this, the toast or an overlay, be it on its way out.
  static bool isLayer(const View& view);

  void toast(std::string text, std::int64_t milliseconds);
  bool toastShown() const { return toast_.get() != nullptr; }
  std::string toastText() const;
  View* toastView() const { return toast_.get(); }

 private:
  void dismissToast();

  Application& app_;
  Ref<View> progress_, toast_;
  Ref<Label> progressLabel_, toastLabel_;
  std::uint64_t toastTimer_ = 0;
};

}  // namespace ui
