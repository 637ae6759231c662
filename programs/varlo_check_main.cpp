// varlo-check: says what is wrong with a town's documents, and what a citizen sees for it.
#include <cstdio>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <string>

#include "checker/report.h"
#include "programs/tool.h"

namespace {

constexpr const char* usage =
    "usage: varlo-check [--lang it|en] [--json] [--now YYYY-MM-DD] [--no-links] URL|DIR\n"
    "Reads the documents of a town from its address, or from a folder with its files, and\n"
    "says what is wrong and what a citizen sees for it. --no-links asks no address that the\n"
    "documents point to. Exit status 0: all well, 1: something is wrong, 2: they could not\n"
    "be read.\n";

struct Asked {
  check::Language language = check::Language::Italian;
  bool json = false;
  check::TownOptions town;
  std::string where;
};

// The day on this machine's calendar: shortly after midnight it is not that of UTC.
std::chrono::sys_days today() {
  using namespace std::chrono;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday;
}

std::chrono::sys_days parseDay(const std::string& text) {
  int y = 0;
  unsigned m = 0, d = 0;
  char more = 0;
  const int read = std::sscanf(text.c_str(), "%4d-%2u-%2u%c", &y, &m, &d, &more);
  const std::chrono::year_month_day day{std::chrono::year(y), std::chrono::month(m),
                                        std::chrono::day(d)};
  if (read < 3 || (read == 4 && more != 'T') || !day.ok())
    throw std::invalid_argument("no such day: " + text);
  return day;
}

Asked parse(int argc, char** argv) {
  Asked asked;
  asked.town.today = today();
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    const auto value = [&]() -> std::string {
      if (i + 1 == argc) throw std::invalid_argument(name + " needs a value");
      return argv[++i];
    };
    if (name == "--json") {
      asked.json = true;
    } else if (name == "--no-links") {
      asked.town.links = false;
    } else if (name == "--lang") {
      const auto language = value();
      if (language != "it" && language != "en")
        throw std::invalid_argument("--lang is it or en, not " + language);
      asked.language = language == "it" ? check::Language::Italian : check::Language::English;
    } else if (name == "--now") {
      asked.town.today = parseDay(value());
    } else if (name.starts_with('-') || !asked.where.empty()) {
      throw std::invalid_argument("unknown option " + name);
    } else {
      asked.where = name;
    }
  }
  if (asked.where.empty()) throw std::invalid_argument("no address and no folder was named");
  return asked;
}

}  // namespace

int main(int argc, char** argv) {
  if (programs::answered(argc, argv, "varlo-check", usage)) return 0;
  try {
    const Asked asked = parse(argc, argv);
    const auto source = check::openTown(asked.where);
    const auto report = check::checkTown(*source, asked.town);
    std::cout << (asked.json ? check::reportJson(report, asked.language)
                             : check::reportText(report, asked.language));
    if (report.documents == 0) return 2;
    return report.findings.empty() ? 0 : 1;
  } catch (const std::invalid_argument& fault) {
    std::cerr << "varlo-check: " << fault.what() << "\n" << usage;
  } catch (const std::exception& fault) {
    std::cerr << "varlo-check: " << fault.what() << "\n";
  }
  return 2;
}
