#include "shell/qt/window/pages.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <algorithm>
#include <utility>

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
  Built frame{nullptr, false, window, {}};
  for (const app::Page& page : app::Pages()) {
    for (const bool wide : {true, false}) {
      if (page.hasWide >= wide && Find(page, wide) == nullptr) {
        Built built{page.layout, wide, nullptr, {}};
        const Part part = page.layout(wide);
        built.widget = Framed(part, Box(part, built));
        built.widget->hide();
        pages_.push_back(std::move(built));
      }
    }
  }
  window->setLayout(Box(app::WindowLayout({.kind = Part::Kind::kPage}), frame));
}

QBoxLayout* Pages::Box(const Part& part, Built& page) {
  auto* box = part.wraps                         ? new FlowLayout
              : part.kind == Part::Kind::kColumn ? new QBoxLayout(QBoxLayout::TopToBottom)
                                                 : new QBoxLayout(QBoxLayout::LeftToRight);
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

const Pages::Built* Pages::Find(const app::Page& page, bool wide) const {
  const auto found = std::ranges::find_if(pages_, [&](const Built& built) {
    return built.layout == page.layout && built.wide == wide;
  });
  return found == pages_.end() ? nullptr : &*found;
}

bool Pages::Show(std::int16_t page, int pixels) {
  const int width = qRound(pixels / CurrentTheme().scale);
  const auto wanted = std::ranges::find(app::Pages(), page, &app::Page::number);
  const Built* built = wanted == app::Pages().end() ? shown_ : Find(*wanted, wanted->IsWide(width));
  if (built == std::exchange(shown_, built)) {
    return false;
  }
  for (const Built& each : pages_) {
    each.widget->setVisible(&each == shown_);
  }
  for (const Leaf& leaf : shown_->leaves) {
    if (leaf.box->indexOf(leaf.widget) < 0) {
      SetBounds(leaf.widget, leaf.part);
      leaf.box->insertWidget(leaf.index, leaf.widget, leaf.part.weight);
    }
  }
  return true;
}

}  // namespace tonadex::shell
