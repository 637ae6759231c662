// A headless phone with the runtime's views, and an owner that notes down its events.
#pragma once

#include <gmock/gmock.h>

#include "runtime/core/language/module.h"
#include "runtime/data/register_data.h"
#include "runtime/views/app/app_delegate.h"
#include "runtime/views/app/services.h"
#include "runtime/views/layout/layout_builder.h"
#include "runtime/views/register_views.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "tests/support/failures.h"
#include "tests/support/headless_phone.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace kes {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::thrownBy;

using Trace = std::vector<std::string>;

// Layouts are compiled in place, under the name given.
inline void writeLayout(const std::string& name, std::string_view source) {
  testing_support::TestPlatform::write(
      std::filesystem::path(platform::current().folders().assets) / (name + ".kil"),
      layouts::toBytes(layouts::compile(source, name)));
}

struct Phone : testing_support::WindowPhone {
  explicit Phone(ui::Size size = {320, 568}, double textScale = 1)
      : WindowPhone({.size = size, .textScale = textScale}) {
    registerData();
    registerViews();
    lendServices();
    KesLayoutBuilder::state() = {};
  }
};

class ViewsTest : public testing::Test {
 public:
  Phone phone;
};

// Stands in for a custom view of that name, and shows nothing. The name has to outlive the
// program, as a literal does.
template <const char* Name>
class Bystander final : public Object {
 public:
  static void describe(ClassBuilder<Bystander>& c) {
    c.name(Name);
    c.template method<&Bystander::create>("DesignerCreateView:::");
  }
  void create(KesPanelWrapper, KesLabelWrapper, KesMap) {}
};

// A page without bars, fitted to the window.
inline KesPage showPage(Phone& phone, const Ref<Kes>& bi, const char* prefix) {
  KesPage page;
  page.Initialize(bi, prefix);
  phone.window->setRootViewController(page.native());
  phone.pump.drain();
  return page;
}

}  // namespace kes
