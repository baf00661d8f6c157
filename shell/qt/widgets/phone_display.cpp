#include "shell/qt/widgets/phone_display.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <map>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

constexpr double kNumberSize = 0.75;  // of the display's type

QFont DisplayFont(int pixels) {
  QFont font = CurrentTheme().mono;
  font.setPixelSize(pixels);
  return font;
}

app::TypeMeasure MeasureType(int pixels) {
  const QFontMetricsF metrics(DisplayFont(pixels));
  return {metrics.horizontalAdvance('0'), metrics.lineSpacing()};
}

}  // namespace

PhoneDisplay::PhoneDisplay(QWidget* parent) : QPlainTextEdit(parent), display_(MeasureType) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(NoWrap);  // ResultDisplay breaks the lines
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMouseTracking(true);
  viewport()->setMouseTracking(true);
  document()->setDocumentMargin(kGrid / 2.0);
  setFont(DisplayFont(PixelSize()));
}

void PhoneDisplay::SetResult(const std::string& result, std::vector<app::ResultGroup> groups,
                             bool counted) {
  if (display_.SetResult(result, std::move(groups), counted)) {
    Draw();
  }
  setAccessibleDescription(result.empty() ? invitation_ : QString());
}

void PhoneDisplay::SetPixelSize(int pixels) {
  if (display_.SetPixelSize(pixels)) {
    Draw();
  }
}

void PhoneDisplay::SetInvitation(const QString& sentence) {
  invitation_ = sentence;
  viewport()->update();
}

QTextCursor PhoneDisplay::Select(app::TextRange range) const {
  QTextCursor cursor(document());
  cursor.setPosition(static_cast<int>(range.from));
  cursor.setPosition(static_cast<int>(range.to), QTextCursor::KeepAnchor);
  return cursor;
}

void PhoneDisplay::Draw() {
  const int sizeBefore = font().pixelSize();
  setFont(DisplayFont(PixelSize()));
  setCurrentCharFormat({});  // that of a number in the margin would become the whole text's
  setPlainText(ToQString(display_.shown().text));
  QTextCharFormat heavy;
  heavy.setFontWeight(QFont::Black);
  for (const app::TextRange& range : display_.shown().held) {
    Select(range).mergeCharFormat(heavy);
  }
  QTextCharFormat number;
  number.setForeground(CurrentTheme().displayFaint);
  number.setProperty(QTextFormat::FontPixelSize, qRound(PixelSize() * kNumberSize));
  for (const app::TextRange& range : display_.shown().margin) {
    Select(range).mergeCharFormat(number);
  }
  DrawMark();
  if (PixelSize() != sizeBefore) {
    emit PixelSizeChanged(PixelSize());
  }
}

void PhoneDisplay::Mark(int group) {
  if (display_.Mark(group)) {
    DrawMark();
  }
}

void PhoneDisplay::Follow(int group) {
  if (display_.Follow(group)) {
    DrawMark();
    GoToMark();
  }
}

void PhoneDisplay::GoToMark() {
  if (MarkedGroup() < 0) {
    return;
  }
  QTextCursor cursor = Select(display_.shown().groups[static_cast<std::size_t>(MarkedGroup())]);
  cursor.setPosition(cursor.anchor());
  setTextCursor(cursor);  // scrolls there and tells screen readers
}

void PhoneDisplay::DrawMark() {
  QList<QTextEdit::ExtraSelection> marks;
  if (MarkedGroup() >= 0) {
    const Theme theme = CurrentTheme();
    QTextEdit::ExtraSelection mark;
    mark.cursor = Select(display_.shown().groups[static_cast<std::size_t>(MarkedGroup())]);
    mark.format.setBackground(theme.displayInk);
    mark.format.setForeground(theme.displayGround);
    marks << mark;
  }
  setExtraSelections(marks);
}

// The invitation in the ink of all else: a placeholder text would be too pale on the display.
void PhoneDisplay::paintEvent(QPaintEvent* event) {
  QPlainTextEdit::paintEvent(event);
  if (display_.result().empty()) {
    QPainter painter(viewport());
    painter.setPen(CurrentTheme().displayInk);
    painter.drawText(viewport()->rect().adjusted(kGrid / 2, kGrid / 2, -kGrid / 2, 0),
                     Qt::TextWordWrap, invitation_);
  }
}

QMimeData* PhoneDisplay::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  auto* mime = new QMimeData;
  mime->setText(ToQStringLines(display_.Part({static_cast<std::size_t>(cursor.selectionStart()),
                                              static_cast<std::size_t>(cursor.selectionEnd())})));
  return mime;
}

void PhoneDisplay::keyPressEvent(QKeyEvent* event) {
  using app::Move;
  static const std::map<int, Move> kMoves = {
      {Qt::Key_Left, Move::kPrevious},  {Qt::Key_Right, Move::kNext},
      {Qt::Key_Up, Move::kUp},          {Qt::Key_Down, Move::kDown},
      {Qt::Key_Home, Move::kLineBegin}, {Qt::Key_End, Move::kLineEnd},
      {Qt::Key_PageUp, Move::kFirst},   {Qt::Key_PageDown, Move::kLast}};
  const auto move = kMoves.find(event->key());
  const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
  if (!plain || move == kMoves.end() || display_.shown().groups.empty()) {
    QPlainTextEdit::keyPressEvent(event);
    return;
  }
  Mark(MovedMark(display_.shown(), MarkedGroup(), move->second));
  GoToMark();
}

void PhoneDisplay::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  const int under = cursorForPosition(event->pos()).position();
  if (!(event->buttons() & Qt::LeftButton) && display_.MarkAt(static_cast<std::size_t>(under))) {
    DrawMark();
  }
}

void PhoneDisplay::mousePressEvent(QMouseEvent* event) {
  Mark(-1);
  QPlainTextEdit::mousePressEvent(event);
}

void PhoneDisplay::leaveEvent(QEvent* event) {
  QPlainTextEdit::leaveEvent(event);
  if (!hasFocus()) {
    Mark(-1);
  }
}

void PhoneDisplay::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  Mark(-1);
}

void PhoneDisplay::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() & Qt::ControlModifier) {
    SetPixelSize(PixelSize() + (event->angleDelta().y() > 0 ? 2 : -2));
    return;
  }
  QPlainTextEdit::wheelEvent(event);
}

// Always leaves room for the scroll bar, so that showing it changes no line break.
void PhoneDisplay::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const QScrollBar& bar = *verticalScrollBar();
  const int free = bar.isVisible() ? 0 : bar.sizeHint().width();
  if (display_.SetPlace(viewport()->width() - free - kGrid, viewport()->height() - kGrid)) {
    Draw();
  }
}

void PhoneDisplay::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {  // fonts and colours may have changed
    display_.LayOut();
    Draw();
  }
}

}  // namespace tonadex::shell
