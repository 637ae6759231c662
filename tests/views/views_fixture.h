// What the tests of the runtime's views share: layouts compiled in place, and stand-ins.
#pragma once

#include "runtime/views/app/app_delegate.h"
#include "runtime/views/wrappers/label_wrapper.h"
#include "tests/support/failures.h"
#include "tests/support/runtime_phone.h"
#include "tools/layout_bytes.h"
#include "tools/layout_compiler.h"

namespace kes {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::thrownBy;

// Layouts are compiled in place, under the name given.
inline void writeLayoutBytes(const std::string& name, std::string_view bytes) {
  testing_support::TestPlatform::write(
      std::filesystem::path(platform::current().folders().assets) / (name + ".kil"), bytes);
}
inline void writeLayout(const std::string& name, const layouts::Layout& layout) {
  writeLayoutBytes(name, layouts::toBytes(layout));
}
inline void writeLayout(const std::string& name, std::string_view source) {
  writeLayout(name, layouts::compile(source, name));
}

class ViewsTest : public testing::Test {
 public:
  RuntimePhone phone;
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

}  // namespace kes
