#pragma once

#include <vector>

#include "app/layout.h"
#include "shell/qt/window/binding.h"

class QBoxLayout;

namespace tonadex::shell {

// The window's widgets in box layouts, built from the model's trees. A control of two pages moves
// to the page that is shown.
class Pages {
 public:
  Pages(const Binding& binding, QWidget* window);

  // Hides the bars that have nothing to show.
  void ShowBars(const app::Form1& form) const;
  // True when another layout than before is shown: of another page, or for another width.
  bool Show(std::int16_t page, int pixels);
  app::Part Shown() const {
    return shown_ == nullptr ? app::Column({}) : shown_->layout(shown_->wide);
  }

 private:
  struct Leaf {
    QBoxLayout* box;
    int index;
    QWidget* widget;
    app::Part part;
  };
  struct Built {
    app::Part (*layout)(bool wide);
    bool wide;
    QWidget* widget;
    std::vector<Leaf> leaves;
  };

  const Built* Find(const app::Page& page, bool wide) const;
  QBoxLayout* Box(const app::Part& part, Built& page);
  void Add(QBoxLayout* box, const app::Part& part, Built& page);

  const Binding& binding_;
  struct Bar {
    QWidget* widget;
    std::vector<app::Control app::Form1::*> controls;
  };
  std::vector<Built> pages_;
  std::vector<Bar> bars_;
  const Built* shown_ = nullptr;  // of `pages_`, which is complete
};

}  // namespace tonadex::shell
