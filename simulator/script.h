// A script for the simulated phone, line by line, as data.
//
// One command a line; blank lines and lines that start with "# " or "#!" say nothing. A
// line "#! --now 2026-11-21T20:00" names options with which the script wants to be
// played. Texts stand in quotes, with \" \\ and \n. parse() throws ScriptError.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace sim {

class ScriptError : public std::runtime_error {
 public:
  ScriptError(int line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what), line(line) {}
  int line;
};

struct Command {
  enum class Verb {
    Tap,         // tap "text" [n] | tap #name [n] | tap @x,y (points): text, number
    Type,        // type "text"
    Swipe,       // swipe left|right|up|down: text
    Key,         // key tab|backtab|enter|space|escape|up|down|left|right|pageup|pagedown|
                 // home|end|f10 (the menu): text
    Back,        // back
    Menu,        // menu
    WaitIdle,    // wait idle
    WaitTime,    // wait MS: number
    Expect,      // expect "text" [n]: something contains it (n of them at least), in sight
                 // or to be scrolled to, up and down
    Absent,      // absent "text"
    Named,       // named "role" "name": an element with this role and accessible name
    Focused,     // focused "name": the element that has the focus
    Opened,      // opened "url-prefix"
    Logged,      // logged "text": a line of the log contains it
    Fault,       // fault {json} | fault none: text
    Push,        // push {json}: text
    Notified,    // notified "text": a notification with this body was shown
    Background,  // background
    Foreground,  // foreground
    Shot,        // shot FILE: text
    Dump,        // dump [FILE]: text
  };

  Verb verb;
  int line = 0;
  std::string text;
  std::string second;
  int number = 1;
};

struct Script {
  std::vector<std::string> options;
  std::vector<Command> commands;

  static Script parse(const std::string& source);
  static Script load(const std::string& path);
};

}  // namespace sim
