#include "townhost/hall/news.h"

#include "townhost/hall/italian_dates.h"
#include "townhost/hall/news_items.h"
#include "townhost/json_text.h"

namespace town {

namespace {

// The town's editors write their articles in this dress.
const std::string kArticle =
    "<div style=\"font: 16px/1.5 sans-serif; color: #1E2B31; margin: 4px 6px\">";

std::string newsDocument(CivilDay today) {
  JsonText json;
  json.open().open("NewDataSet").openList("Table");
  for (const auto& item : newsItems()) {
    json.open();
    json.text("Titolo", dated(item.title, today));
    json.text("DescrizioneBreve", dated(item.brief, today));
    json.text("IMG", item.picture);
    json.text("Descrizione", kArticle + dated(item.html, today) + "</div>");
    json.close();
  }
  json.closeList().close().close();
  return json.take();
}

}  // namespace

void publishNews(Documents& documents, Gallery& gallery) {
  documents.add("/varlo/newsvarlo", kJsonType,
                [](const Occasion& occasion) { return newsDocument(dayAt(occasion.now)); });
  unsigned seed = 0;
  for (const auto& item : newsItems()) {
    const Scene scene{item.scene, ++seed, item.evening};
    gallery.add(documents, "/upload/varlo/notizie/" + std::string(item.picture),
                [scene] { return paint(scene, 800, 450); });
  }
}

}  // namespace town
