#include "townhost/social/restaurants.h"

#include <vector>

#include "townhost/json_text.h"

namespace town {

namespace {

// `day` counts from today; pictures are the boards below, in an album where there are more.
struct Post {
  int day;
  const char *time, *message;
  std::vector<int> pictures;
};

struct Restaurant {
  const char *name, *type, *page, *phone, *street;
  unsigned color;
  std::vector<Post> posts;  // newest first
};

// clang-format off
const std::vector<Restaurant>& restaurants() {
  static const std::vector<Restaurant> all{
      {"Trattoria da Nando", "Facebook", "trattoria.nando", "0123 451122", "Via Mazzini 14", 0xA23B2A,
       {{0, "09:40", "Buongiorno! Oggi in cucina profumo di funghi.\n#menudelgiorno a 13 euro, acqua e caffè compresi.", {0}},
        {-1, "09:35", "Ieri gnocchi, oggi sorpresa. #menudelgiorno", {1}},
        {-3, "18:00", "Sabato sera musica dal vivo: prenotate!", {}}}},
      {"Osteria del Ponte", "Facebook", "osteria.delponte", "0123 458870", "Lungofiume 3", 0x2E6E62,
       {{0, "10:05", "Il nostro #menùdelgiorno: due primi, due secondi e i dolci della casa.", {1, 2}},
        {-1, "10:00", "#menùdelgiorno di ieri", {0}}}},
      {"Bar Ristorante Centrale", "Facebook", "ristorante.centrale", "0123 450031", "Piazza Garibaldi 2", 0x345C9C,
       {{0, "08:30", "Oggi siamo aperti anche a cena. Vi aspettiamo!", {}},
        {-1, "11:15", "#menudelgiorno: lasagne al forno e insalata mista.", {}}}},
      {"Agriturismo La Quercia", "Facebook", "agriturismo.laquercia", "0123 477210", "Strada dei Colli 41", 0x5E7D2C,
       {{-1, "11:00", "#menudelgiorno di domenica: arrosto misto e polenta.", {1}}}},
      {"Tavola calda Stazione", "Facebook", "tavolacalda.stazione", "0123 452345", "Viale della Stazione 9", 0xC77D2B,
       {{-4, "09:00", "Da lunedì nuovi orari: 11.30 - 15.00.", {}}}},
      {"Ristorante Belvedere", "Sito", "", "", "", 0x6C4B8C, {}},
  };
  return all;
}

const std::vector<std::pair<const char*, std::vector<BoardLine>>>& boards() {
  static const std::vector<std::pair<const char*, std::vector<BoardLine>>> all{
      {"Menù del giorno", {{"Primi", ""}, {"Risotto ai funghi porcini", "6 €"}, {"Minestrone della casa", "5 €"},
                           {"Secondi", ""}, {"Scaloppine al limone", "8 €"}, {"Frittata di erbette", "7 €"},
                           {"Contorno e dolce", ""}, {"Patate al forno", "3 €"}, {"Crostata di albicocche", "3 €"}}},
      {"Oggi in cucina", {{"Primi", ""}, {"Gnocchi al ragù", "7 €"}, {"Pasta e fagioli", "6 €"},
                          {"Secondi", ""}, {"Brasato con polenta", "10 €"}, {"Trota alle mandorle", "10 €"}}},
      {"I nostri dolci", {{"Tiramisù", "4 €"}, {"Torta di mele", "4 €"}, {"Panna cotta ai frutti di bosco", "4 €"}}},
  };
  return all;
}
// clang-format on

std::string boardPath(int board) { return "/immagini/menu/" + std::to_string(board) + ".png"; }
std::string badgePath(const Restaurant& r) {
  return "/immagini/locali/" + std::string(r.page) + ".png";
}
int boardHeight(int board) {
  return 250 + 62 * static_cast<int>(boards()[static_cast<std::size_t>(board)].second.size());
}

void writeMedia(JsonText& json, int board, const std::string& url) {
  json.open("media").open("image").number("height", boardHeight(board));
  json.text("src", url + boardPath(board)).number("width", 800).close().close();
}

void writeAttachments(JsonText& json, const Post& post, const std::string& url) {
  if (post.pictures.empty()) return;
  json.open("attachments").openList("data").open();
  if (post.pictures.size() == 1) {
    writeMedia(json, post.pictures.front(), url);
  } else {
    json.open("subattachments").openList("data");
    for (const int board : post.pictures) {
      json.open();
      writeMedia(json, board, url);
      json.close();
    }
    json.closeList().close();
  }
  json.close().closeList().close();
}

void writePosts(JsonText& json, const Restaurant& restaurant, CivilDay today,
                const std::string& url) {
  json.open("posts").openList("data");
  int serial = 0;
  for (const Post& post : restaurant.posts) {
    json.open().text("message", post.message);
    writeAttachments(json, post, url);
    json.text("created_time",
              isoDate(today + std::chrono::days(post.day)) + "T" + post.time + ":00+0000");
    json.text("id", std::string(restaurant.page) + "_" + std::to_string(++serial)).close();
  }
  json.closeList().close();
}

std::string pageOf(const Restaurant& restaurant, CivilDay today, const std::string& url) {
  JsonText json;
  json.open();
  writePosts(json, restaurant, today, url);
  json.text("name", restaurant.name);
  json.open("picture").open("data").text("url", url + badgePath(restaurant)).close().close();
  json.open("location").text("street", restaurant.street).text("city", "Varlo").close();
  json.text("phone", restaurant.phone).text("id", restaurant.page).close();
  return json.take();
}

std::string catalogue() {
  JsonText json;
  json.openList();
  for (const Restaurant& restaurant : restaurants())
    json.open()
        .text("Nome", restaurant.name)
        .text("Type", restaurant.type)
        .text("URL", restaurant.page)
        .close();
  return json.closeList().take();
}

}  // namespace

void publishRestaurants(Documents& documents, Gallery& gallery, const std::string& url) {
  documents.addFixed("/InfoVarlo/config/master/menudelgiorno.json", kJsonType, catalogue());
  for (const Restaurant& restaurant : restaurants()) {
    if (!*restaurant.page) continue;
    documents.add("/v2.9/" + std::string(restaurant.page), kJsonType,
                  [&restaurant, url](const Occasion& occasion) {
                    return pageOf(restaurant, dayAt(occasion.now), url);
                  });
    gallery.add(documents, badgePath(restaurant),
                [&restaurant] { return drawBadge(restaurant.name, restaurant.color); });
  }
  for (int i = 0; i < static_cast<int>(boards().size()); ++i)
    gallery.add(documents, boardPath(i), [&board = boards()[static_cast<std::size_t>(i)]] {
      return drawBoard(board.first, board.second, true);
    });
}

}  // namespace town
