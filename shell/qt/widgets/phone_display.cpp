#include "shell/qt/widgets/phone_display.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>

#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

constexpr QChar kBreakHere(0x200B);   // no width: a line may end here
constexpr QChar kKeepTogether(0xA0);  // a blank that no line ends at

// The document's text is built from the result's: breaks are allowed between neighbouring groups
// and forbidden within them. `origin` maps back, so that copying gives the result itself.
struct DocumentText {
  QString text;
  std::vector<int> origin;

  void Append(QChar character, qsizetype at) {
    text += character;
    origin.push_back(static_cast<int>(at));
  }
};

}  // namespace

// The strip at the left that numbers the groups.
class GroupMargin : public QWidget {
 public:
  explicit GroupMargin(PhoneDisplay* display) : QWidget(display), display_(display) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    display_->PaintMargin(painter);
  }

 private:
  PhoneDisplay* display_;
};

PhoneDisplay::PhoneDisplay(QWidget* parent)
    : QPlainTextEdit(parent), margin_(new GroupMargin(this)) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setMouseTracking(true);
  viewport()->setMouseTracking(true);
  document()->setDocumentMargin(kGrid / 2.0);
  margin_->setAttribute(Qt::WA_TransparentForMouseEvents);
  connect(this, &QPlainTextEdit::updateRequest, margin_, [this] { margin_->update(); });
  SetFontFor(kSmallestFit);
}

void PhoneDisplay::SetResult(const QString& text, const std::vector<DisplayGroup>& groups,
                             bool counted) {
  text_ = text;
  counted_ = counted && !groups.empty();
  spans_.clear();
  DocumentText document;
  qsizetype at = 0;
  const auto copyUpTo = [&](qsizetype end) {
    for (; at < end; ++at) {
      const bool pairedReturn = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
      if (!pairedReturn) {
        document.Append(text[at] == '\r' ? QChar('\n') : text[at], at);
      }
    }
  };
  for (const DisplayGroup& group : groups) {
    const qsizetype found = group.text.isEmpty() ? -1 : text.indexOf(group.text, at);
    if (found < 0) {
      continue;
    }
    if (found == at && at > 0 && !spans_.empty() &&
        spans_.back().end == static_cast<int>(document.text.size())) {
      document.Append(kBreakHere, at);
    }
    copyUpTo(found);
    const int begin = static_cast<int>(document.text.size());
    for (; at < found + group.text.size(); ++at) {
      document.Append(text[at] == ' ' ? kKeepTogether : text[at], at);
    }
    spans_.push_back({begin, static_cast<int>(document.text.size()), begin + group.heldFrom,
                      begin + group.heldTo});
  }
  copyUpTo(text.size());
  origin_ = std::move(document.origin);
  origin_.push_back(static_cast<int>(text.size()));
  marked_ = -1;
  setExtraSelections({});
  setPlainText(document.text);
  SetFontFor(PixelSize());
  SetHeldFormats();
  PlaceMargin();
  FitText();
}

void PhoneDisplay::SetHeldFormats() {
  QTextCharFormat heavy;
  heavy.setFontWeight(QFont::Black);
  QTextCursor cursor(document());
  for (const Span& span : spans_) {
    if (span.heldBegin < span.heldEnd) {
      cursor.setPosition(span.heldBegin);
      cursor.setPosition(span.heldEnd, QTextCursor::KeepAnchor);
      cursor.mergeCharFormat(heavy);
    }
  }
}

void PhoneDisplay::SetPixelSize(int pixels) {
  const int wanted = std::clamp(pixels, kSmallestType, kLargestType);
  if (wanted != PixelSize()) {
    sizeChosen_ = true;
    SetFontFor(wanted);
    PlaceMargin();
    emit PixelSizeChanged(wanted);
  }
}

void PhoneDisplay::FitText() {
  if (sizeChosen_ || fitting_ || text_.isEmpty()) {
    return;
  }
  fitting_ = true;  // each size moves the margin, and so resizes the place again
  const int before = PixelSize();
  for (int pixels = kLargestFit; pixels >= kSmallestFit; pixels -= 2) {
    SetFontFor(pixels);
    PlaceMargin();
    const qreal lines = document()->size().height();  // a plain document counts its lines
    if (lines * QFontMetricsF(font()).lineSpacing() + kGrid <= viewport()->height()) {
      break;
    }
  }
  fitting_ = false;
  if (PixelSize() != before) {
    emit PixelSizeChanged(PixelSize());
  }
}

void PhoneDisplay::SetFontFor(int pixels) {
  QFont display = CurrentTheme().mono;
  display.setPixelSize(pixels);
  display.setWordSpacing(counted_ ? pixels * 0.75 : 0);
  setFont(display);
  margin_->setFont(display);
}

void PhoneDisplay::PlaceMargin() {
  int width = 0;
  if (counted_) {
    QFont small = font();
    small.setPixelSize(std::max(12, PixelSize() * 3 / 4));
    width = QFontMetrics(small).horizontalAdvance(QString::number(spans_.size())) + 2 * kGrid;
  }
  setViewportMargins(width, 0, 0, 0);
  const QRect contents = contentsRect();
  margin_->setGeometry(contents.left(), contents.top(), width, contents.height());
  margin_->setVisible(width > 0);
}

void PhoneDisplay::PaintMargin(QPainter& painter) const {
  const Theme theme = CurrentTheme();
  QFont small = font();
  small.setPixelSize(std::max(12, PixelSize() * 3 / 4));
  painter.setFont(small);
  painter.setPen(theme.displayInk);
  painter.setOpacity(0.75);
  const int right = margin_->width() - kGrid;
  auto span = spans_.begin();
  for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next()) {
    const QRectF box = blockBoundingGeometry(block).translated(contentOffset());
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
      const QTextLine line = block.layout()->lineAt(i);
      const int begin = block.position() + line.textStart();
      span = std::find_if(span, spans_.end(), [&](const Span& s) { return s.begin >= begin; });
      if (span == spans_.end()) {
        return;
      }
      if (span->begin >= begin + line.textLength()) {
        continue;
      }
      const QRectF place(0, box.top() + line.y(), right, line.height());
      painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                       QString::number(span - spans_.begin() + 1));
    }
  }
  painter.setOpacity(0.35);
  painter.drawLine(margin_->width() - kGrid / 2, 2, margin_->width() - kGrid / 2,
                   margin_->height() - 2);
}

int PhoneDisplay::GroupAt(int position) const {
  const auto found = std::find_if(spans_.begin(), spans_.end(), [position](const Span& span) {
    return position >= span.begin && position < span.end;
  });
  return found == spans_.end() ? -1 : static_cast<int>(found - spans_.begin());
}

void PhoneDisplay::Mark(int group) {
  if (group == marked_) {
    return;
  }
  marked_ = group;
  QList<QTextEdit::ExtraSelection> marks;
  if (group >= 0) {
    const Theme theme = CurrentTheme();
    const Span& span = spans_[static_cast<std::size_t>(group)];
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(document());
    mark.cursor.setPosition(span.begin);
    mark.cursor.setPosition(span.end, QTextCursor::KeepAnchor);
    mark.format.setBackground(theme.displayInk);
    mark.format.setForeground(theme.displayGround);
    marks << mark;
  }
  setExtraSelections(marks);
}

void PhoneDisplay::StepMark(int step) {
  const int last = static_cast<int>(spans_.size()) - 1;
  const int group = std::clamp(marked_ < 0 ? (step > 0 ? 0 : last) : marked_ + step, 0, last);
  QTextCursor cursor = textCursor();
  cursor.setPosition(spans_[static_cast<std::size_t>(group)].begin);
  setTextCursor(cursor);  // scrolls there and tells screen readers
  Mark(group);
}

QMimeData* PhoneDisplay::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  const int begin = origin_[static_cast<std::size_t>(cursor.selectionStart())];
  const int end = origin_[static_cast<std::size_t>(cursor.selectionEnd())];
  auto* mime = new QMimeData;
  mime->setText(text_.mid(begin, end - begin).replace("\r\n", "\n").replace('\r', '\n'));
  return mime;
}

void PhoneDisplay::keyPressEvent(QKeyEvent* event) {
  const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
  const int key = event->key();
  if (plain && !spans_.empty() && (key == Qt::Key_Left || key == Qt::Key_Right)) {
    StepMark(key == Qt::Key_Right ? 1 : -1);
    return;
  }
  if (plain && (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Home ||
                key == Qt::Key_End || key == Qt::Key_PageUp || key == Qt::Key_PageDown)) {
    const QTextCursor::MoveOperation move = key == Qt::Key_Up       ? QTextCursor::Up
                                            : key == Qt::Key_Down   ? QTextCursor::Down
                                            : key == Qt::Key_Home   ? QTextCursor::StartOfLine
                                            : key == Qt::Key_End    ? QTextCursor::EndOfLine
                                            : key == Qt::Key_PageUp ? QTextCursor::Start
                                                                    : QTextCursor::End;
    moveCursor(move);
    const int position = textCursor().position();
    const int group = GroupAt(position);
    Mark(group >= 0 ? group : GroupAt(position - 1));
    return;
  }
  QPlainTextEdit::keyPressEvent(event);
}

void PhoneDisplay::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  if (!(event->buttons() & Qt::LeftButton)) {
    const QTextCursor under = cursorForPosition(event->pos());
    int group = GroupAt(under.position());
    if (group < 0) {
      group = GroupAt(under.position() - 1);
    }
    Mark(group);
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

void PhoneDisplay::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  PlaceMargin();
  FitText();
}

void PhoneDisplay::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && margin_ != nullptr) {
    margin_->update();
    Mark(-1);  // it has colours of its own
  }
}

}  // namespace tonadex::shell
