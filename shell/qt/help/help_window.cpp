#include "shell/qt/help/help_window.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
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
#include <cmath>
#include <map>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "shell/qt/help/folding.h"
#include "shell/qt/help/paper_colours.h"
#include "shell/qt/rtf/rtf_reader.h"
#include "shell/qt/rtf/text_document.h"

namespace tonadex::shell {
namespace {

constexpr int kGrid = 8;
constexpr int kContentsWidth = 260;
constexpr int kColumn = 46;  // widths of an "m": no longer lines than the eye can follow
constexpr int kMargin = 3 * kGrid;
constexpr double kZoomFactor = 1.15;
constexpr int kLeastZoom = -3;
constexpr int kMostZoom = 6;
constexpr double kReadingSize = 1.1;  // of the program's own type
constexpr auto kContentsStyle =
    "QTreeWidget { border: 1px solid palette(mid); border-radius: 6px; padding: 4px; }"
    "QTreeWidget::item { min-height: 26px; }";
constexpr std::size_t kMarkedHits = 2000;  // more marks only slow the window down

QToolButton* Button(const char* name, const QString& sign, const QString& meaning,
                    const QString& keys) {
  auto* button = new QToolButton;
  button->setObjectName(name);
  button->setText(sign);
  button->setToolTip(keys.isEmpty() ? meaning : QString("%1 (%2)").arg(meaning, keys));
  button->setAccessibleName(meaning);
  button->setProperty("command", true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setMinimumSize(4 * kGrid, 4 * kGrid);
  return button;
}

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
      back_(Button("helpBack", "←", tr("Atrás"), "Alt+←")),
      forward_(Button("helpForward", "→", tr("Adelante"), "Alt+→")),
      previous_(Button("helpPrevious", "↑", tr("Anterior"), "Mayús+F3")),
      next_(Button("helpNext", "↓", tr("Siguiente"), "F3")),
      zoomOut_(Button("helpZoomOut", "−", tr("Reducir el texto"), "Ctrl+−")),
      zoomReset_(Button("helpZoomReset", "100 %", tr("Tamaño normal"), "Ctrl+0")),
      zoomIn_(Button("helpZoomIn", "+", tr("Ampliar el texto"), "Ctrl++")),
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
      GoTo(item->data(0, Qt::UserRole).toInt());
    }
  };
  connect(contents_, &QTreeWidget::currentItemChanged, this, goToItem);
  connect(contents_, &QTreeWidget::itemClicked, this, goToItem);  // the current one again
  connect(text_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { FollowScroll(); });
  AddShortcuts();
  UpdateButtons();
}

void HelpWindow::BuildBar(QLayout& bar) {
  search_->setObjectName("helpSearch");
  search_->setPlaceholderText(tr("Buscar en la ayuda"));
  search_->setAccessibleName(tr("Buscar en la ayuda"));
  search_->setToolTip(tr("Buscar en la ayuda (Ctrl+F)"));
  search_->setClearButtonEnabled(true);
  search_->setMaximumWidth(40 * kGrid);
  hitCount_->setObjectName("helpHits");
  hitCount_->setMinimumWidth(hitCount_->fontMetrics().horizontalAdvance("000 de 000 "));
  auto& row = static_cast<QHBoxLayout&>(bar);
  row.setSpacing(kGrid / 2);
  row.addWidget(back_);
  row.addWidget(forward_);
  row.addSpacing(kGrid);
  row.addWidget(search_, 1);
  row.addWidget(previous_);
  row.addWidget(next_);
  row.addWidget(hitCount_);
  row.addStretch();
  row.addWidget(zoomOut_);
  row.addWidget(zoomReset_);
  row.addWidget(zoomIn_);
  connect(back_, &QToolButton::clicked, this, [this] { Travel(-1); });
  connect(forward_, &QToolButton::clicked, this, [this] { Travel(1); });
  connect(search_, &QLineEdit::textChanged, this, [this] { Search(); });
  connect(previous_, &QToolButton::clicked, this, [this] { MoveToHit(-1); });
  connect(next_, &QToolButton::clicked, this, [this] { MoveToHit(1); });
  connect(zoomOut_, &QToolButton::clicked, this, [this] { Zoom(-1); });
  connect(zoomReset_, &QToolButton::clicked, this, [this] { Zoom(-zoomStep_); });
  connect(zoomIn_, &QToolButton::clicked, this, [this] { Zoom(1); });
}

void HelpWindow::AddShortcuts() {
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
  add(Qt::Key_F3, [this] { MoveToHit(1); });
  add(Qt::SHIFT | Qt::Key_F3, [this] { MoveToHit(-1); });
  add(Qt::ALT | Qt::Key_Left, [this] { Travel(-1); });
  add(Qt::ALT | Qt::Key_Right, [this] { Travel(1); });
  add(Qt::CTRL | Qt::Key_Plus, [this] { Zoom(1); });
  add(Qt::CTRL | Qt::Key_Equal, [this] { Zoom(1); });
  add(Qt::CTRL | Qt::Key_Minus, [this] { Zoom(-1); });
  add(Qt::CTRL | Qt::Key_0, [this] { Zoom(-zoomStep_); });
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    addIn(search_, key, [this] { MoveToHit(1); });
    addIn(search_, Qt::SHIFT | key, [this] { MoveToHit(-1); });
    addIn(contents_, key, [this] { text_->setFocus(Qt::ShortcutFocusReason); });
  }
}

void HelpWindow::Open(const std::filesystem::path& file) {
  if (!loaded_ || file != file_) {
    loaded_ = Load(file);
    file_ = file;
  }
  show();
  raise();
  activateWindow();
  contents_->setFocus(Qt::OtherFocusReason);
}

bool HelpWindow::Load(const std::filesystem::path& file) {
  visited_ = {0};
  visit_ = 0;
  try {
    const std::string source = files::ReadBytes(file);
    if (!rtf::LooksLikeRtf(source)) {
      ShowFailure(file, tr("El archivo no es una ayuda de Tonadex:"));
      return false;
    }
    manual_ = rtf::ReadRtf(source);
  } catch (const core::RunTimeError&) {
    ShowFailure(file, tr("No se encuentra el archivo de la ayuda, o no se puede leer:"));
    return false;
  }
  Draw();
  ScrollTo(0);
  return true;
}

void HelpWindow::ShowFailure(const std::filesystem::path& file, const QString& why) {
  const auto line = [](const QString& text, bool title) {
    rtf::ParagraphFormat spaced;
    spaced.after = 160;
    rtf::RunFormat characters;
    characters.bold = title;
    characters.halfPoints = rtf::kDefaultHalfPoints * (title ? 3 : 2) / 2;
    return rtf::Paragraph{spaced, {{text.toStdU16String(), characters}}};
  };
  manual_ = {};
  manual_.paragraphs = {
      line(tr("No se puede mostrar la ayuda"), true), line(why, false),
      line(QString::fromStdString(core::ToUtf8(files::TextFromPath(file))), false),
      line(tr("Vuelve a instalar Tonadex para recuperarlo."), false)};
  Draw();
}

// Lays the text out anew: zoom, colours and type are part of it.
void HelpWindow::Draw() {
  const QScopedValueRollback guard(drawing_, true);
  // The application's: while colours change, the text's own palette comes after this window's.
  const QColor page = QApplication::palette().color(QPalette::Base);
  const double size = QApplication::font().pointSizeF() * kReadingSize;
  rtf::Drawing drawing;
  drawing.scale = 2 * size / BodySize(manual_) * std::pow(kZoomFactor, zoomStep_);
  drawing.screen = true;
  drawing.ink = [page](const QColor& ink) { return ReadableInk(ink, page); };
  drawing.ground = [page](const QColor& tint) { return TintedGround(tint, page); };
  text_->document()->setDefaultFont(QApplication::font());
  rtf::FillTextDocument(*text_->document(), manual_, drawing);
  SetColumn();
  folded_ = Folded(text_->document()->toRawText());
  FillContents();
  hits_ = FindAll(folded_, Folded(search_->text()));
  MarkHits();
  UpdateButtons();
}

// Long lines tire: a wide window gives the text a wider margin at the right.
void HelpWindow::SetColumn() {
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * kReadingSize * std::pow(kZoomFactor, zoomStep_));
  const int column = kColumn * QFontMetrics(font).horizontalAdvance('m');
  QTextFrameFormat frame = text_->document()->rootFrame()->frameFormat();
  const double right = std::max(kMargin, text_->viewport()->width() - column - kMargin);
  if (frame.rightMargin() != right || frame.leftMargin() != kMargin) {
    frame.setMargin(kMargin);
    frame.setRightMargin(right);
    text_->document()->rootFrame()->setFrameFormat(frame);
  }
}

void HelpWindow::FillContents() {
  const QSignalBlocker quiet(contents_);
  contents_->clear();
  headings_.clear();
  std::vector<QTreeWidgetItem*> parents;
  const QTextDocument& document = *text_->document();
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    if (level == 0 || block.text().trimmed().isEmpty()) {
      continue;
    }
    parents.resize(std::min(parents.size(), static_cast<std::size_t>(level - 1)));
    auto* item =
        parents.empty() ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(parents.back());
    item->setText(0, block.text().simplified());
    item->setToolTip(0, item->text(0));
    item->setData(0, Qt::UserRole, block.position());
    QFont font = contents_->font();
    font.setBold(level == 1);
    item->setFont(0, font);
    parents.push_back(item);
    headings_.push_back({block.position(), item});
  }
  contents_->expandAll();
  contents_->setVisible(!headings_.empty());
}

void HelpWindow::Search() {
  hits_ = FindAll(folded_, Folded(search_->text()));
  const auto from = std::ranges::lower_bound(hits_, TopPosition());
  hit_ = hits_.empty() ? -1 : from == hits_.end() ? 0 : static_cast<int>(from - hits_.begin());
  MarkHits();
  MoveToHit(0);
}

void HelpWindow::MoveToHit(int step) {
  const int count = static_cast<int>(hits_.size());
  if (count > 0) {
    hit_ = (std::max(hit_, 0) + step + count) % count;
    QTextCursor cursor(text_->document());
    cursor.setPosition(hits_[static_cast<std::size_t>(hit_)]);
    text_->setTextCursor(cursor);
    text_->ensureCursorVisible();
  }
  MarkHits();
  UpdateButtons();
}

void HelpWindow::MarkHits() {
  hit_ = std::min(hit_, static_cast<int>(hits_.size()) - 1);
  const int length = static_cast<int>(search_->text().size());
  QList<QTextEdit::ExtraSelection> marks;
  const auto mark = [&](int position, const QColor& ground, const QColor& ink) {
    QTextEdit::ExtraSelection selection;
    selection.cursor = QTextCursor(text_->document());
    selection.cursor.setPosition(position);
    selection.cursor.setPosition(position + length, QTextCursor::KeepAnchor);
    selection.format.setBackground(ground);
    selection.format.setForeground(ink);
    marks.append(selection);
  };
  const QPalette& colours = palette();
  for (std::size_t i = 0; i < std::min(hits_.size(), kMarkedHits); ++i) {
    mark(hits_[i], Wash(colours), colours.color(QPalette::Text));
  }
  if (hit_ >= 0) {
    mark(hits_[static_cast<std::size_t>(hit_)], colours.color(QPalette::Highlight),
         colours.color(QPalette::HighlightedText));
  }
  text_->setExtraSelections(marks);
}

void HelpWindow::Zoom(int step) {
  const int wanted = std::clamp(zoomStep_ + step, kLeastZoom, kMostZoom);
  if (wanted != zoomStep_) {
    const int top = TopPosition();
    zoomStep_ = wanted;
    Draw();
    ScrollTo(top);
  }
}

void HelpWindow::GoTo(int position) {
  if (position != visited_[visit_]) {
    visited_.resize(visit_ + 1);
    visited_[visit_] = TopPosition();
    visited_.push_back(position);
    ++visit_;
  }
  ScrollTo(position);
  UpdateButtons();
}

void HelpWindow::Travel(int step) {
  const std::size_t wanted = visit_ + static_cast<std::size_t>(step);
  if (wanted < visited_.size()) {
    visited_[visit_] = TopPosition();
    visit_ = wanted;
    ScrollTo(visited_[visit_]);
    UpdateButtons();
  }
}

void HelpWindow::ScrollTo(int position) {
  const QTextBlock block = text_->document()->findBlock(position);
  const QRectF place = text_->document()->documentLayout()->blockBoundingRect(block);
  QTextCursor cursor(block);
  text_->setTextCursor(cursor);
  text_->verticalScrollBar()->setValue(static_cast<int>(place.top()) - kMargin);
  FollowScroll();
}

int HelpWindow::TopPosition() const {
  return text_->cursorForPosition(QPoint(kMargin, kMargin + kGrid)).position();
}

// The contents mark the section that is being read.
void HelpWindow::FollowScroll() {
  if (drawing_ || headings_.empty()) {
    return;
  }
  const auto after = std::ranges::upper_bound(headings_, TopPosition(), {}, &Heading::position);
  const QSignalBlocker quiet(contents_);
  contents_->setCurrentItem(after == headings_.begin() ? after->item : std::prev(after)->item);
}

void HelpWindow::UpdateButtons() {
  const bool found = !hits_.empty();
  back_->setEnabled(visit_ > 0);
  forward_->setEnabled(visit_ + 1 < visited_.size());
  previous_->setEnabled(found);
  next_->setEnabled(found);
  zoomOut_->setEnabled(zoomStep_ > kLeastZoom);
  zoomIn_->setEnabled(zoomStep_ < kMostZoom);
  zoomReset_->setText(tr("%1 %").arg(std::lround(100 * std::pow(kZoomFactor, zoomStep_))));
  hitCount_->setText(search_->text().isEmpty() ? QString()
                     : !found                  ? tr("No aparece")
                                               : tr("%1 de %2").arg(hit_ + 1).arg(hits_.size()));
}

void HelpWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool redraw = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
  if (redraw && !drawing_ && !manual_.paragraphs.empty()) {
    const int top = TopPosition();
    Draw();
    ScrollTo(top);
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
      Zoom(wheel.angleDelta().y() > 0 ? 1 : -1);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tonadex::shell
