// The archive of the town's official acts: the list and its search by subject, the data of
// one act and its attached documents.
#include "app/kit/contrast.h"
#include "app/kit/deployment.h"
#include "app/kit/fields.h"
#include "app/kit/records.h"
#include "app/kit/text_height.h"
#include "app/shell/main.h"
#include "runtime/views/base/font.h"
#include "runtime/views/richtext/cs_builder.h"
#include "runtime/views/wrappers/scroll_view_wrapper.h"

namespace varlo {

namespace {

constexpr const char* kSearchTag = "SEARCH_ATTI";
constexpr const char* kWebTag = "WEB";
constexpr const char* kAttachmentsTag = "LINK";

constexpr float kSmall = 10, kSubject = 14, kKind = 16, kHeading = 12;
constexpr double kMargin = 10, kListGap = 5;
constexpr double kTextShare = 0.55;  // of the page, at most
constexpr double kDialogInset = 50, kDialogWidth = 360, kDialogHeight = 100;

// In the list and on the page of an act.
KesCSBuilder actText(kes_main& app, const KesMap& act) {
  const auto number = [&](const char* key) {
    return Text(std::to_string(app._cint(numberOf(act, key))));
  };
  const char* const line = KesCommon::CRLF;
  numberOf(act, "ID");  // by which a tap will ask for it

  KesCSBuilder text;
  text.Initialize();
  text.Font(KesFont::CreateNew(kSmall));
  text.Append("Registro: ").Append(number("REG_ANNO")).Append("/").Append(number("REG_NUM"));
  text.Append(" Atto: ").Append(number("ATTO_ANNO")).Append("/").Append(number("ATTO_NUM"));
  text.Pop().Append(line);
  text.Font(KesFont::CreateNew(kSmall));
  text.Append("Data Registro: ").Append(app._formatodata(textOf(act, "DATA_REG"), false));
  text.Append(" Data documento: ").Append(app._formatodata(textOf(act, "DATA_DOC"), false));
  text.Pop().Append(line);
  text.Font(KesFont::CreateNew(kSmall)).Append(textOf(act, "PROPONENTE")).Pop().Append(line);
  text.Font(KesFont::CreateNewBold(kKind)).Alignment("ALIGN_CENTER");
  text.Append(textOf(act, "SOTTOCATEGORIA")).PopAll().Append(line).Append(line);
  text.Font(KesFont::CreateNew(kSubject)).Append(textOf(act, "OGGETTO")).Pop().Append(line);
  return text;
}

}  // namespace

// --- The list and its search.

void kes_main::_storicoatti_lista() {
  acts_ = showList("Storico Atti Varlo");
  _storicoatti_caricalista("");
  KesBarButtonItemWrapper search;
  search.InitializeSystem(KesBarButtonItemWrapper::ITEM_SEARCH, kSearchTag);
  _home.setTopRightButtons(KesList::of({search}));
}

// The text goes out as it stands: one that can't be part of an address finds no connection.
Resumable<> kes_main::_storicoatti_caricalista(Text search) {
  const auto list = acts_ ? acts_ : _clv;  // not the attachments, whatever _clv is by now
  list->_clear();
  const auto job =
      co_await fetch(deployment::service("/varlo/storicoattidettjson?oggetto=") + search);
  if (!job->_success) co_return noConnection();
  const Records acts = maps(job);
  for (const Record& act : acts) {
    KesCSBuilder text;
    if (!act.attempt([&] { text = actText(*this, act); })) continue;
    co_await sleep(0);
    list->_addtextitemcs(text, act.map());
  }
  allShown(list);
}

Resumable<> kes_main::_storicoatti_cerca() {
  try {
    KesPanelWrapper panel;
    panel.Initialize(bi(), "");
    panel.setWidth(c().Min(_home.RootPanel().Width() - c().DipToCurrent(kDialogInset),
                           c().DipToCurrent(kDialogWidth)));
    panel.setHeight(textHeight(kDialogHeight));
    panel.LoadLayout("layatti", bi());
    panel.setColor(KesColors::White);
    _atti_oggetto.setText("");
    _detailsdialog.Initialize(panel);
    _detailsdialog.Style = iCustomDialog::STYLE_CUSTOM;
    _detailsdialog.CustomColor = townColor();
    const auto result = co_await waitFor<std::int32_t>(
        "dialog_result:",
        _detailsdialog.ShowAsync(bi(), "Ricerca per oggetto", "Cerca", "Annulla", "", false));
    if (result == iCustomDialog::RESULT_POSITIVE) _storicoatti_caricalista(_atti_oggetto.Text());
  } catch (const std::exception& e) {
    Kes::SetException(e);
    c().Log("Search of the acts: " + c().LastException().Message());
  }
}

// --- What a tap opens.

// The two lists of this feature share their owner: the sender tells them apart.
void kes_main::_storicoatti_apri(const Value& value) {
  const auto sender = c().Sender(bi()).as<kes_customlistview>();
  if (sender && sender->_asview().Tag() == Value(kAttachmentsTag))
    _app.OpenURL(Kes::ObjectToString(value));
  else
    _storicoatti_atto(KesMap::fromBoxed(value));
}

Resumable<> kes_main::_storicoatti_atto(KesMap act) {
  const Text id = std::to_string(_cint(numberOf(act, "ID")));
  _secondpage.Initialize(bi(), "SecondPage");
  auto page = _secondpage;  // another may take its place while this one loads
  auto root = page.RootPanel();
  root.setColor(KesColors::White);
  page.setTitle("Storico atti - Dettaglio");
  KesBarButtonItemWrapper site;
  site.InitializeText("Sito WEB", kWebTag);
  page.setTopRightButtons(KesList::of({site}));
  page.setTag(deployment::actsPortal("/web/albo/storico-atti/-/papca/display/") + id);
  _navcontrol.ShowPage(page);

  const auto job =
      co_await fetch(deployment::service("/varlo/storicoattidettallegatijson?id=") + id);
  if (!job->_success) co_return noConnection();
  const Records attachments = maps(job);

  const double margin = c().DipToCurrent(kMargin);
  const double width = root.Width() - 2 * margin;
  KesLabelWrapper label;
  label.Initialize(bi(), "");
  label.setMultiline(true);
  label.setTextAlignment(KesLabelWrapper::ALIGNMENT_CENTER);
  auto text = actText(*this, act);
  text.Append(c().CRLF).Font(KesFont::CreateNewBold(kHeading)).Append("Elenco documenti:").Pop();
  label.setAttributedText(text);
  root.AddView(label, margin, margin, width, 0);
  label.SizeToFit();
  label.setWidth(width);
  // On a low screen, or in large letters, the text scrolls: its documents stay in reach.
  const double shown = c().Min(label.Height(), root.Height() * kTextShare);
  if (shown < label.Height()) {
    KesScrollView window;
    window.Initialize(bi(), "", width, label.Height());
    label.RemoveViewFromParent();
    root.AddView(window, margin, margin, width, shown);
    window.Panel().AddView(label, 0, 0, width, label.Height());
  }

  const double top = shown + 2 * margin;
  KesPanelWrapper below;
  below.Initialize(bi(), "");
  root.AddView(below, margin, top, width, root.Height() - top - c().DipToCurrent(kListGap));
  below.LoadLayout("layclv", bi());
  const auto list = _clv;
  list->_asview().setTag(kAttachmentsTag);
  eachRecord(attachments, [&](const KesMap& document) {
    list->_addtextitem(nameOf(document, "TITOLO"), nameOf(document, "LINK"));
  });
  allShown(list);
}

}  // namespace varlo
