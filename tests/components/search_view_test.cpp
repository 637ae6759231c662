// The search view: what it shows for what is typed, what a choice does, where it stands.
#include <gmock/gmock.h>

#include <ranges>

#include "components/register_components.h"
#include "components/searchview.h"
#include "platform/ui/reading/accessibility.h"
#include "tests/support/runtime_phone.h"

namespace kes {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SearchOwner final : public EventNotes {
 public:
  static void describe(ClassBuilder<SearchOwner>& c) {
    c.name("test_search_owner");
    c.sub<&SearchOwner::note<"click", Value>>("sv_itemclick");
  }
};

class SearchView : public testing::Test {
 protected:
  SearchView() {
    registerComponents();
    ClassRegistry::instance().add<SearchOwner>();
    owner = make<SearchOwner>(0);
    page = phone.showPage(owner->bi(), "page");
    auto base = fresh<KesPanelWrapper>();
    page.RootPanel().AddView(base, 10, 8, 300, 500);
    auto label = fresh<KesLabelWrapper>();
    search = make<kes_searchview>(owner->bi(), owner, "Sv");
    search->_designercreateview(base, label, KesMap());
    phone.pump.drain();
  }

  static KesList itemsOf(const std::vector<std::string>& texts) {
    KesList items;
    items.Initialize();
    for (std::size_t i = 0; i < texts.size(); ++i)
      items.Add(itemsv::of(texts[i], static_cast<std::int32_t>(i)));
    return items;
  }
  // As the citizen does: letter by letter, at the end of what stands there.
  void type(std::string_view text) {
    search->_et.native()->requestFocus();
    phone.app.input().text(text);
    phone.pump.drain();
  }
  void erase() {
    search->_et.native()->userEdited("");
    phone.pump.drain();
  }
  // The rows, what is red in square brackets.
  Trace rows() const {
    Trace all;
    const auto table = search->_lv.native();
    for (int i = 0; i < table->rowCount(); ++i) {
      const ui::AttributedText text = table->rowText(i);
      std::string row = text.text();
      for (const auto& run : text.runs() | std::views::reverse)
        if (run.attributes.color == ui::Color(0xFFFF0000)) {
          row.insert(ui::utf8Offset(text.text(), run.end), "]");
          row.insert(ui::utf8Offset(text.text(), run.start), "[");
        }
      all.push_back(row);
    }
    return all;
  }
  ui::Rect frameOf(const KesViewWrapper& view) const { return view.view().frame(); }

  RuntimePhone phone;
  Ref<SearchOwner> owner;
  KesPage page;
  Ref<kes_searchview> search;
};

TEST_F(SearchView, TypingNarrowsTheListAndMarksTheFirstMatch) {
  search->_setitems(itemsOf({"Via Roma", "Viale Romagna", "Piazza del Duomo", "VICOLO ROMA",
                             "Via Forlì", "Città di Cuneo", "Via Dante"}));
  EXPECT_FALSE(search->_lv.Visible()) << "nothing before a letter";
  const std::pair<const char*, Trace> cases[] = {
      {"rom", {"Via [Rom]a", "Viale [Rom]agna", "VICOLO [ROM]A"}},
      {"ROM", {"Via [Rom]a", "Viale [Rom]agna", "VICOLO [ROM]A"}},
      {"a",
       {"Vi[a] Roma", "Vi[a]le Romagna", "Pi[a]zza del Duomo", "VICOLO ROM[A]", "Vi[a] Forlì",
        "Citt[à] di Cuneo"}},
      {"LÌ", {"Via For[lì]"}},
      {"à d", {"Citt[à d]i Cuneo"}},
      {"via roma", {"[Via Roma]"}},
      {" ",
       {"Via[ ]Roma", "Viale[ ]Romagna", "Piazza[ ]del Duomo", "VICOLO[ ]ROMA", "Via[ ]Forlì",
        "Città[ ]di Cuneo", "Via[ ]Dante"}},
      {"romaa", {}},
  };
  for (const auto& [text, expected] : cases) {
    erase();
    EXPECT_TRUE(!search->_lv.Visible() || rows().empty()) << "an empty field shows no rows";
    type(text);
    if (std::string_view(text) == "a") {
      EXPECT_THAT(rows(), SizeIs(6)) << "à is another letter";
      continue;
    }
    EXPECT_THAT(rows(), testing::ElementsAreArray(expected)) << text;
    EXPECT_TRUE(search->_lv.Visible());
  }
}

TEST_F(SearchView, AChoiceFillsTheFieldHidesTheListAndTellsTheOwner) {
  search->_setitems(itemsOf({"Via Roma", "Viale Romagna", "Via Po"}));
  type("roma");
  const auto rowsOnPage = ui::accessibilityTree(*phone.window);
  EXPECT_THAT(rowsOnPage, testing::Contains(testing::Truly([](const ui::AccessibleElement& e) {
                return e.role == ui::Role::ListItem && e.name == "Viale Romagna";
              })));
  // By keys alone: the field, then the list's rows.
  phone.app.key(ui::Key::Down);
  phone.app.key(ui::Key::Down);
  phone.app.key(ui::Key::Enter);
  phone.pump.drain();
  EXPECT_THAT(owner->trace, ElementsAre("click 1"));
  EXPECT_TRUE(search->_et.Text() == "Viale Romagna");
  EXPECT_FALSE(search->_lv.Visible());
  EXPECT_FALSE(search->_et.IsFocused());
  EXPECT_EQ(search->_lv.native()->selectedRow(), -1);
  erase();
  type("po");
  EXPECT_TRUE(search->_lv.Visible()) << "typing again shows the list";
  EXPECT_THAT(rows(), ElementsAre("Via [Po]"));
}

TEST_F(SearchView, ManyItemsCostTheRowsThatAreSeenAndAreAllThere) {
  std::vector<std::string> streets;
  for (int i = 0; i < 5000; ++i) streets.push_back("Via numero " + std::to_string(i));
  search->_setitems(itemsOf(streets));
  type("numero");
  const auto table = search->_lv.native();
  EXPECT_EQ(table->rowCount(), 5000);
  EXPECT_LT(table->content().children().size(), 20u) << "what is out of sight waits";
  table->setOffset({0, 2500 * table->rowHeight()});
  EXPECT_LT(table->content().children().size(), 40u);
  EXPECT_GE(ui::accessibilityTree(*phone.window).size(), 5000u) << "a screen reader gets them all";
  search->_lv_selectedchanged(0, 4999);
  EXPECT_THAT(owner->trace, ElementsAre("click 4999"));
}

TEST_F(SearchView, StandsInThePlaceOfItsBaseAndAboveTheKeyboard) {
  const auto sizes = [&] { return std::pair(frameOf(search->_et), frameOf(search->_lv)); };
  EXPECT_EQ(sizes(), std::pair(ui::Rect(10, 8, 300, 60), ui::Rect(10, 68, 300, 440)));
  // The page begins below the status bar of 20 points: 568 - 216 - 20 - 8 is the keyboard's
  // top, seen from the base.
  search->_keyboardstate(216);
  EXPECT_EQ(sizes().second, ui::Rect(10, 68, 300, 324 - 60));
  search->_base_resize(280, 200);
  EXPECT_EQ(sizes(), std::pair(ui::Rect(10, 8, 280, 60), ui::Rect(10, 68, 280, 140)))
      << "the smaller of what the base and the keyboard leave";
  search->_base_resize(280, 30);
  EXPECT_EQ(sizes().second.height, 0);
  search->_keyboardstate(0);
  EXPECT_EQ(sizes().second, ui::Rect(10, 68, 300, 440));
  EXPECT_FALSE(search->_getbase().UserInteractionEnabled());
}

TEST_F(SearchView, TheFormerWayAsksThePreparedIndex) {
  const KesList all = itemsOf({"Via Roma", "Viale Romagna", "Via Aroma", "Via Po"});
  KesMap prefixes, pieces;
  prefixes.Initialize();
  pieces.Initialize();
  prefixes.Put("roma", KesList::of({all.Get(0), all.Get(1)}));
  pieces.Put("roma", KesList::of({all.Get(2)}));
  pieces.Put("ro", KesList::of({all.Get(2)}));
  search->_setitems(all);
  search->_setindex(KesList::of({prefixes, pieces}));
  const std::pair<const char*, Trace> cases[] = {
      {"", {"Via Roma", "Viale Romagna", "Via Aroma", "Via Po"}},
      {"R", {"Via Roma", "Viale Romagna", "Via Aroma", "Via Po"}},
      {"RO", {"Via A[ro]ma"}},
      {"Roma", {"Via [Roma]", "Viale [Roma]gna", "Via A[roma]"}},
      {"romag", {"Viale [Romag]na"}},
      {"xyz", {}},
  };
  for (const auto& [text, expected] : cases) {
    search->_et_textchangedold("", text);
    EXPECT_THAT(rows(), testing::ElementsAreArray(expected)) << text;
  }
  EXPECT_TRUE(search->_lv.Visible());
  search->_lv.Clear();
  search->_additemtolist(itemsv::of("Corso Roma", 9), "ROMA");
  search->_additemtolist(itemsv::of("Corso Italia", 9), "ROMA");
  search->_lv.ReloadAll();
  EXPECT_THAT(rows(), ElementsAre("Corso [Roma]"));
}

// Where small letters are more than the large ones were, the match ends with the text.
TEST_F(SearchView, ATextThatGrowsInSmallLettersIsShownWhole) {
  search->_setitems(itemsOf({"VIA İİİ", "Via Roma"}));
  type("\u0069\u0307");
  ASSERT_THAT(rows(), SizeIs(1));
  EXPECT_EQ(search->_lv.native()->rowText(0).text(), "VIA İİİ");
}

TEST_F(SearchView, GoesWithItsParent) {
  search->_setitems(itemsOf({"Via Roma"}));
  const WeakRef<ui::View> list(search->_lv.native());
  page.RootPanel().RemoveAllViews();
  search->_keyboardstate(216);
  search->_base_resize(100, 100);
  phone.pump.drain();
  const WeakRef<kes_searchview> weak(search);
  search = nullptr;
  phone.pump.drain();
  EXPECT_TRUE(weak.expired());
  EXPECT_TRUE(list.expired());
}

}  // namespace
}  // namespace kes
