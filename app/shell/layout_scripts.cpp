#include "app/shell/layout_scripts.h"

#include <algorithm>

#include "runtime/views/layout/layout_builder.h"

namespace varlo {

using namespace kes;

namespace {

constexpr float kScaleRate = 0.3f;

template <std::size_t N>
struct Name {
  constexpr Name(const char (&text)[N]) { std::copy_n(text, N, chars); }
  char chars[N];
};

template <Name Layout>
class LayoutScript final : public Object {
 public:
  static void describe(ClassBuilder<LayoutScript>& c) {
    c.name(std::string("LS_") + Layout.chars);
    c.template method<&LayoutScript::LS_general>("LS_general:::");
  }

  void LS_general(Ref<KesLayoutData> layout, std::int32_t width, std::int32_t height) {
    KesLayoutBuilder::setScaleRate(kScaleRate);
    KesLayoutBuilder::scaleAll(layout, width, height);
  }
};

}  // namespace

void registerLayoutScripts() {
  ClassRegistry::instance()
      .addAll<LayoutScript<"layatti">, LayoutScript<"layclv">, LayoutScript<"layempty">,
              LayoutScript<"laylbl">, LayoutScript<"laymenu">, LayoutScript<"laymenuday">,
              LayoutScript<"laymenuscuola">, LayoutScript<"layscview">, LayoutScript<"laysv">,
              LayoutScript<"layweb">, LayoutScript<"laywebtitle">, LayoutScript<"lay_item">>();
}

}  // namespace varlo
