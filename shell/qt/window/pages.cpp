#include "shell/qt/window/pages.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <algorithm>

#include "shell/qt/widgets/waiting_line.h"

namespace tonadex::shell {
namespace {

using app::Part;

void SetBounds(QWidget* widget, const Part& part) {
  const auto most = [](int pixels) {
    return pixels == Part::kUnbounded ? QWIDGETSIZE_MAX : pixels;
  };
  if (part.leastWidth > 0 || part.leastHeight > 0) {
    widget->setMinimumSize(part.leastWidth, part.leastHeight);
  }
  widget->setMaximumSize(most(part.mostWidth), most(part.mostHeight));
}

bool IsBounded(const Part& part) {
  return part.leastWidth > 0 || part.leastHeight > 0 || part.mostWidth < Part::kUnbounded ||
         part.mostHeight < Part::kUnbounded;
}

QWidget* Framed(const Part& part, QBoxLayout* box) {
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

QBoxLayout* Pages::Box(const Part& part, Built& page) {
  auto* box = new QBoxLayout(part.kind == Part::Kind::kRow ? QBoxLayout::LeftToRight
                                                           : QBoxLayout::TopToBottom);
  box->setContentsMargins(part.marginX, part.marginTop, part.marginX, part.marginBottom);
  box->setSpacing(part.gap);
  for (const Part& each : part.parts) {
    Add(box, each, page);
  }
  return box;
}

void Pages::Add(QBoxLayout* box, const Part& part, Built& page) {
  switch (part.kind) {
    case Part::Kind::kControl: {
      QWidget* widget = binding_.Widget(part.control);
      if (auto* waiting = qobject_cast<WaitingLine*>(widget)) {
        waiting->PutUnder(box->itemAt(box->count() - 1)->widget());
        break;  // it lies over what follows
      }
      SetBounds(widget, part);
      if (auto* label = qobject_cast<QLabel*>(widget)) {
        label->setWordWrap(part.weight > 0 || box->direction() == QBoxLayout::TopToBottom);
      }
      page.leaves.push_back({box, box->count(), widget, part});
      box->addWidget(widget, part.weight);
      break;
    }
    case Part::Kind::kStretch:
      box->addStretch(part.weight);
      break;
    case Part::Kind::kPage:
      for (const Built& built : pages_) {
        box->addWidget(built.widget, 1);
      }
      break;
    case Part::Kind::kRow:
    case Part::Kind::kColumn: {
      QBoxLayout* inner = Box(part, page);
      if (part.frame == Part::Frame::kNone && !part.scrolls && !IsBounded(part)) {
        box->addLayout(inner, part.weight);
        break;
      }
      QWidget* widget = Framed(part, inner);
      SetBounds(widget, part);
      if (part.frame == Part::Frame::kBar) {
        bars_.push_back({widget, app::ControlsIn(part)});
      }
      box->addWidget(widget, part.weight);
    }
  }
}

void Pages::ShowBars(const app::Form1& form) const {
  for (const auto& [widget, controls] : bars_) {
    widget->setVisible(
        std::ranges::any_of(controls, [&](auto control) { return (form.*control).visible; }));
  }
}

bool Pages::Show(std::int16_t page, int width) {
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
          leaf.box->insertWidget(leaf.index, leaf.widget, leaf.part.weight);
        }
      }
    }
  }
  return true;
}

}  // namespace tonadex::shell
