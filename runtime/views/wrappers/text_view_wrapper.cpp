#include "runtime/views/wrappers/text_view_wrapper.h"

#include "platform/ui/application.h"
#include "runtime/views/base/properties.h"
#include "runtime/views/richtext/attributed_string.h"

namespace kes {

void KesTextViewWrapper::innerInitialize(const Ref<Kes>& bi, const kes::Text& eventName,
                                         bool keep) {
  KesViewWrapper::innerInitialize(bi, eventName, keep);
  ui::TextView& text = self();
  if (hasMethod(text, "_textchanged::"))
    text.onTextChanged = [&text](const std::string& former, const std::string& now) {
      raiseUIEvent(text, "_textchanged::", {former, now});
    };
  if (hasMethod(text, "_beginedit"))
    text.onBeginEdit = [&text] { raiseUIEvent(text, "_beginedit", {}); };
  if (hasMethod(text, "_endedit")) text.onEndEdit = [&text] { raiseUIEvent(text, "_endedit", {}); };
  if (hasMethod(text, "_linkclick:"))
    text.onLinkClick = [&text](const std::string& url) {
      raiseUIEvent(text, "_linkclick:", {url});
    };
  else
    text.onLinkClick = [](const std::string& url) {
      if (auto* app = ui::Application::current()) app->openUrl(url);
    };
}

Ref<ui::View> KesTextViewWrapper::build(Ref<ui::View> view, const Dictionary& properties,
                                        bool bridge) const {
  auto text = ensure(view);
  text->setEditable(props::flag(properties, "editable"));
  buildText(*text, properties);
  text->setAlignment(textAlign(props::integer(properties, "textAlignment")));
  text->setTraits(traitsOf(properties));
  // A text view cannot be switched off: nothing of the controls' common ground is read.
  // NOLINTNEXTLINE(bugprone-parent-virtual-call)
  return KesViewWrapper::build(text, properties, bridge);
}

void KesTextViewWrapper::setAttributedText(const Value& text) {
  self().setAttributedText(AttributedString::from(text));
}

}  // namespace kes
