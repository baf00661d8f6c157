#include "shell/win32/pages.h"

#include <algorithm>

#include "shell/win32/drawing.h"
#include "shell/win32/widgets/busy_line.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using app::Look;
using app::Part;

constexpr int kLineWidth = 100, kAreaPadding = 6, kDroppedRows = 10;

// The natural size of a window that may be `width` wide; the layout applies the model's limits.
app::Size Measure(const BoundControl& bound, const Theme& theme, int width) {
  if (app::IsButton(bound.info->look)) {
    return ButtonSize(bound.window, theme);
  }
  switch (bound.info->look) {
    case Look::kLabel: {
      const std::wstring text = WindowText(bound.window);
      const SIZE words = TextSize(theme.FontOf(bound.info->font).get(),
                                  bound.info->field != nullptr ? PlainWords(text) : text, width);
      return {static_cast<int>(words.cx) + theme.Px(2),
              std::max(static_cast<int>(words.cy), theme.LineOf(bound.info->font))};
    }
    case Look::kLine:
    case Look::kReading:
    case Look::kComboBox:
      return {theme.Px(kLineWidth), theme.control};
    case Look::kArea:
    case Look::kNotices:
    case Look::kList:
      return {0, 2 * (theme.line + theme.Px(kAreaPadding))};
    case Look::kSlider:
    case Look::kPicture:
      return {theme.Px(4 * kGrid), theme.Px(4 * kGrid)};
    case Look::kKeys:
      return {0, bound.keys->Height(width)};
    default:
      return {};
  }
}

// Whether the parent paints a frame around the window.
bool HasFrame(Look look) {
  return app::IsTextBox(look) || look == Look::kList || look == Look::kDisplay;
}

RECT Within(const BoundControl& bound, RECT box, const Theme& theme) {
  const LONG middle = (box.top + box.bottom - theme.line) / 2;
  switch (bound.info->look) {
    case Look::kLine:
    case Look::kReading:
      return {box.left + theme.Px(kGrid), middle, box.right - theme.Px(kGrid), middle + theme.line};
    case Look::kArea:
    case Look::kNotices:
      InflateRect(&box, -theme.Px(kGrid), -theme.Px(kAreaPadding));
      return box;
    case Look::kDisplay:
      InflateRect(&box, -theme.Px(6), -theme.Px(6));
      return box;
    case Look::kList:
      InflateRect(&box, -theme.Px(2), -theme.Px(2));
      return box;
    case Look::kComboBox:  // its height includes the dropped list
      box.bottom += kDroppedRows * theme.line;
      return box;
    case Look::kBusyLine:  // covers the top of the page
      box.bottom = box.top + BusyLineHeight(theme);
      return box;
    default:
      return box;
  }
}

// Lets nothing of a window show outside the frame's view.
void CutOff(HWND window, const Frame& frame, const RECT& box) {
  RECT known{};
  const bool cut = GetWindowRgnBox(window, &known) != ERROR;
  RECT shown = AsRect(frame.view);
  const RECT whole = AsRect(frame.box);
  IntersectRect(&shown, &shown, &whole);
  if (EqualRect(&shown, &whole) != 0) {
    if (cut) {
      SetWindowRgn(window, nullptr, TRUE);
    }
    return;
  }
  OffsetRect(&shown, -box.left, -box.top);
  if (!cut || EqualRect(&known, &shown) == 0) {
    SetWindowRgn(window, CreateRectRgnIndirect(&shown), TRUE);
  }
}

Part TreeFor(const app::Form1& form, const Theme& theme, int width) {
  return app::WindowLayout(
      app::PageLayout(form.paginaactual, MulDiv(width, 96, static_cast<int>(theme.dpi))));
}

app::Measure MeasureBy(const Binding& binding, const Theme& theme) {
  return [&](app::Control app::Form1::*member, int width) {
    return Measure(binding.Of(member), theme, width);
  };
}

std::vector<app::Placed> PlaceAll(const Part& tree, const Binding& binding, const Theme& theme,
                                  const app::Form1& form, SIZE size, int scrolled) {
  return app::Place(form, tree, {0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy)},
                    theme.dpi / 96.0, MeasureBy(binding, theme), scrolled);
}

}  // namespace

int NeededHeight(const Binding& binding, const Theme& theme, const app::Form1& form, int width) {
  return app::HeightFor(form, TreeFor(form, theme, width), width, theme.dpi / 96.0,
                        MeasureBy(binding, theme));
}

std::vector<Frame> LayOut(const Binding& binding, const Theme& theme, const app::Form1& form,
                          SIZE size, int scrolled) {
  const Part tree = TreeFor(form, theme, static_cast<int>(size.cx));
  std::vector<Frame> frames;
  const auto placed = PlaceAll(tree, binding, theme, form, size, scrolled);
  HDWP moves = BeginDeferWindowPos(static_cast<int>(placed.size()));
  HWND last = HWND_TOP;
  for (const auto& [part, rect, view] : placed) {
    Frame frame{part->frame == Part::Frame::kBar ? Frame::kBar : Frame::kCard, rect, view};
    if (part->control == nullptr) {
      frames.push_back(frame);
      continue;
    }
    const BoundControl& bound = binding.Of(part->control);
    if (HasFrame(bound.info->look)) {
      frames.push_back(
          {bound.display != nullptr ? Frame::kDisplay : Frame::kField, rect, view, bound.window});
    }
    const RECT box = Within(bound, frame.Box(), theme);
    CutOff(bound.window, frame, box);
    if (moves != nullptr) {
      moves = DeferWindowPos(
          moves, bound.window, last, box.left, box.top, std::max(LONG{0}, box.right - box.left),
          std::max(LONG{0}, box.bottom - box.top),
          // Words may break elsewhere now.
          SWP_NOACTIVATE | (bound.info->look == Look::kLabel ? SWP_NOCOPYBITS : 0U));
    }
    last = bound.window;
  }
  if (moves != nullptr) {
    EndDeferWindowPos(moves);
  }
  return frames;
}

int HiddenPart(const Binding& binding, const Theme& theme, const app::Form1& form, SIZE size,
               int scrolled, const BoundControl& control) {
  const Part tree = TreeFor(form, theme, static_cast<int>(size.cx));
  const auto placed = PlaceAll(tree, binding, theme, form, size, scrolled);
  const auto found = std::ranges::find_if(placed, [&control](const app::Placed& each) {
    return each.part->control == control.info->member;
  });
  if (found == placed.end()) {
    return 0;
  }
  const int above = found->rect.top - found->view.top;
  const int below = above + found->rect.height - found->view.height;
  return above < 0 ? above : std::min(above, std::max(0, below));
}

}  // namespace tonadex::shell
