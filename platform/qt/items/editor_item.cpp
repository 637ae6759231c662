#include "platform/qt/items/editor_item.h"

#include <QFontMetricsF>
#include <QVariant>

#include "platform/qt/drawing/colors.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/qt/drawing/rich_html.h"
#include "platform/qt/items/qml_parts.h"
#include "platform/qt/items/rich_page.h"
#include "platform/ui/values/style.h"

namespace qt {

namespace {

constexpr double kInset = 8, kFieldCorner = 6;

int alignmentOf(const ui::TextInput& input) {
  switch (input.alignment()) {
    case ui::TextAlign::Center:
      return Qt::AlignHCenter;
    case ui::TextAlign::Right:
      return Qt::AlignRight;
    default:
      return Qt::AlignLeft;
  }
}

// The on-screen keyboard that fits, by the platform's numbers.
int hintsOf(const ui::TextInputTraits& traits) {
  Qt::InputMethodHints hints;
  switch (traits.keyboardType) {
    case 2:
      hints |= Qt::ImhPreferNumbers;
      break;
    case 3:
      hints |= Qt::ImhUrlCharactersOnly;
      break;
    case 4:
      hints |= Qt::ImhDigitsOnly;
      break;
    case 5:
      hints |= Qt::ImhDialableCharactersOnly;
      break;
    case 7:
      hints |= Qt::ImhEmailCharactersOnly;
      break;
    case 8:
      hints |= Qt::ImhFormattedNumbersOnly;
      break;
    default:
      break;
  }
  if (traits.autocorrection == 1 || traits.spellcheck == 1) hints |= Qt::ImhNoPredictiveText;
  if (traits.autocapitalization == 0) hints |= Qt::ImhNoAutoUppercase;
  if (traits.autocapitalization == 3) hints |= Qt::ImhPreferUppercase;
  if (traits.password) hints |= Qt::ImhHiddenText | Qt::ImhSensitiveData;
  return static_cast<int>(hints);
}

}  // namespace

EditorItem::EditorItem(Stage& stage, ui::View& view) : ViewItem(stage, view) {
  const bool field = dynamic_cast<ui::TextField*>(&view) != nullptr;
  editor_ = stage.parts.make(field ? QStringLiteral("LineEditor") : QStringLiteral("PageEditor"));
  if (!editor_) return;
  editor_->setParentItem(this);
  input_ = editor_->property("input").value<QQuickItem*>();
  connect(editor_.get(), SIGNAL(edited(QString)), this, SLOT(edited(QString)));
  if (field)
    connect(editor_.get(), SIGNAL(accepted()), this, SLOT(accepted()));
  else
    connect(editor_.get(), SIGNAL(linkClicked(QString)), this, SLOT(linkClicked(QString)));
  connect(input_, &QQuickItem::activeFocusChanged, this, &EditorItem::focusMoved);
}

EditorItem::~EditorItem() {
  rich_.reset();
  if (editor_) editor_->disconnect(this);
  if (input_) input_->disconnect(this);
}

QObject* EditorItem::accessibleInside() { return input_; }

BoxLook EditorItem::lookOf(const ui::View& view, ui::Color background) const {
  BoxLook look = ViewItem::lookOf(view, background);
  const auto* field = dynamic_cast<const ui::TextField*>(&view);
  if (!field || field->borderStyle() == 0) return look;
  if (look.fill.transparent()) look.fill = view.enabled() ? ui::kWhite : ui::style::kToolbar;
  if (look.border.width <= 0) {
    const bool active = view.isFocused();
    look.border = {active ? 2.0 : 1.0, active ? view.tint() : ui::style::kFieldBorder,
                   field->borderStyle() == 3 ? kFieldCorner : 0};
  }
  return look;
}

void EditorItem::sync(ui::View& view, ui::Change) {
  if (!editor_) return;
  auto& input = static_cast<ui::TextInput&>(view);
  editor_->setSize(size());
  editor_->setProperty("textFont", toQFont(input.font()));
  // What takes no text looks so.
  const ui::Color color = input.textColor();
  editor_->setProperty("textColor",
                       toQColor(view.enabled() ? color : color.withAlpha(color.alpha() / 2)));
  editor_->setProperty("accent", toQColor(input.tint()));
  editor_->setProperty("hintColor", toQColor(ui::style::kHint));
  editor_->setProperty("alignment", alignmentOf(input));
  editor_->setProperty("hints", hintsOf(input.traits()));
  editor_->setProperty("editable", input.editable());
  if (auto* field = dynamic_cast<ui::TextField*>(&view))
    syncField(*field);
  else
    syncPage(static_cast<ui::TextView&>(view));
}

void EditorItem::syncField(ui::TextField& field) {
  QFont font = toQFont(field.font());
  const bool boxed = field.borderStyle() != 0 || field.border().width > 0;
  const double padding = boxed ? kInset : 0;
  if (field.shrinksToFit()) {
    const double room = width() - 2 * padding;
    const double natural =
        QFontMetricsF(font).horizontalAdvance(QString::fromStdString(field.text()));
    if (natural > room && room > 0)
      font.setPixelSize(
          std::max(font.pixelSize() / 2, static_cast<int>(font.pixelSize() * room / natural)));
  }
  editor_->setProperty("textFont", font);
  editor_->setProperty("padding", padding);
  editor_->setProperty("hint", QString::fromStdString(field.hint()));
  editor_->setProperty("password", field.traits().password);
  editor_->setProperty("clearButton", field.showsClearButton());
  QMetaObject::invokeMethod(editor_.get(), "show",
                            Q_ARG(QVariant, QString::fromStdString(field.text())));
}

void EditorItem::syncPage(ui::TextView& page) {
  const auto* rich = page.attributedText();
  editor_->setProperty("rich", rich != nullptr);
  const bool painted = rich && !page.editable();
  editor_->setProperty("painted", painted);
  if (!painted) rich_.reset();
  if (painted && !rich_) {
    rich_ = std::make_unique<RichPage>(*editor_);
    rich_->onLink = [this](const QString& url) { linkClicked(url); };
  }
  if (painted) rich_->show(page);
  const QString text =
      rich ? toHtml(*rich, page.font(), page.textColor()) : QString::fromStdString(page.text());
  QMetaObject::invokeMethod(editor_.get(), "show", Q_ARG(QVariant, text));
}

void EditorItem::edited(const QString& text) {
  const auto held = view();
  if (!held) return;
  auto& input = static_cast<ui::TextInput&>(*held);
  stage().guarded([&] { input.userEdited(text.toStdString()); });
  // A hook may have set another text, or the view may refuse the edit.
  if (input.text() != text.toStdString()) {
    held->markChanged(ui::Change::Content);
    stage().changed();
  }
}

void EditorItem::accepted() {
  const auto held = view();
  if (auto* field = dynamic_cast<ui::TextField*>(held.get()))
    stage().guarded([&] { field->userPressedEnter(); });
}

void EditorItem::linkClicked(const QString& url) {
  const auto held = view();
  auto* page = dynamic_cast<ui::TextView*>(held.get());
  if (!page) return;
  if (const auto hook = page->onLinkClick) stage().guarded([&] { hook(url.toStdString()); });
}

void EditorItem::focusMoved() {
  const auto held = view();
  if (held && input_->hasActiveFocus() && !held->isFocused())
    stage().guarded([&] { held->requestFocus(); });
}

}  // namespace qt
