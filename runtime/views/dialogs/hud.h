// iHUD: the progress overlay and the toast.
//
// A plain copyable member; copies share the overlay that they have shown. There is at
// most one overlay. In a sub, let a guard hide it however the sub ends:
//
//   auto progress = _hd.progress("Caricamento...");
//
// Main thread. Without a window nothing is shown; nothing here throws.
#pragma once

#include "platform/ui/tree/view.h"
#include "runtime/core/object.h"

namespace kes {

class iHUD final : public Object, public ByValue {
  struct Shown;

 public:
  iHUD();
  std::string_view className() const override { return "iHUD"; }
  static iHUD fromBoxed(const Value& v);

  void ToastMessageShow(const Value& message, bool isLong);  // 3 s or 1.5 s
  void ProgressDialogShow(const Value& message);             // changes the text if shown
  void ProgressDialogHide();                                 // nothing if not shown

  // Hides the overlay when it goes out of scope, unless another sub still needs it.
  class [[nodiscard]] Progress {
   public:
    Progress(Progress&& o) noexcept : shown_(std::move(o.shown_)) {}
    Progress& operator=(Progress&&) = delete;
    ~Progress() { hide(); }
    void setText(const Value& message);
    void hide();  // now

   private:
    friend class iHUD;
    explicit Progress(Ref<Shown> shown);
    Ref<Shown> shown_;
  };
  Progress progress(const Value& message);

 private:
  struct Shown final : platform::Shared {
    WeakRef<ui::View> overlay;
    int guards = 0;  // subs under way: the overlay goes with the last of them
    void show(const Value& message);
    void hide();
  };
  Ref<Shown> shown_;
};

}  // namespace kes
