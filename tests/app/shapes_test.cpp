// What the checker of a town's documents calls sound, the app shows: its shapes are those
// that the app reads.
#include "checker/shapes.h"

#include "town_phone.h"

namespace varlo {
namespace {

using check::Kind;

// The poorest and the richest document of a shape.
enum class Fields { Required, All };

std::string example(const check::Shape& shape, Fields fields);

std::string example(const check::Field& field, Fields fields) {
  const auto text = [](const std::string& t) { return '"' + t + '"'; };
  switch (field.kind) {
    case Kind::Text:
    case Kind::Plain:
      return text("Prova");
    case Kind::Number:
      return std::to_string(static_cast<long long>(field.low));
    case Kind::Latitude:
      return "45.2379";
    case Kind::Longitude:
      return "10.0409";
    case Kind::Color:
      return text("#F2C230");
    case Kind::Date:
      return text("01/09/2017");
    case Kind::IsoDate:
      return text("2017-11-15");
    case Kind::Web:
    case Kind::Document:
      return text("http://127.0.0.1/");
    case Kind::Map:
      return example(*field.inner, fields);
    case Kind::List:
      return "[" + example(*field.inner, fields) + "]";
  }
  return {};
}

std::string example(const check::Shape& shape, Fields fields) {
  std::string text;
  for (const auto& field : shape.fields)
    if (field.required || fields == Fields::All)
      text += (text.empty() ? "\"" : ",\"") + (field.name == "*" ? "A" : field.name) +
              "\":" + example(field, fields);
  return "{" + text + "}";
}

std::string example(const std::string& path, Fields fields) {
  for (const auto& document : check::documents())
    if (document.path == path) {
      const auto record = example(*document.shape, fields);
      return document.list ? "[" + record + "]" : record;
    }
  throw std::out_of_range(path);
}

class Shapes : public LaunchedTest {
 protected:
  // The app says which record it left out.
  bool leftSomethingOut() const { return phone.test.logged(", record "); }
};

TEST_F(Shapes, ListsOfSoundDocumentsShowTheirRecords) {
  const struct {
    std::string path;
    int row;  // of the menu, by its value
  } lists[] = {{check::kCategories, 6},
               {check::kSchools, 2},
               {check::kMaps, 60},
               {"/InfoVarlo/config/master/menudelgiorno.json", 5},
               {"/InfoVarlo/pizzaprezzi/master/menu.json", 3}};
  for (const auto fields : {Fields::Required, Fields::All})
    for (const auto& list : lists) {
      publish(list.path, example(list.path, fields));
      visit(list.row);
      EXPECT_TRUE(shows("Prova")) << list.path;
      EXPECT_FALSE(leftSomethingOut()) << list.path;
    }
}

TEST_F(Shapes, WhatTheyLeadToOpensToo) {
  publish(check::kCategories, R"([{"Nome":"Elenco","Link":"elenco"}])");
  publish(std::string(check::kDirectory) + "elenco.json",
          "[" + example(check::entity(), Fields::All) + "]");
  publish(check::kSchools, R"([{"Nome":"Scuola","Link":"scuola"}])");
  publish(std::string(check::kSchoolFolder) + "scuola.json",
          example(check::schoolMenu(), Fields::All));
  visit(6);
  ASSERT_TRUE(enter("Elenco"));
  ASSERT_TRUE(enter("Prova"));
  EXPECT_EQ(title(), "Prova");
  goBack();
  goBack();
  visit(2);
  ASSERT_TRUE(enter("Scuola"));
  EXPECT_EQ(title(), "Prova");
  EXPECT_FALSE(leftSomethingOut());
}

}  // namespace
}  // namespace varlo
