// varlo-townhost: the town's host as a program of its own.
#include <pthread.h>
#include <signal.h>

#include <charconv>
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "programs/tool.h"
#include "townhost/civil_time.h"
#include "townhost/town_export.h"
#include "townhost/town_host.h"

namespace {

constexpr const char* usage =
    "usage: varlo-townhost [--port N] [--now ISO-TIME] [--released X]\n"
    "       varlo-townhost --export DIR [--url URL] [--now ISO-TIME] [--released X]\n"
    "Serves the town's documents on 127.0.0.1 until it is interrupted; or writes them as files\n"
    "below DIR, to be served from URL.\n";

// A clock that starts at the given instant and goes on from there.
std::function<std::int64_t()> clockFrom(town::Instant start) {
  const auto begin = std::chrono::steady_clock::now();
  return [start, begin] {
    const auto passed = std::chrono::steady_clock::now() - begin;
    return start + std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  };
}

struct Export {
  std::string folder;  // empty: serve
  std::string url = "https://documenti.varlo.example";
};

void write(const Export& files, const town::TownHost::Options& options) {
  town::TownExport wanted;
  wanted.now = options.now ? options.now() : town::machineTime();
  wanted.version = options.version;
  wanted.url = files.url;
  const int written = town::exportTown(files.folder, wanted);
  std::cout << written << " files in " << files.folder << "\n";
}

int portOf(const std::string& text) {
  int port = 0;
  const char* end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, port);
  if (error != std::errc() || at != end || port < 0 || port > 65535)
    throw std::invalid_argument("--port is 0 to 65535, not " + text);
  return port;
}

void read(int argc, char** argv, town::TownHost::Options& options, Export& files) {
  for (int i = 1; i < argc; i += 2) {
    const std::string name = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
    if (name == "--port") {
      options.port = portOf(value);
    } else if (name == "--now") {
      const auto start = town::parseInstant(value);
      if (!start) throw std::invalid_argument("no such time: " + value);
      options.now = clockFrom(*start);
    } else if (name == "--export") {
      files.folder = value;
    } else if (name == "--url") {
      files.url = value;
      while (files.url.ends_with('/')) files.url.pop_back();
    } else if (name == "--released") {
      options.version = value;
    } else {
      throw std::invalid_argument("unknown option " + name);
    }
    if (value.empty()) throw std::invalid_argument(name + " needs a value");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (programs::answered(argc, argv, "varlo-townhost", usage)) return 0;
  town::TownHost::Options options;
  Export files;
  try {
    read(argc, argv, options, files);
  } catch (const std::invalid_argument& fault) {
    std::cerr << "varlo-townhost: " << fault.what() << "\n" << usage;
    return 2;
  }
  // Blocked before the host starts its threads, so that only sigwait gets them.
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  try {
    if (!files.folder.empty()) {
      write(files, options);
      return 0;
    }
    town::TownHost host(options);
    std::cout << host.url() << std::endl;
    int signal = 0;
    sigwait(&ends, &signal);
  } catch (const std::exception& fault) {
    std::cerr << "varlo-townhost: " << fault.what() << '\n';
    return 1;
  }
  return 0;
}
