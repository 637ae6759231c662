#include "platform/ui/values/branding.h"

#include <utility>

namespace ui {

namespace {

struct Branding {
  Words words;
  Looks looks;
};

Branding& branding() {
  static Branding only;
  return only;
}

}  // namespace

const Words& words() { return branding().words; }
const Looks& looks() { return branding().looks; }
void setBranding(Words words, Looks looks) { branding() = {std::move(words), looks}; }

}  // namespace ui
