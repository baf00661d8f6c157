#include "shell/qt/window/pages.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <algorithm>

#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/flow_layout.h"
#include "shell/qt/widgets/waiting_line.h"

namespace tonadex::shell {
namespace {

using app::Part;

// At the size of the type.
void SetBounds(QWidget* widget, const Part& part) {
  const double scale = CurrentTheme().scale;
  const auto scaled = [scale](int pixels) {
    return pixels == Part::kUnbounded ? QWIDGETSIZE_MAX : qRound(pixels * scale);
  };
  if (part.leastWidth > 0 || part.leastHeight > 0) {
    widget->setMinimumSize(scaled(part.leastWidth), scaled(part.leastHeight));
  }
  if (part.shrinks) {
    widget->setMinimumWidth(scaled(kLeastLink));
  }
  widget->setMaximumSize(scaled(part.mostWidth), scaled(part.mostHeight));
}

bool IsBounded(const Part& part) {
  return part.leastWidth > 0 || part.leastHeight > 0 || part.mostWidth < Part::kUnbounded ||
         part.mostHeight < Part::kUnbounded;
}

void Insert(QLayout* box, int index, QWidget* widget, int weight) {
  if (auto* line = qobject_cast<QBoxLayout*>(box)) {
    line->insertWidget(index, widget, weight);
  } else {
    static_cast<FlowLayout*>(box)->Insert(index, widget, weight);
  }
}

void AddStretch(QLayout* box, int weight) {
  if (auto* line = qobject_cast<QBoxLayout*>(box)) {
    line->addStretch(weight);
  } else {
    static_cast<FlowLayout*>(box)->AddStretch(weight);
  }
}

void AddLayout(QLayout* box, QLayout* inner, int weight) {
  if (auto* line = qobject_cast<QBoxLayout*>(box)) {
    line->addLayout(inner, weight);
  } else {
    static_cast<FlowLayout*>(box)->Add(inner, weight);
  }
}

QWidget* Framed(const Part& part, QLayout* box) {
  auto* frame = new QFrame;
  frame->setLayout(box);
  if (part.frame != Part::Frame::kNone) {
    frame->setProperty(part.frame == Part::Frame::kBar ? "bar" : "card", true);
    frame->setAttribute(Qt::WA_StyledBackground);
  }
  if (!part.scrolls) {
    return frame;
  }
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(frame);
  area->viewport()->setAutoFillBackground(false);
  frame->setAutoFillBackground(false);
  return area;
}

}  // namespace

Pages::Pages(const Binding& binding, QWidget* window) : binding_(binding) {
  Built frame{nullptr, window, {}};
  for (const app::Page& page : app::Pages()) {
    for (const auto layout : {page.wide, page.layout}) {
      if (layout != nullptr && std::ranges::find(pages_, layout, &Built::layout) == pages_.end()) {
        Built built{layout, nullptr, {}};
        const Part part = layout();
        built.widget = Framed(part, Box(part, built));
        built.widget->hide();
        pages_.push_back(std::move(built));
      }
    }
  }
  window->setLayout(Box(app::WindowLayout({.kind = Part::Kind::kPage}), frame));
}

QLayout* Pages::Box(const Part& part, Built& page) {
  QLayout* box = nullptr;
  if (part.wraps) {
    box = new FlowLayout;
  } else {
    box = new QBoxLayout(part.kind == Part::Kind::kRow ? QBoxLayout::LeftToRight
                                                       : QBoxLayout::TopToBottom);
  }
  box->setContentsMargins(part.marginX, part.marginTop, part.marginX, part.marginBottom);
  box->setSpacing(part.gap);
  for (const Part& each : part.parts) {
    Add(box, each, page);
  }
  return box;
}

void Pages::Add(QLayout* box, const Part& part, Built& page) {
  switch (part.kind) {
    case Part::Kind::kControl: {
      QWidget* widget = binding_.Widget(part.control);
      if (auto* waiting = qobject_cast<WaitingLine*>(widget)) {
        waiting->PutUnder(box->itemAt(box->count() - 1)->widget());
        break;  // it lies over what follows
      }
      SetBounds(widget, part);
      if (auto* label = qobject_cast<QLabel*>(widget)) {
        const auto* line = qobject_cast<QBoxLayout*>(box);
        label->setWordWrap(part.weight > 0 ||
                           (line != nullptr && line->direction() == QBoxLayout::TopToBottom));
      }
      page.leaves.push_back({box, box->count(), widget, part});
      Insert(box, box->count(), widget, part.weight);
      break;
    }
    case Part::Kind::kStretch:
      AddStretch(box, part.weight);
      break;
    case Part::Kind::kPage:
      for (const Built& built : pages_) {
        Insert(box, box->count(), built.widget, 1);
      }
      break;
    case Part::Kind::kRow:
    case Part::Kind::kColumn: {
      QLayout* inner = Box(part, page);
      if (part.frame == Part::Frame::kNone && !part.scrolls && !IsBounded(part)) {
        AddLayout(box, inner, part.weight);
        break;
      }
      QWidget* widget = Framed(part, inner);
      SetBounds(widget, part);
      if (part.frame == Part::Frame::kBar) {
        bars_.push_back({widget, app::ControlsIn(part)});
      }
      Insert(box, box->count(), widget, part.weight);
    }
  }
}

void Pages::ShowBars(const app::Form1& form) const {
  for (const auto& [widget, controls] : bars_) {
    widget->setVisible(
        std::ranges::any_of(controls, [&](auto control) { return (form.*control).visible; }));
  }
}

bool Pages::Show(std::int16_t page, int pixels) {
  const int width = qRound(pixels / CurrentTheme().scale);
  const auto wanted = std::ranges::find(app::Pages(), page, &app::Page::number);
  if (wanted == app::Pages().end() || wanted->LayoutFor(width) == shown_) {
    return false;
  }
  shown_ = wanted->LayoutFor(width);
  for (const Built& built : pages_) {
    built.widget->setVisible(built.layout == shown_);
    if (built.layout == shown_) {
      for (const Leaf& leaf : built.leaves) {
        if (leaf.box->indexOf(leaf.widget) < 0) {
          SetBounds(leaf.widget, leaf.part);
          Insert(leaf.box, leaf.index, leaf.widget, leaf.part.weight);
        }
      }
    }
  }
  return true;
}

}  // namespace tonadex::shell
