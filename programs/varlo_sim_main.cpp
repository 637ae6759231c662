// varlo-sim: the app on a simulated phone, with the town's host in the same process.
#include <exception>
#include <iostream>

#include "programs/tool.h"
#include "simulator/phone.h"
#include "simulator/player.h"
#include "simulator/tour.h"

namespace {

int play(const sim::Options& options, const sim::Script& script) {
  sim::Phone phone(options);
  phone.start();
  if (!options.script.empty()) {
    try {
      sim::Player(phone, std::cout).play(script);
    } catch (const sim::ScriptError& e) {
      std::cerr << options.script << ": " << e.what() << "\n";
      return phone.endedBy() ? 128 + phone.endedBy() : 1;
    }
    return 0;
  }
  if (!options.tour.empty()) return sim::makeTour(phone, options.tour, std::cout) ? 0 : 1;
  const int status = phone.side().run();
  return phone.endedBy() ? 128 + phone.endedBy() : status;
}

}  // namespace

int main(int argc, char** argv) {
  if (programs::answered(argc, argv, "varlo-sim", sim::Options::usage())) return 0;
  try {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    auto options = sim::Options::parse(arguments);
    if (options.help) {
      std::cout << sim::Options::usage();
      return 0;
    }
    sim::Script script;
    if (!options.script.empty()) {
      // The script's own wishes come first: the command line overrides them.
      script = sim::Script::load(options.script);
      auto wishes = script.options;
      wishes.insert(wishes.end(), arguments.begin(), arguments.end());
      options = sim::Options::parse(wishes);
    }
    return play(options, script);
  } catch (const sim::ScriptError& e) {
    std::cerr << "varlo-sim: " << e.what() << "\n";
    return 1;
  } catch (const std::exception& e) {
    std::cerr << "varlo-sim: " << e.what() << "\n";
    return 2;
  }
}
