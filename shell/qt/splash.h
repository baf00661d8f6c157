#pragma once

#include <QWidget>
#include <vector>

#include "app/inicio.h"
#include "app/melody_layout.h"

class QLabel;
class QTimer;

namespace tonadex::shell {

// The splash: draws inicio and ticks its timer.
class Splash : public QWidget {
  Q_OBJECT
 public:
  explicit Splash(app::Program& program);
  // Shows it in the middle of the screen and starts the interval.
  void Start();

 signals:
  void Finished();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Tick();
  void Draw();

  app::Program& program_;
  app::inicio model_;
  std::vector<app::Box> pattern_;
  std::vector<QLabel*> lines_;  // as inicio::Lines() has them
  QTimer* timer_;
};

}  // namespace tonadex::shell
