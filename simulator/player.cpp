#include "simulator/player.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <ostream>

#include "platform/ui/controls/map_view.h"
#include "platform/ui/reading/accessibility.h"
#include "platform/ui/reading/dump.h"
#include "platform/ui/reading/finder.h"

namespace sim {

namespace {

constexpr std::int64_t kIdleTimeout = 30000;

ui::Key keyNamed(const std::string& name) {
  static const std::map<std::string, ui::Key> keys = {
      {"tab", ui::Key::Tab},       {"backtab", ui::Key::BackTab},   {"enter", ui::Key::Enter},
      {"space", ui::Key::Space},   {"escape", ui::Key::Escape},     {"up", ui::Key::Up},
      {"down", ui::Key::Down},     {"left", ui::Key::Left},         {"right", ui::Key::Right},
      {"pageup", ui::Key::PageUp}, {"pagedown", ui::Key::PageDown}, {"home", ui::Key::Home},
      {"end", ui::Key::End},       {"f10", ui::Key::Menu}};
  return keys.at(name);
}

bool visible(const ui::View& view, const ui::Window& window) {
  bool seen = false;
  window.visitVisible([&](const ui::Visible& v) {
    seen = seen || &v.view == &view;
    return !seen;
  });
  return seen;
}

// Overlay and toast are as visible as the page, though no tap reaches what is under them.
int countVisible(const ui::Window& window, const std::string& text) {
  int count = 0;
  window.visitVisible([&](const ui::Visible& v) {
    if (v.view.displayText().find(text) != std::string::npos) ++count;
    return true;
  });
  return count;
}

// What lies sideways is another page until somebody turns to it.
bool liesAboveOrBelow(const ui::View& view) {
  const double x = view.frameInWindow().center().x;
  for (const ui::View* v = view.parent(); v; v = v->parent()) {
    const ui::Rect frame = v->frameInWindow();
    if (v->clipsToBounds() && (x < frame.x || x >= frame.right())) return false;
  }
  return true;
}

}  // namespace

void Player::fail(int line, const std::string& what) const { throw ScriptError(line, what); }

void Player::play(const Script& script) {
  for (const Command& command : script.commands) {
    if (phone_.endedBy()) fail(command.line, "ended by a signal");
    try {
      perform(command);
    } catch (const ScriptError&) {
      throw;
    } catch (const std::exception& e) {
      fail(command.line, e.what());
    }
  }
}

void Player::waitIdle(int line) {
  const auto busy = [&] {
    if (phone_.endedBy()) fail(line, "ended by a signal");
    return phone_.busy();
  };
  if (phone_.side().settle(busy, kIdleTimeout)) return;
  fail(line, "still busy after 30 s: " + phone_.whatIsGoingOn());
}

void Player::tap(const std::string& what, int nth, int line) {
  auto& window = phone_.window();
  phone_.application().layoutIfNeeded();
  double x = 0, y = 0;
  if (std::sscanf(what.c_str(), "@%lf,%lf", &x, &y) == 2) {
    phone_.side().tap({x, y});
    return;
  }
  const auto view = ui::find(window, what, nth);
  if (!view) fail(line, "nothing to tap reads \"" + what + "\"");
  if (!visible(*view, window)) ui::scrollIntoView(*view);
  if (auto* marker = dynamic_cast<ui::MapMarker*>(view.get())) {
    // As one looks for a pin: closer, until it can be told from the others.
    marker->singleOut();
    phone_.side().settle({}, kIdleTimeout);
  }
  phone_.application().layoutIfNeeded();
  phone_.side().tap(ui::tapPoint(*view));
}

void Player::expect(const Command& c) {
  phone_.application().layoutIfNeeded();
  int count = countVisible(phone_.window(), c.text);
  if (c.verb == Command::Verb::Absent) {
    if (count) fail(c.line, "\"" + c.text + "\" is there");
    return;
  }
  if (count < c.number) count = std::max(count, lookFurtherDown(c.text));
  if (count < c.number) {
    fail(c.line, "\"" + c.text + "\" is there " + std::to_string(count) + " times, not " +
                     std::to_string(c.number) + ", on:\n" + ui::dump(phone_.window()));
  }
}

// How often a text is read by who scrolls through the page, which ends at the last of them.
int Player::lookFurtherDown(const std::string& text) {
  int count = 0;
  for (const auto& view : ui::findAll(phone_.window(), text)) {
    if (view->displayText().find(text) == std::string::npos || !liesAboveOrBelow(*view)) continue;
    ui::scrollIntoView(*view);
    phone_.application().layoutIfNeeded();
    ++count;
  }
  return count;
}

void Player::swipe(const Command& c) {
  const auto bounds = phone_.application().screenBounds();
  const double x = bounds.width / 2, y = bounds.height / 2;
  const double far = 0.35;
  ui::Point from{x, y}, to{x, y};
  if (c.text == "left") from.x = x * (1 + far), to.x = x * far;
  if (c.text == "right") from.x = 5, to.x = x * (1 + far);
  if (c.text == "up") from.y = y * (1 + far), to.y = y * far;
  if (c.text == "down") from.y = y * far, to.y = y * (1 + far);
  phone_.side().drag(from, to);
}

void Player::named(const Command& c) {
  phone_.application().layoutIfNeeded();
  std::string all;
  for (const auto& element : ui::accessibilityTree(phone_.window())) {
    const std::string role(ui::roleName(element.role));
    if (role == c.text && element.name == c.second) return;
    all += "\n  " + role + " " + ui::quoted(element.name);
  }
  fail(c.line, "no " + c.text + " named \"" + c.second + "\" among:" + all);
}

void Player::focused(const Command& c) {
  const auto* view = phone_.application().focus().view();
  const std::string name = view ? view->accessibleName() : "";
  if (name.find(c.text) == std::string::npos)
    fail(c.line, "the focus is on \"" + name + "\", not on \"" + c.text + "\"");
}

void Player::notified(const Command& c) {
  const auto& shown = phone_.application().notifications();
  if (std::any_of(shown.begin(), shown.end(), [&](const auto& n) { return n.body == c.text; }))
    return;
  fail(c.line, shown.empty() ? "no notification was shown"
                             : "the last notification was \"" + shown.back().body + "\"");
}

void Player::dump(const Command& c) {
  phone_.application().layoutIfNeeded();
  const std::string text = ui::dump(phone_.window());
  if (c.text.empty()) {
    out_ << text;
    return;
  }
  std::ofstream file(c.text, std::ios::binary);
  if (!(file << text)) fail(c.line, "cannot write " + c.text);
}

// Fails at the script's line with the complaint, if there is one.
void Player::check(const Command& c, const std::string& complaint) const {
  if (!complaint.empty()) fail(c.line, complaint);
}

void Player::perform(const Command& c) {
  using Verb = Command::Verb;
  auto& side = phone_.side();
  auto& application = phone_.application();
  switch (c.verb) {
    case Verb::Tap:
      return tap(c.text, c.number, c.line);
    case Verb::Type:
      return side.type(c.text);
    case Verb::Swipe:
      return swipe(c);
    case Verb::Key:
      return side.press(keyNamed(c.text));
    case Verb::Back:
      return side.press(ui::Key::Back);
    case Verb::Menu:
      return tap("Menu", 1, c.line);
    case Verb::WaitIdle:
      return waitIdle(c.line);
    case Verb::WaitTime:
      return side.pass(c.number);
    case Verb::Expect:
    case Verb::Absent:
      return expect(c);
    case Verb::Named:
      return named(c);
    case Verb::Focused:
      return focused(c);
    case Verb::Opened:
      return check(c, application.lastOpenedUrl().starts_with(c.text)
                          ? ""
                          : "last opened was \"" + application.lastOpenedUrl() + "\"");
    case Verb::Logged:
      return check(c, phone_.logged(c.text) ? "" : "no line of the log has \"" + c.text + "\"");
    case Verb::Fault:
      return check(c, phone_.setFaults(c.text));
    case Verb::Push:
      return check(c, phone_.push(c.text));
    case Verb::Notified:
      return notified(c);
    case Verb::Background:
      return application.enterBackground();
    case Verb::Foreground:
      return application.activate();
    case Verb::Shot:
      return check(c, side.shot(c.text) ? "" : "no picture was made of it: " + c.text);
    case Verb::Dump:
      return dump(c);
  }
}

}  // namespace sim
