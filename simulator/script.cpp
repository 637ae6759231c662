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
  std::string oneOf(const std::vector<const char*>& words) {
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

// What stands behind a verb.
enum class Wants {
  Nothing,
  Quoted,
  QuotedTwice,
  QuotedAndCount,
  Target,
  OneOf,
  Object,
  File,
  MaybeFile,
  Wait
};

struct Grammar {
  Verb verb;
  Wants wants = Wants::Nothing;
  std::vector<const char*> words = {};  // one of which it wants
};

const Grammar* grammarOf(const std::string& verb) {
  static const std::map<std::string, Grammar> verbs = {
      {"tap", {Verb::Tap, Wants::Target}},
      {"type", {Verb::Type, Wants::Quoted}},
      {"swipe", {Verb::Swipe, Wants::OneOf, {"left", "right", "up", "down"}}},
      {"key",
       {Verb::Key,
        Wants::OneOf,
        {"tab", "backtab", "enter", "space", "escape", "up", "down", "left", "right", "pageup",
         "pagedown", "home", "end", "f10"}}},
      {"back", {Verb::Back}},
      {"menu", {Verb::Menu}},
      {"wait", {Verb::WaitTime, Wants::Wait}},
      {"expect", {Verb::Expect, Wants::QuotedAndCount}},
      {"absent", {Verb::Absent, Wants::Quoted}},
      {"named", {Verb::Named, Wants::QuotedTwice}},
      {"focused", {Verb::Focused, Wants::Quoted}},
      {"opened", {Verb::Opened, Wants::Quoted}},
      {"logged", {Verb::Logged, Wants::Quoted}},
      {"notified", {Verb::Notified, Wants::Quoted}},
      {"fault", {Verb::Fault, Wants::Object}},
      {"push", {Verb::Push, Wants::Object}},
      {"background", {Verb::Background}},
      {"foreground", {Verb::Foreground}},
      {"shot", {Verb::Shot, Wants::File}},
      {"dump", {Verb::Dump, Wants::MaybeFile}},
  };
  const auto found = verbs.find(verb);
  return found == verbs.end() ? nullptr : &found->second;
}

void parseWait(Line& line, Command& c) {
  const auto what = line.rest();
  if (what == "idle") {
    c.verb = Verb::WaitIdle;
    return;
  }
  Line time(what, c.line);
  c.number = time.number(0, 3600000);
  if (!time.atEnd()) time.fail("nothing more is wanted after the time");
}

void parseArguments(Line& line, const Grammar& grammar, Command& c) {
  const auto wanted = [&](std::string text, const char* complaint) {
    if (text.empty()) line.fail(complaint);
    return text;
  };
  const auto count = [&] {
    if (!line.atEnd()) c.number = line.number(1, 100000);
  };
  switch (grammar.wants) {
    case Wants::Nothing:
      break;
    case Wants::Quoted:
      c.text = line.quoted();
      break;
    case Wants::QuotedTwice:
      c.text = line.quoted();
      c.second = line.quoted();
      break;
    case Wants::QuotedAndCount:
      c.text = line.quoted();
      count();
      break;
    case Wants::Target:
      c.text = wanted(line.quoteFollows() ? line.quoted() : line.word(), "what is to be tapped?");
      count();
      break;
    case Wants::OneOf:
      c.text = line.oneOf(grammar.words);
      break;
    case Wants::Object:
      c.text = wanted(line.rest(), "a JSON object is wanted here");
      break;
    case Wants::File:
      c.text = wanted(line.rest(), "a file name is wanted here");
      break;
    case Wants::MaybeFile:
      c.text = line.rest();
      break;
    case Wants::Wait:
      parseWait(line, c);
      break;
  }
}

Command parseCommand(Line& line, int number) {
  const std::string verb = line.word();
  const Grammar* grammar = grammarOf(verb);
  if (!grammar) line.fail("unknown command \"" + verb + "\"");
  Command c{grammar->verb, number, {}, {}, 1};
  parseArguments(line, *grammar, c);
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
