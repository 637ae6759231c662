#include "townhost/trial_paths.h"

#include <zlib.h>

#include <charconv>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "townhost/documents.h"
#include "townhost/json_text.h"

namespace town {
namespace {

constexpr long mostBytes = 64l << 20;

// The whole text as a number within bounds.
std::optional<long> number(std::string_view text, long least, long most) {
  long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < least || value > most) return std::nullopt;
  return value;
}

std::optional<std::string_view> after(std::string_view path, std::string_view prefix) {
  if (!path.starts_with(prefix)) return std::nullopt;
  return path.substr(prefix.size());
}

std::string queryValue(const Call& call, const std::string& name) {
  const auto found = call.query.find(name);
  return found == call.query.end() ? "" : found->second;
}

// Bytes that aren't ASCII become U+FFFD: the answer has to be valid text.
std::string readable(const std::string& bytes) {
  std::string text;
  for (unsigned char c : bytes)
    if (c < 0x80)
      text += static_cast<char>(c);
    else
      text += "\xEF\xBF\xBD";
  return text;
}

bool isUtf8(const std::string& bytes) {
  rapidjson::StringBuffer trial;
  rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::UTF8<>,
                    rapidjson::CrtAllocator, rapidjson::kWriteValidateEncodingFlag>
      validating(trial);
  return validating.String(bytes.data(), static_cast<rapidjson::SizeType>(bytes.size()));
}

Answer echo(const Call& call) {
  JsonText json;
  json.open().text("method", call.method).text("target", readable(call.target));
  json.open("headers");
  std::map<std::string, std::string> joined;
  for (const auto& [name, value] : call.headers) {
    auto& all = joined[readable(name)];
    all += (all.empty() ? "" : ", ") + readable(value);
  }
  for (const auto& [name, value] : joined) json.text(name, value);
  json.close();
  json.text("body", isUtf8(call.body) ? call.body : readable(call.body));
  std::string hex;
  for (unsigned char c : call.body) {
    hex += "0123456789abcdef"[c >> 4];
    hex += "0123456789abcdef"[c & 15];
  }
  return {200, kJsonType, json.text("bodyHex", hex).close().take()};
}

Answer bytes(long count) {
  Answer answer{200, "application/octet-stream"};
  answer.body.resize(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < answer.body.size(); ++i) answer.body[i] = static_cast<char>(i % 251);
  return answer;
}

Answer redirects(const Call& call, long left) {
  const auto to = queryValue(call, "to");
  // A path of this host only: "//elsewhere" would name another.
  if (!to.empty() && (!to.starts_with("/") || to.starts_with("//"))) return errorPage(400);
  if (left <= 1) return redirectTo(to.empty() ? "/_echo" : to);
  return redirectTo("/_redirect/" + std::to_string(left - 1) + (to.empty() ? "" : "?to=" + to));
}

Answer gzipped() {
  std::string text = R"({"citta":"Varlo","nota":")";
  for (int i = 0; i < 200; ++i) text += "la città di Varlo ";
  text += "\"}";
  z_stream stream{};
  if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 31, 8, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::runtime_error("no compression");
  Answer answer{200,
                kJsonType,
                std::string(deflateBound(&stream, text.size()), '\0'),
                {{"Content-Encoding", "gzip"}}};
  stream.next_in = reinterpret_cast<Bytef*>(text.data());
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(answer.body.data());
  stream.avail_out = static_cast<uInt>(answer.body.size());
  deflate(&stream, Z_FINISH);
  answer.body.resize(stream.total_out);
  deflateEnd(&stream);
  return answer;
}

Answer welcome(std::string_view scheme) {
  return {200, kJsonType,
          R"({"utente":")" + std::string(Gatekeeper::user) + R"(","schema":")" +
              std::string(scheme) + "\"}"};
}

Answer refused(std::string challenge) {
  auto answer = errorPage(401);
  answer.headers.emplace_back("WWW-Authenticate", std::move(challenge));
  return answer;
}

std::string_view wordsFor(int status) {
  switch (status) {
    case 400:
      return "Richiesta non valida";
    case 401:
      return "Accesso riservato";
    case 403:
      return "Accesso negato";
    case 404:
      return "Pagina non trovata";
    case 405:
      return "Operazione non ammessa";
    case 500:
      return "Errore del servizio";
    case 503:
      return "Servizio momentaneamente non disponibile";
    default:
      return "Richiesta non riuscita";
  }
}

}  // namespace

std::optional<Answer> TrialPaths::answer(const Call& call) {
  const std::string_view path = call.path;
  if (path.starts_with("/_echo")) return echo(call);
  if (path == "/_gzip") return gzipped();
  if (const auto rest = after(path, "/_status/")) {
    const auto status = number(*rest, 200, 599);
    if (!status) return errorPage(400);
    if (*status == 204 || *status == 304) return Answer{static_cast<int>(*status)};
    if (*status >= 400) return errorPage(static_cast<int>(*status));
    return Answer{static_cast<int>(*status), "text/plain; charset=utf-8",
                  "stato " + std::string(*rest)};
  }
  if (const auto rest = after(path, "/_bytes/")) {
    const auto count = number(*rest, 0, mostBytes);
    return count ? bytes(*count) : errorPage(400);
  }
  if (const auto rest = after(path, "/_redirect/")) {
    const auto left = number(*rest, 1, 1000);
    return left ? redirects(call, *left) : errorPage(400);
  }
  const auto authorization = call.header("Authorization");
  if (path.starts_with("/_auth/basic")) {
    if (Gatekeeper::basicAllows(authorization)) return welcome("basic");
    return refused(Gatekeeper::basicChallenge());
  }
  if (path.starts_with("/_auth/digest")) {
    if (gatekeeper_.digestAllows(authorization, call.method, call.target)) return welcome("digest");
    return refused(gatekeeper_.digestChallenge());
  }
  return std::nullopt;
}

Answer errorPage(int status, std::string body) {
  if (body.empty()) {
    const std::string words(wordsFor(status));
    body = "<!doctype html>\n<html lang=\"it\"><meta charset=\"utf-8\"><title>" + words +
           "</title>\n<h1>" + words + "</h1>\n<p>Stato " + std::to_string(status) +
           ".</p></html>\n";
  }
  return {status, "text/html; charset=utf-8", std::move(body)};
}

Answer redirectTo(std::string location) {
  Answer answer{302};
  answer.headers.emplace_back("Location", std::move(location));
  return answer;
}

}  // namespace town
