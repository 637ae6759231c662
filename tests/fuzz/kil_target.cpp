// A layout file: read by the tools, and loaded on a phone that is then turned.
#include <memory>

#include "components/customlistview.h"
#include "components/register_components.h"
#include "fuzz_platform.h"
#include "platform/headless/fixed_text_engine.h"
#include "platform/headless/headless_pump.h"
#include "runtime/data/files/file.h"
#include "runtime/views/app/services.h"
#include "runtime/views/layout/layout_builder.h"
#include "runtime/views/pages/page.h"
#include "runtime/views/register_views.h"
#include "target.h"
#include "tools/layout_bytes.h"
#include "tools/layout_printer.h"

namespace {

// Has variables of several kinds for views to be bound to.
class Owner final : public kes::KesClass {
 public:
  static void describe(kes::ClassBuilder<Owner>& c) {
    c.name("fuzz_owner");
    c.field<&Owner::_lbl>("lbl");
    c.field<&Owner::_pnl>("pnl");
    c.field<&Owner::_clv>("clv");
    c.field<&Owner::_any>("any");
    c.sub<&Owner::click>("btn_click");
  }
  void _initialize() { initializeClassModule(); }

  kes::KesLabelWrapper _lbl;
  kes::KesPanelWrapper _pnl;
  kes::Ref<kes::kes_customlistview> _clv;
  kes::KexViewWrapper _any;

 private:
  void click() {}
};

void readWithTools(std::string_view bytes) {
  try {
    const auto layout = layouts::fromBytes(bytes);
    const auto again = layouts::toBytes(layout);
    fuzz::require(layouts::toBytes(layouts::fromBytes(again)) == again,
                  "a layout that was read is written the same again");
    layouts::print(layout);
  } catch (const layouts::Error&) {
  }
}

}  // namespace

void fuzz::kil(Bytes input) {
  readWithTools(textOf(input));

  auto& phone = FuzzPlatform::current();
  phone.write(phone.folders().assets + "/t.kil", textOf(input));
  kes::registerViews();
  kes::lendServices();
  kes::registerComponents();
  kes::ClassRegistry::instance().addAll<Owner>();
  kes::KesLayoutBuilder::state() = {};

  headless::HeadlessScreen screen;
  headless::FixedTextEngine text;
  ui::Application app(screen, text);
  headless::HeadlessPump pump(phone.platform(), phone.clock(), screen, app);
  const auto window = ui::makeShared<ui::Window>(app.screenBounds());
  window->makeKey();
  window->show();
  const auto owner = kes::make<Owner>();
  owner->_initialize();
  kes::KesPage page;
  page.Initialize(owner->bi(), "page");
  window->setRootViewController(page.native());
  pump.drain();
  accepts([&] {
    page.RootPanel().LoadLayout("t", owner->bi());
    pump.drain();
    screen.setSize({568, 320});
    app.screenChanged();
    pump.advance(500);
  });
}
