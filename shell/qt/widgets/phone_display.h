#pragma once

#include <QPlainTextEdit>
#include <QString>
#include <vector>

namespace tonadex::shell {

// A run of the display's text that no line end tears apart.
struct DisplayGroup {
  QString text;
  int heldFrom = 0, heldTo = 0;  // a range of `text` that is set heavier
};

// A text on a phone's monochrome display: monospaced, wrapped between groups, for reading,
// selecting and copying. The group under the pointer, or reached with the arrow keys, is marked.
// Until someone chooses a size, the text is as large as its place allows, within limits.
class PhoneDisplay : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit PhoneDisplay(QWidget* parent = nullptr);

  // `text` as it stands; `groups` in its order, each found in it. `counted`: groups stand well
  // apart and each line names its first one at the margin (1-based).
  void SetResult(const QString& text, const std::vector<DisplayGroup>& groups, bool counted);
  // The text as it was given, whatever is drawn.
  const QString& Text() const { return text_; }
  // What is shown instead of an empty text.
  void SetInvitation(const QString& sentence) { setPlaceholderText(sentence); }

  // Takes the height that is left and asks for none.
  QSize sizeHint() const override { return {QPlainTextEdit::sizeHint().width(), minimumHeight()}; }
  QSize minimumSizeHint() const override {
    return {QPlainTextEdit::minimumSizeHint().width(), minimumHeight()};
  }
  int PixelSize() const { return font().pixelSize(); }
  // What the user chose, 0 while the text has the size that fits.
  int ChosenPixelSize() const { return sizeChosen_ ? PixelSize() : 0; }
  void SetPixelSize(int pixels);

  // 0-based marked group, -1 for none.
  int MarkedGroup() const { return marked_; }

 signals:
  void PixelSizeChanged(int pixels);

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  friend class GroupMargin;
  struct Span {
    int begin, end;          // positions in the document
    int heldBegin, heldEnd;  // set heavier
  };
  int GroupAt(int position) const;
  void Mark(int group);
  void StepMark(int step);
  void SetFontFor(int pixels);
  void FitText();
  void PaintMargin(QPainter& painter) const;
  void PlaceMargin();
  void SetHeldFormats();

  QString text_;
  std::vector<int> origin_;  // of each document position, its position in text_
  std::vector<Span> spans_;
  QWidget* margin_;
  bool counted_ = false;
  int marked_ = -1;
  bool sizeChosen_ = false;
  bool fitting_ = false;
};

}  // namespace tonadex::shell
