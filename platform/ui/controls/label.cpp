#include "platform/ui/controls/label.h"

#include <algorithm>

#include "platform/ui/application.h"

namespace ui {

void Label::setMaxLines(int lines) {
  if (lines == maxLines_) return;
  maxLines_ = static_cast<std::int16_t>(lines);
  markChanged(Change::Content);
}

void Label::setShrinksToFit(bool shrinks) {
  if (shrinks == shrinks_) return;
  shrinks_ = shrinks;
  markChanged(Change::Content);
}

namespace {

// A link may be made of several runs, of different looks.
std::vector<AttributedText::Run> linkRuns(const AttributedText* text) {
  std::vector<AttributedText::Run> found;
  if (!text) return found;
  for (const auto& run : text->runs()) {
    if (!run.attributes.link) continue;
    const bool goesOn = !found.empty() && found.back().end == run.start &&
                        found.back().attributes.link == run.attributes.link;
    if (goesOn)
      found.back().end = run.end;
    else
      found.push_back(run);
  }
  return found;
}

}  // namespace

std::vector<std::string> Label::links() const {
  std::vector<std::string> urls;
  for (const auto& run : linkRuns(attributedText())) urls.push_back(*run.attributes.link);
  return urls;
}

void Label::textReplaced() {
  const bool linked = !linkRuns(attributedText()).empty();
  chosen_ = 0;
  if (linked != linked_) setUserInteraction(linked);
  linked_ = linked;
}

// Beside its links a label lets touches through, to the row that it stands in.
View* Label::hitTest(Point p) {
  View* hit = View::hitTest(p);
  if (hit != this || !linked_ || View::takesTap()) return hit;
  auto* app = Application::current();
  return app && !app->text().linkAt(*this, p).empty() ? this : nullptr;
}

void Label::tap(Point at) {
  Ref<View> pin(this);
  auto* app = Application::current();
  if (linked_ && app) {
    // A press without a finger comes in the middle, and is for the link chosen.
    std::string url = at == bounds().center() ? "" : app->text().linkAt(*this, at);
    if (url.empty() && !View::takesTap()) url = links()[chosen_];
    if (!url.empty()) {
      app->openUrl(url);
      return;
    }
  }
  View::tap(at);
}

bool Label::adjust(int steps) {
  const auto last = static_cast<int>(links().size()) - 1;
  const int next = chosen_ + steps;
  if (next < 0 || next > std::min(last, 255)) return false;
  chosen_ = static_cast<std::uint8_t>(next);
  markChanged(Change::Accessibility);
  return true;
}

std::string Label::accessibleValue() const {
  const auto runs = linked_ ? linkRuns(attributedText()) : std::vector<AttributedText::Run>();
  if (runs.size() < 2) return {};
  const auto& run = runs[chosen_];
  const auto from = utf8Offset(text(), run.start);
  return text().substr(from, utf8Offset(text(), run.end) - from);
}

Size Label::sizeThatFits(Size limit) const {
  auto size = measured(maxLines_ == 1 ? 0 : limit.width, maxLines_);
  if (!size) return bounds().size();
  if (maxLines_ != 1 && limit.width > 0) size->width = limit.width;
  return *size;
}

}  // namespace ui
