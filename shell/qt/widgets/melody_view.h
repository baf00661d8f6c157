#pragma once

#include <QWidget>

#include "app/melody_layout.h"

class QScrollBar;

namespace tonadex::shell {

// A melody as a picture: time from left to right, pitch upward on five faint lines, bar lines,
// notes as rounded bars with their names, pauses as gaps. Long melodies scroll.
class MelodyView : public QWidget {
  Q_OBJECT
 public:
  explicit MelodyView(QWidget* parent = nullptr);

  // `invitation` is shown while there are no notes.
  void SetDrawing(const app::Drawing& drawing, const QString& invitation);
  // Marks the note that sounds and keeps it in view; a negative position marks none.
  void SetPosition(double ms);
  // Marks a note by its index, -1 for none, in the same way.
  void Mark(int note);
  const app::MelodyPicture& Picture() const { return picture_; }

  QSize sizeHint() const override { return {480, minimumHeight()}; }
  QSize minimumSizeHint() const override { return {200, minimumHeight()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void FitPicture();
  void Show(bool changed);
  void ScrollBy(int pixels);

  app::MelodyPicture picture_;
  QString invitation_;
  QScrollBar* scroll_;
};

}  // namespace tonadex::shell
