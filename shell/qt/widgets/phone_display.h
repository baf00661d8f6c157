#pragma once

#include <QPlainTextEdit>

#include "app/display_layout.h"

namespace tonadex::shell {

// A result on a phone's monochrome display, for reading, selecting and copying. The group under
// the pointer, or reached with the keys, is marked.
class PhoneDisplay : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit PhoneDisplay(QWidget* parent = nullptr);

  // `counted`: groups are keys or notes, numbered at the margin and in columns.
  void SetResult(const std::string& result, std::vector<app::ResultGroup> groups, bool counted);
  // The result as it was given, whatever is drawn.
  const std::string& Text() const { return display_.result(); }
  // Sets the text shown while there is no result.
  void SetInvitation(const QString& sentence);

  // The layout gives the display what height remains.
  QSize sizeHint() const override { return {QPlainTextEdit::sizeHint().width(), minimumHeight()}; }
  QSize minimumSizeHint() const override {
    return {QPlainTextEdit::minimumSizeHint().width(), minimumHeight()};
  }
  int PixelSize() const { return display_.PixelSize(); }
  // The size that the user chose, 0 while the text has the largest size that fits.
  int ChosenPixelSize() const { return display_.ChosenPixelSize(); }
  void SetPixelSize(int pixels);

  // Marks the group whose note sounds and scrolls it into view; -1 removes that mark.
  void Follow(int group);
  // 0-based marked group, -1 for none.
  int MarkedGroup() const { return display_.marked(); }

 signals:
  void PixelSizeChanged(int pixels);

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  QTextCursor Select(app::TextRange range) const;
  void Draw();
  void Mark(int group);
  void DrawMark();
  void GoToMark();

  app::ResultDisplay display_;
  QString invitation_;
};

}  // namespace tonadex::shell
