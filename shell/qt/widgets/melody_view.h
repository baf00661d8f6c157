#pragma once

#include <QWidget>

#include "app/melody_drawing.h"

class QScrollBar;

namespace tonadex::shell {

// A melody as a picture: time from left to right, pitch upward on five faint lines, bar lines,
// notes as rounded bars with their names, pauses as gaps. Long melodies scroll.
class MelodyView : public QWidget {
  Q_OBJECT
 public:
  explicit MelodyView(QWidget* parent = nullptr);

  // `words` says the drawing to those who do not see it; `invitation` stands in an empty one.
  void SetDrawing(const app::Drawing& drawing, const QString& words, const QString& invitation);
  // Marks the note that sounds and keeps it in view; a negative position marks none.
  void SetPosition(double ms);
  static constexpr int kLeastHeight = 80;
  static constexpr int kLargestHeight = 220;
  int SoundingNote() const { return sounding_; }
  // Where a note of the drawing stands now, in the widget.
  QRectF NoteBox(const app::DrawnNote& note) const;

  QSize sizeHint() const override { return {480, kLeastHeight}; }
  QSize minimumSizeHint() const override { return {200, kLeastHeight}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QRectF Staff() const;
  double PixelsPerMs() const;
  void PaintGround(QPainter& painter) const;
  void PaintNote(QPainter& painter, const app::DrawnNote& note, bool sounds) const;
  void PlaceScrollBar();

  app::Drawing drawing_;
  QString invitation_;
  int sounding_ = -1;
  QScrollBar* scroll_;
};

}  // namespace tonadex::shell
