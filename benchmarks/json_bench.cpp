// JSON text into containers, 0.8 MB of records and the town's own documents: ours beside the
// trees of simdjson, RapidJSON and nlohmann. Each run makes the whole tree and frees it again;
// the rows "read only" leave the freeing out. "walk" makes it, and then looks at every value and
// every byte of its texts. RapidJSON is compiled with the same SSE flags; simdjson gets its text
// padded, and a parser for each tree, since the tree lives in it.
#include <benchmark/benchmark.h>

#if defined(__SSE4_2__)
#define RAPIDJSON_SSE42
#elif defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif
#include <rapidjson/document.h>
#include <simdjson.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "runtime/core/array_store.h"
#include "runtime/core/map.h"
#include "runtime/data/json/json_parser.h"

namespace {

constexpr std::size_t kBytes = 800'000;

// Pages of the town's directory: names, addresses, opening hours, a place on the map.
std::string entities() {
  std::string out = R"({"versione":12,"entita":[)";
  for (int i = 0; out.size() < kBytes; ++i) {
    const std::string n = std::to_string(i);
    if (i) out += ',';
    out += R"({"id":)" + n + R"(,"nome":"Farmacia Comunale n. )" + n +
           R"(","indirizzo":"Via Giuseppe Garibaldi, )" + n +
           R"(","citta":"Varlo","telefono":"0342 55)" + n + R"(","email":"info)" + n +
           R"(@comune.varlo.example","descrizione":"Servizio attivo tutti i giorni; la domenica )"
           R"(è aperto solo per le urgenze.","lat":46.1)" +
           n + R"(3,"lon":9.8)" + n + R"(7,"aperta":)" + (i % 3 ? "true" : "false") +
           R"(,"note":null,"orari":[{"giorno":1,"apre":"08:30","chiude":"12:30"},)"
           R"({"giorno":2,"apre":"14:30","chiude":"19:00"}]})";
  }
  return out + "]}";
}

// Rows of the acts' archive: flat, many short fields, printed with indents.
std::string acts() {
  std::string out = "[\n";
  for (int i = 0; out.size() < kBytes; ++i) {
    const std::string n = std::to_string(i);
    if (i) out += ",\n";
    out += "  {\n    \"numero\": " + n + ",\n    \"anno\": 2017,\n    \"tipo\": \"Delibera\",\n" +
           "    \"oggetto\": \"Approvazione del verbale della seduta n. " + n + "\",\n" +
           "    \"data\": \"2017-11-15\",\n    \"ufficio\": \"Segreteria\",\n" +
           "    \"importo\": 1250.50,\n    \"pubblicato\": true\n  }";
  }
  return out + "\n]";
}

// What one run reads: 0: records, 1: rows, 2: all that the town itself publishes.
const std::vector<std::string>& documents(std::int64_t which) {
  static const auto all = [] {
    std::vector<std::vector<std::string>> sets = {{entities()}, {acts()}, {}};
    for (const auto& f : std::filesystem::recursive_directory_iterator(TOWN_DOCUMENTS))
      if (f.path().extension() == ".json") {
        std::ifstream in(f.path(), std::ios::binary);
        sets[2].emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
      }
    return sets;
  }();
  return all.at(static_cast<std::size_t>(which));
}

struct Ours {
  using Text = kes::Text;
  using Tree = kes::Value;
  static Tree parse(const Text& text) {
    kes::KesJSONParser parser;
    parser.Initialize(text);
    return parser.NextObject();
  }
  static std::size_t walk(const kes::Value& v) {
    std::size_t seen = 1;
    if (v.isText()) {
      for (const char c : v.textView()) seen += static_cast<unsigned char>(c);
    } else if (v.isNumber()) {
      seen += v.asBool();
    } else if (const auto map = v.as<kes::KesMap>()) {
      for (const auto& e : map->table()->entries()) seen += walk(e.key) + walk(e.value);
    } else if (const auto array = v.as<kes::ArrayStore>()) {
      for (const auto& item : array->items()) seen += walk(item);
    }
    return seen;
  }
};

struct Simd {
  using Text = simdjson::padded_string;
  using Tree = std::unique_ptr<simdjson::dom::parser>;
  static Tree parse(const Text& text) {
    auto parser = std::make_unique<simdjson::dom::parser>();
    if (parser->parse(text).error()) std::abort();
    return parser;
  }
  static std::size_t bytes(std::string_view text) {
    std::size_t seen = 1;
    for (const char c : text) seen += static_cast<unsigned char>(c);
    return seen;
  }
  static std::size_t walk(simdjson::dom::element e) {
    std::size_t seen = 1;
    if (e.is_string()) return bytes(e.get_string());
    if (e.is_object()) {
      const simdjson::dom::object members = e.get_object();
      for (const auto member : members) seen += bytes(member.key) + walk(member.value);
    } else if (e.is_array()) {
      const simdjson::dom::array items = e.get_array();
      for (const auto item : items) seen += walk(item);
    } else if (e.is_double()) {
      seen += double(e.get_double()) != 0;
    }
    return seen;
  }
  static std::size_t walk(const Tree& tree) { return walk(tree->doc.root()); }
};

struct Rapid {
  using Text = std::string;
  using Tree = std::unique_ptr<rapidjson::Document>;
  static Tree parse(const Text& text) {
    auto d = std::make_unique<rapidjson::Document>();
    d->Parse(text.data(), text.size());
    if (d->HasParseError()) std::abort();
    return d;
  }
};

struct Nlohmann {
  using Text = std::string;
  using Tree = nlohmann::json;
  static Tree parse(const Text& text) { return nlohmann::json::parse(text); }
};

enum class Part { All, ReadOnly, Walk };

template <class Reader, Part part = Part::All>
void read(benchmark::State& state) {
  const auto& sources = documents(state.range(0));
  std::vector<typename Reader::Text> texts;
  std::int64_t bytes = 0;
  for (const auto& s : sources) {
    texts.emplace_back(s);
    bytes += static_cast<std::int64_t>(s.size());
  }
  std::vector<typename Reader::Tree> trees;
  for (auto _ : state) {
    for (const auto& text : texts) trees.push_back(Reader::parse(text));
    if constexpr (part == Part::Walk)
      for (const auto& tree : trees) benchmark::DoNotOptimize(Reader::walk(tree));
    benchmark::DoNotOptimize(trees.data());
    if (part == Part::ReadOnly) state.PauseTiming();
    trees.clear();
    if (part == Part::ReadOnly) state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytes);
}

BENCHMARK(read<Ours>)->Name("json/ours")->DenseRange(0, 2);
BENCHMARK(read<Simd>)->Name("json/simdjson")->DenseRange(0, 2);
BENCHMARK(read<Rapid>)->Name("json/rapidjson")->DenseRange(0, 2);
BENCHMARK(read<Nlohmann>)->Name("json/nlohmann")->DenseRange(0, 2);
BENCHMARK(read<Ours, Part::ReadOnly>)->Name("json/ours/read only")->DenseRange(0, 2);
BENCHMARK(read<Simd, Part::ReadOnly>)->Name("json/simdjson/read only")->DenseRange(0, 2);
BENCHMARK(read<Ours, Part::Walk>)->Name("json/ours/walk")->DenseRange(0, 2);
BENCHMARK(read<Simd, Part::Walk>)->Name("json/simdjson/walk")->DenseRange(0, 2);

}  // namespace

BENCHMARK_MAIN();
