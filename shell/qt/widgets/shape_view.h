#pragma once

#include <QWidget>
#include <functional>

#include "app/picture.h"

namespace tonadex::shell {

// A picture of shapes on a card.
class ShapeView : public QWidget {
  Q_OBJECT
 public:
  using Source = std::function<app::Picture(double width, double height)>;

  explicit ShapeView(QWidget* parent = nullptr);

  // Repaints the picture if it has changed. `spoken` describes it to screen readers.
  void SetPicture(const Source& source, const QString& spoken);
  const app::Picture& Shown() const { return picture_; }
  // The `hit` of the shape that was clicked last, -1 for none.
  int Hit() const { return hit_; }

 signals:
  void Clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Update();

  Source source_;
  app::Picture picture_;
  int hit_ = -1;
};

}  // namespace tonadex::shell
