// Plays a script on the simulated phone. A line that fails ends it with ScriptError, which
// carries the line's number; files are written as the script names them. Main thread.
#pragma once

#include <functional>
#include <iosfwd>

#include "simulator/phone.h"
#include "simulator/script.h"

namespace sim {

class Player {
 public:
  Player(Phone& phone, std::ostream& out) : phone_(phone), out_(out) {}

  void play(const Script& script);
  void perform(const Command& command);

  // Comes to rest, or throws with what is still going on.
  void waitIdle(int line = 0);
  void tap(const std::string& what, int nth, int line = 0);

 private:
  void expect(const Command& c);
  int lookFurtherDown(const std::string& text);
  void swipe(const Command& c);
  void named(const Command& c);
  void focused(const Command& c);
  void notified(const Command& c);
  void dump(const Command& c);
  void check(const Command& c, const std::string& complaint) const;
  [[noreturn]] void fail(int line, const std::string& what) const;

  Phone& phone_;
  std::ostream& out_;
};

}  // namespace sim
