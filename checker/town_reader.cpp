#include "checker/town_reader.h"

#include <cstdio>

#include "checker/shape_check.h"

namespace check {

namespace {

// Names that are kept free for examples: asking them tells nothing.
bool isNobodys(const std::string& url) {
  const auto begin = url.find("://") + 3;
  const auto host = url.substr(begin, url.find_first_of(":/?#", begin) - begin);
  for (const char* name : {".example", ".invalid", ".test"})
    if (host.ends_with(name)) return true;
  return false;
}

Words withFault(const char* it, const char* en, const Words& fault) {
  return {std::string(it) + " (" + fault.it + ")", std::string(en) + " (" + fault.en + ")"};
}

}  // namespace

std::string named(int number, const std::string& name) {
  return std::to_string(number) + (name.empty() ? "" : " (" + name + ")");
}

std::string written(std::chrono::sys_days day) {
  const std::chrono::year_month_day d(day);
  char text[16];
  std::snprintf(text, sizeof text, "%02u/%02u/%04d", static_cast<unsigned>(d.day()),
                static_cast<unsigned>(d.month()), static_cast<int>(d.year()));
  return text;
}

void TownReader::add(const Where& where, Words found, Words expected, Words citizen) {
  findings().push_back({where.document, where.record, where.field, std::move(found),
                        std::move(expected), std::move(citizen)});
}

// --- Reading.

std::optional<std::string> TownReader::readText(const std::string& path, const Words& without) {
  auto answer = source_.read(path);
  if (!answer.good()) {
    add({path, "", ""}, withFault("non si legge", "it can't be read", answer.fault),
        {"il documento", "the document"}, without);
    return std::nullopt;
  }
  ++report_.documents;
  return std::move(answer.body);
}

TownReader::Document TownReader::parsed(const std::string& path, const std::string& text,
                                        const Words& without) {
  auto document = std::make_unique<rapidjson::Document>();
  Words fault;
  if (parseJson(text, *document, fault)) return document;
  add({path, "", ""}, fault, {"un documento JSON, in UTF-8", "a JSON document, in UTF-8"}, without);
  return nullptr;
}

TownReader::Document TownReader::readJson(const std::string& path, const Words& without) {
  const auto text = readText(path, without);
  return text ? parsed(path, *text, without) : nullptr;
}

TownReader::Document TownReader::answered(const std::string& path, const Answer& answer,
                                          const Where& where, const Words& without) {
  if (!answer.good()) {
    add(where, withFault("non risponde", "it does not answer", answer.fault),
        {"un documento che risponde", "a document that answers"}, without);
    return nullptr;
  }
  ++report_.documents;
  return parsed(path, answer.body, without);
}

TownReader::Document TownReader::readService(const std::string& path, const Words& without) {
  const auto answer = source_.read(path);
  const bool elsewhere = answer.status == 400 || answer.status == 401 || answer.status == 403 ||
                         answer.status == 404 || answer.notHere;
  return elsewhere ? nullptr : answered(path, answer, {path, "", ""}, without);
}

TownReader::Document TownReader::readLinked(const std::string& url, const Where& from,
                                            const Words& without) {
  if (url.starts_with('/')) return answered(url, source_.read(url), from, without);
  if (!isNobodys(url)) return answered(url, source_.ask(url, true), from, without);
  ++report_.unasked;
  return nullptr;
}

void TownReader::readAll() {
  for (const DocumentShape& each : documents()) {
    auto& json = kept_[each.path] = readJson(each.path, each.without);
    if (json) checkShape(each.path, *json, each.list, *each.shape, findings());
  }
}

const Json* TownReader::document(const std::string& path) const {
  const auto found = kept_.find(path);
  return found == kept_.end() ? nullptr : found->second.get();
}

// --- Links.

void TownReader::link(const Where& from, const std::string& url) {
  if (url.starts_with("http://") || url.starts_with("https://")) links_.push_back({from, url});
}

Words TownReader::faultOf(const std::string& url) {
  const auto answer = source_.ask(url, false);
  // Who wants a log-in is there all the same.
  const bool there = answer.good() || answer.status == 401 || answer.status == 403;
  return there ? Words() : answer.fault;
}

void TownReader::checkLinks() {
  std::map<std::string, Words> faults;
  for (const auto& each : links_) {
    if (isNobodys(each.url)) {
      ++report_.unasked;
      continue;
    }
    if (!faults.count(each.url)) faults[each.url] = faultOf(each.url);
    const Words& fault = faults[each.url];
    if (fault.it.empty()) continue;
    add(each.from,
        {"«" + each.url + "» non risponde (" + fault.it + ")",
         "\"" + each.url + "\" does not answer (" + fault.en + ")"},
        {"un indirizzo che risponde", "an address that answers"},
        {"il collegamento si apre su un errore", "the link opens on an error"});
  }
}

}  // namespace check
