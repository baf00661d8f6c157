#include "shell/qt/help/help_window.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextFrame>
#include <QToolButton>
#include <QTreeWidget>
#include <QWheelEvent>
#include <algorithm>
#include <map>

#include "core/windows1252.h"
#include "platform/qt/text_document.h"
#include "shell/qt/help/paper_colours.h"

namespace tonadex::shell {
namespace {

constexpr int kGrid = 8;
constexpr int kContentsWidth = 260;
constexpr int kColumn = 46;  // maximum length of a line, in widths of an "m"
constexpr int kMargin = 3 * kGrid;
constexpr double kReadingSize = 1.1;  // of the program's own type
constexpr auto kContentsStyle =
    "QTreeWidget { border: 1px solid palette(mid); border-radius: 6px; padding: 4px; }"
    "QTreeWidget::item { min-height: 26px; }";
constexpr std::size_t kMarkedHits = 2000;  // more marks only slow the window down

// The type size of most of the text, in half points.
int BodySize(const rtf::Document& document) {
  std::map<int, std::size_t> lengths;
  for (const rtf::Paragraph& paragraph : document.paragraphs) {
    for (const rtf::Run& run : paragraph.runs) {
      lengths[run.format.halfPoints] += run.text.size();
    }
  }
  const auto most =
      std::ranges::max_element(lengths, {}, &std::pair<const int, std::size_t>::second);
  return most == lengths.end() ? rtf::kDefaultHalfPoints : most->first;
}

QString FromWindows1252(std::string_view text) {
  return QString::fromStdString(core::ToUtf8(text));
}

QColor Wash(const QPalette& palette) {
  constexpr float kPart = 0.3F;
  const QColor over = palette.color(QPalette::Highlight);
  const QColor under = palette.color(QPalette::Base);
  const auto mix = [](float a, float b) { return a * kPart + b * (1 - kPart); };
  return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                          mix(over.blueF(), under.blueF()));
}

}  // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window),
      search_(new QLineEdit),
      hitCount_(new QLabel),
      contents_(new QTreeWidget),
      text_(new QTextBrowser) {
  setWindowTitle(tr("Ayuda de Tonadex"));
  resize(900, 640);
  setMinimumSize(600, 400);

  auto* bar = new QHBoxLayout;
  BuildBar(*bar);
  contents_->setObjectName("helpContents");
  contents_->setAccessibleName(tr("Contenido"));
  contents_->setHeaderHidden(true);
  contents_->setIndentation(2 * kGrid);
  contents_->setTextElideMode(Qt::ElideRight);
  contents_->setStyleSheet(kContentsStyle);
  text_->setObjectName("helpText");
  text_->setAccessibleName(tr("Texto de la ayuda"));
  text_->setOpenLinks(false);
  text_->viewport()->installEventFilter(this);

  auto* panes = new QSplitter;
  panes->addWidget(contents_);
  panes->addWidget(text_);
  panes->setChildrenCollapsible(false);
  panes->setHandleWidth(kGrid);
  panes->setStretchFactor(1, 1);
  panes->setSizes({kContentsWidth, width() - kContentsWidth});
  auto* page = new QVBoxLayout(this);
  page->setContentsMargins(2 * kGrid, kGrid, 2 * kGrid, 2 * kGrid);
  page->setSpacing(kGrid);
  page->addLayout(bar);
  page->addWidget(panes, 1);

  const auto goToItem = [this](QTreeWidgetItem* item) {
    if (item != nullptr) {
      book_.GoTo(static_cast<std::size_t>(std::ranges::find(items_, item) - items_.begin()));
    }
  };
  connect(contents_, &QTreeWidget::currentItemChanged, this, goToItem);
  connect(contents_, &QTreeWidget::itemClicked, this, goToItem);  // the current one again
  connect(text_->verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this] { book_.Scrolled(); });
  AddShortcuts();
  DrawButtons();
}

void HelpWindow::BuildBar(QBoxLayout& bar) {
  search_->setObjectName("helpSearch");
  search_->setPlaceholderText(tr("Buscar en la ayuda"));
  search_->setAccessibleName(tr("Buscar en la ayuda"));
  search_->setToolTip(tr("Buscar en la ayuda (Ctrl+F)"));
  search_->setClearButtonEnabled(true);
  search_->setMaximumWidth(40 * kGrid);
  hitCount_->setObjectName("helpHits");
  hitCount_->setMinimumWidth(hitCount_->fontMetrics().horizontalAdvance("000 de 000 "));
  bar.setSpacing(kGrid / 2);
  for (const app::HelpButton& row : app::HelpButtons()) {
    if (row.command == app::HelpCommand::kPrevious) {
      bar.addSpacing(kGrid);
      bar.addWidget(search_, 1);
    } else if (row.command == app::HelpCommand::kSmaller) {
      bar.addWidget(hitCount_);
      bar.addStretch();
    }
    const QString meaning = FromWindows1252(row.meaning);
    const QKeySequence keys(FromWindows1252(row.keys));
    auto* button = new QToolButton;
    button->setObjectName(FromWindows1252(row.name));
    button->setToolTip(QString("%1 (%2)").arg(meaning, keys.toString(QKeySequence::NativeText)));
    button->setAccessibleName(meaning);
    button->setProperty("command", true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMinimumSize(4 * kGrid, 4 * kGrid);
    bar.addWidget(button);
    buttons_.push_back(button);
    const auto run = [this, command = row.command] { book_.Run(command); };
    connect(button, &QToolButton::clicked, this, run);
    connect(new QShortcut(keys, this), &QShortcut::activated, this, run);
  }
  connect(search_, &QLineEdit::textChanged, this,
          [this](const QString& words) { book_.Search(words.toStdU16String()); });
}

void HelpWindow::AddShortcuts() {
  using app::HelpCommand;
  const auto add = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  const auto addIn = [](QWidget* widget, const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, widget, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, widget, action);
  };
  add(Qt::Key_Escape, [this] { close(); });
  add(Qt::CTRL | Qt::Key_W, [this] { close(); });
  add(Qt::Key_F1, [this] { contents_->setFocus(Qt::ShortcutFocusReason); });
  add(Qt::CTRL | Qt::Key_F, [this] {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  });
  add(Qt::CTRL | Qt::Key_Equal, [this] { book_.Run(HelpCommand::kLarger); });
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    addIn(search_, key, [this] { book_.Run(HelpCommand::kNext); });
    addIn(search_, Qt::SHIFT | key, [this] { book_.Run(HelpCommand::kPrevious); });
    addIn(contents_, key, [this] { text_->setFocus(Qt::ShortcutFocusReason); });
  }
}

void HelpWindow::Open(const std::filesystem::path& file) {
  book_.Open(file);
  show();
  raise();
  activateWindow();
  contents_->setFocus(Qt::OtherFocusReason);
}

// Lays the text out anew: zoom, colours and type are part of it.
std::u16string HelpWindow::DrawManual() {
  // The application's: while colours change, the text's own palette comes after this window's.
  const QColor page = QApplication::palette().color(QPalette::Base);
  const double size = QApplication::font().pointSizeF() * kReadingSize;
  platform::TextDrawing drawing;
  drawing.scale = 2 * size / BodySize(book_.manual()) * book_.Zoom();
  drawing.screen = true;
  drawing.ink = [page](const QColor& ink) { return ReadableInk(ink, page); };
  drawing.ground = [page](const QColor& tint) { return TintedGround(tint, page); };
  text_->document()->setDefaultFont(QApplication::font());
  platform::FillTextDocument(*text_->document(), book_.manual(), drawing);
  SetColumn();
  return text_->document()->toRawText().toStdU16String();
}

// Limits the length of lines by the right margin.
void HelpWindow::SetColumn() {
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * kReadingSize * book_.Zoom());
  const int column = kColumn * QFontMetrics(font).horizontalAdvance('m');
  QTextFrameFormat frame = text_->document()->rootFrame()->frameFormat();
  const double right = std::max(kMargin, text_->viewport()->width() - column - kMargin);
  if (frame.rightMargin() != right || frame.leftMargin() != kMargin) {
    frame.setMargin(kMargin);
    frame.setRightMargin(right);
    text_->document()->rootFrame()->setFrameFormat(frame);
  }
}

void HelpWindow::DrawContents() {
  const QSignalBlocker quiet(contents_);
  contents_->clear();
  items_.clear();
  std::vector<QTreeWidgetItem*> parents;
  for (const app::HelpBook::Heading& heading : book_.headings()) {
    parents.resize(std::min(parents.size(), static_cast<std::size_t>(heading.level - 1)));
    auto* item =
        parents.empty() ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(parents.back());
    item->setText(0, QString::fromStdU16String(heading.text));
    item->setToolTip(0, item->text(0));
    QFont font = contents_->font();
    font.setBold(heading.level == 1);
    item->setFont(0, font);
    parents.push_back(item);
    items_.push_back(item);
  }
  contents_->expandAll();
  contents_->setVisible(!items_.empty());
}

void HelpWindow::DrawHit() {
  QTextCursor cursor(text_->document());
  cursor.setPosition(static_cast<int>(*book_.Hit()));
  text_->setTextCursor(cursor);
  text_->ensureCursorVisible();
  DrawHits();
}

void HelpWindow::DrawHits() {
  QList<QTextEdit::ExtraSelection> marks;
  const auto mark = [&](std::size_t position, const QColor& ground, const QColor& ink) {
    QTextEdit::ExtraSelection selection;
    selection.cursor = QTextCursor(text_->document());
    selection.cursor.setPosition(static_cast<int>(position));
    selection.cursor.setPosition(static_cast<int>(position + book_.HitLength()),
                                 QTextCursor::KeepAnchor);
    selection.format.setBackground(ground);
    selection.format.setForeground(ink);
    marks.append(selection);
  };
  const QPalette& colours = palette();
  for (std::size_t i = 0; i < std::min(book_.hits().size(), kMarkedHits); ++i) {
    mark(book_.hits()[i], Wash(colours), colours.color(QPalette::Text));
  }
  if (const auto hit = book_.Hit()) {
    mark(*hit, colours.color(QPalette::Highlight), colours.color(QPalette::HighlightedText));
  }
  text_->setExtraSelections(marks);
}

void HelpWindow::ScrollTo(std::size_t position) {
  const QTextBlock block = text_->document()->findBlock(static_cast<int>(position));
  const QRectF place = text_->document()->documentLayout()->blockBoundingRect(block);
  text_->setTextCursor(QTextCursor(block));
  text_->verticalScrollBar()->setValue(static_cast<int>(place.top()) - kMargin);
}

std::size_t HelpWindow::Top() const {
  return static_cast<std::size_t>(
      text_->cursorForPosition(QPoint(kMargin, kMargin + kGrid)).position());
}

void HelpWindow::DrawSection(int section) {
  if (section >= 0) {
    const QSignalBlocker quiet(contents_);
    contents_->setCurrentItem(items_[static_cast<std::size_t>(section)]);
  }
}

void HelpWindow::DrawButtons() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const app::HelpButton& row = app::HelpButtons()[i];
    buttons_[i]->setEnabled(book_.Can(row.command));
    buttons_[i]->setText(QString::fromStdU16String(book_.Caption(row)));
  }
  hitCount_->setText(FromWindows1252(book_.HitsInWords()));
}

void HelpWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    book_.Redraw();
  }
}

void HelpWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  SetColumn();
}

bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) {
    SetColumn();
  }
  if (event->type() == QEvent::Wheel) {
    const auto& wheel = static_cast<QWheelEvent&>(*event);
    if (wheel.modifiers().testFlag(Qt::ControlModifier)) {
      book_.Run(wheel.angleDelta().y() > 0 ? app::HelpCommand::kLarger
                                           : app::HelpCommand::kSmaller);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tonadex::shell
