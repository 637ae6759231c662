// The documents of one town while they are looked at: each of those under a path of its own
// is read once, what can't be read becomes a finding, and the addresses that documents point
// to are gathered.
//
// Lives as long as one check; source and report outlive it. One thread.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "checker/json.h"
#include "checker/shapes.h"
#include "checker/source.h"
#include "checker/town_check.h"

namespace check {

class TownReader {
 public:
  using Document = std::unique_ptr<rapidjson::Document>;  // null: it could not be read

  // Where something was found: "" for the document, or the record, as a whole.
  struct Where {
    std::string document, record, field;
  };

  TownReader(Source& source, TownReport& report) : source_(source), report_(report) {}

  void add(const Where& where, Words found, Words expected, Words citizen);
  Findings& findings() { return report_.findings; }

  // The document's text or tree; where there is none, a finding says what the citizen is
  // `without`.
  std::optional<std::string> readText(const std::string& path, const Words& without);
  Document readJson(const std::string& path, const Words& without);
  // Nothing, and no finding, where this address does not serve it.
  Document readService(const std::string& path, const Words& without);
  // What the field leads to, on the town's host or on another.
  Document readLinked(const std::string& url, const Where& from, const Words& without);

  // Those under a path of their own: read all, held against their shapes and kept; null for
  // one that could not be read.
  void readAll();
  const Json* document(const std::string& path) const;
  // The records of such a list, those that are objects; 1 is the first.
  template <class See>
  void eachOf(const char* path, See see) const {
    const Json* list = document(path);
    if (!list || !list->IsArray()) return;
    int number = 0;
    for (const Json& record : list->GetArray()) {
      ++number;
      if (record.IsObject()) see(record, number);
    }
  }

  // Addresses of the web, which are asked at the end; others are passed over.
  void link(const Where& from, const std::string& url);
  void checkLinks();

 private:
  struct Link {
    Where from;
    std::string url;
  };
  Document parsed(const std::string& path, const std::string& text, const Words& without);
  Document answered(const std::string& path, const Answer& answer, const Where& where,
                    const Words& without);
  // What is wrong with an address of the web: nothing where it answers.
  Words faultOf(const std::string& url);

  Source& source_;
  TownReport& report_;
  std::map<std::string, Document> kept_;
  std::vector<Link> links_;
};

// How a report names a record: "3 (Farmacia San Rocco)".
std::string named(int number, const std::string& name);
// "21/11/2026"
std::string written(std::chrono::sys_days day);

}  // namespace check
