#include "simulator/script.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace sim {

namespace {

using Verb = Command::Verb;

class Line {
 public:
  Line(const std::string& text, int number) : text_(text), number_(number) {}

  [[noreturn]] void fail(const std::string& what) const { throw ScriptError(number_, what); }

  void skipBlanks() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
  }
  bool atEnd() {
    skipBlanks();
    return at_ == text_.size();
  }
  std::string word() {
    skipBlanks();
    const auto begin = at_;
    while (at_ < text_.size() && !std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    return text_.substr(begin, at_ - begin);
  }
  std::string rest() {
    skipBlanks();
    auto r = text_.substr(at_);
    at_ = text_.size();
    while (!r.empty() && std::isspace(static_cast<unsigned char>(r.back()))) r.pop_back();
    return r;
  }
  bool quoteFollows() {
    skipBlanks();
    return at_ < text_.size() && text_[at_] == '"';
  }
  std::string quoted() {
    if (!quoteFollows()) fail("a text in quotes is wanted here");
    std::string out;
    for (++at_; at_ < text_.size(); ++at_) {
      char ch = text_[at_];
      if (ch == '"') {
        ++at_;
        return out;
      }
      if (ch == '\\' && at_ + 1 < text_.size()) {
        ch = text_[++at_];
        if (ch == 'n') ch = '\n';
      }
      out += ch;
    }
    fail("the text has no closing quote");
  }
  int number(int low, int high) {
    const auto w = word();
    if (w.empty() ||
        !std::all_of(w.begin(), w.end(), [](unsigned char c) { return std::isdigit(c); }) ||
        w.size() > 8)
      fail("a number is wanted in place of \"" + w + "\"");
    const int n = std::stoi(w);
    if (n < low || n > high) fail("the number is out of range: " + w);
    return n;
  }
  std::string oneOf(std::initializer_list<const char*> words) {
    const auto w = word();
    for (const char* each : words)
      if (w == each) return w;
    std::string all;
    for (const char* each : words) all += (all.empty() ? "" : ", ") + std::string(each);
    fail("one of " + all + " is wanted in place of \"" + w + "\"");
  }

 private:
  const std::string& text_;
  int number_;
  std::size_t at_ = 0;
};

Command parseCommand(Line& line, int number) {
  Command c{Verb::Back, number, {}, {}, 1};
  const std::string verb = line.word();
  if (verb == "tap") {
    c.verb = Verb::Tap;
    c.text = line.quoteFollows() ? line.quoted() : line.word();
    if (c.text.empty()) line.fail("what is to be tapped?");
    if (!line.atEnd()) c.number = line.number(1, 100000);
  } else if (verb == "type") {
    c.verb = Verb::Type;
    c.text = line.quoted();
  } else if (verb == "swipe") {
    c.verb = Verb::Swipe;
    c.text = line.oneOf({"left", "right", "up", "down"});
  } else if (verb == "key") {
    c.verb = Verb::Key;
    c.text = line.oneOf({"tab", "backtab", "enter", "space", "escape", "up", "down", "left",
                         "right", "pageup", "pagedown", "home", "end", "f10"});
  } else if (verb == "back") {
    c.verb = Verb::Back;
  } else if (verb == "menu") {
    c.verb = Verb::Menu;
  } else if (verb == "wait") {
    const auto what = line.rest();
    if (what == "idle") {
      c.verb = Verb::WaitIdle;
    } else {
      Line time(what, number);
      c.verb = Verb::WaitTime;
      c.number = time.number(0, 3600000);
      if (!time.atEnd()) time.fail("nothing more is wanted after the time");
    }
  } else if (verb == "expect") {
    c.verb = Verb::Expect;
    c.text = line.quoted();
    if (!line.atEnd()) c.number = line.number(1, 100000);
  } else if (verb == "absent") {
    c.verb = Verb::Absent;
    c.text = line.quoted();
  } else if (verb == "named") {
    c.verb = Verb::Named;
    c.text = line.quoted();
    c.second = line.quoted();
  } else if (verb == "focused") {
    c.verb = Verb::Focused;
    c.text = line.quoted();
  } else if (verb == "opened") {
    c.verb = Verb::Opened;
    c.text = line.quoted();
  } else if (verb == "logged") {
    c.verb = Verb::Logged;
    c.text = line.quoted();
  } else if (verb == "notified") {
    c.verb = Verb::Notified;
    c.text = line.quoted();
  } else if (verb == "fault" || verb == "push") {
    c.verb = verb == "push" ? Verb::Push : Verb::Fault;
    c.text = line.rest();
    if (c.text.empty()) line.fail("a JSON object is wanted here");
  } else if (verb == "background") {
    c.verb = Verb::Background;
  } else if (verb == "foreground") {
    c.verb = Verb::Foreground;
  } else if (verb == "shot") {
    c.verb = Verb::Shot;
    c.text = line.rest();
    if (c.text.empty()) line.fail("a file name is wanted here");
  } else if (verb == "dump") {
    c.verb = Verb::Dump;
    c.text = line.rest();
  } else {
    line.fail("unknown command \"" + verb + "\"");
  }
  if (!line.atEnd()) line.fail("nothing more is wanted after \"" + verb + "\"");
  return c;
}

}  // namespace

Script Script::parse(const std::string& source) {
  Script script;
  std::istringstream lines(source);
  std::string text;
  for (int number = 1; std::getline(lines, text); ++number) {
    Line line(text, number);
    if (line.atEnd()) continue;
    if (text.starts_with("#!")) {
      Line options(text, number);
      options.word();
      while (!options.atEnd()) script.options.push_back(options.word());
    } else if (!text.starts_with("#")) {
      script.commands.push_back(parseCommand(line, number));
    }
  }
  return script;
}

Script Script::load(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read the script " + path);
  std::ostringstream all;
  all << file.rdbuf();
  return parse(all.str());
}

}  // namespace sim
