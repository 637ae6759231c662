#include "runtime/views/dialogs/message_box.h"

#include "platform/ui/application.h"
#include "platform/ui/overlays/dialog.h"
#include "runtime/views/base/text_form.h"

namespace kes {

namespace {

class MessageBox final : public Object {
 public:
  std::string_view className() const override { return "UIAlertView"; }
};

// Shows the box; the answer is raised on the sender's Kes under its prefix.
Ref<MessageBox> show(const Ref<Kes>& bi, const Text& prefix, std::string_view suffix,
                     const Value& message, const Value& title, const KesList& buttons) {
  auto box = platform::makeShared<MessageBox>();
  KesObjectWrapper::setBIAndEventName(*box, bi, prefix);
  auto* app = ui::Application::current();
  if (!app) return box;
  std::vector<std::string> texts;
  for (const Value& button : buttons) texts.push_back(textForm(button));
  app->messageBox(textForm(title), textForm(message), texts,
                  [box, suffix = Text(suffix), texts](int index) {
                    const bool known = index >= 0 && static_cast<std::size_t>(index) < texts.size();
                    KesObjectWrapper::raiseUIEvent(
                        *box, suffix, {known ? texts[static_cast<std::size_t>(index)] : ""});
                  });
  return box;
}

}  // namespace

void Msgbox(const Value& message, const Value& title) {
  show(nullptr, "", "_click:", message, title, KesList::of({"OK"}));
}

void Msgbox2(const Ref<Kes>& bi, const Text& eventPrefix, const Value& message, const Value& title,
             const KesList& buttons) {
  show(bi, eventPrefix, "_click:", message, title, buttons);
}

Value Msgbox2Async(const Ref<Kes>& bi, const Value& message, const Value& title,
                   const KesList& buttons) {
  return show(bi, "msgbox", "_result:", message, title, buttons);
}

}  // namespace kes
