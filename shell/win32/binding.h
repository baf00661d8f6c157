#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "app/form1.h"
#include "platform/win32/web_control.h"
#include "shell/win32/theme.h"
#include "shell/win32/widgets/key_row.h"
#include "shell/win32/widgets/melody_view.h"
#include "shell/win32/widgets/phone_display.h"
#include "shell/win32/widgets/row_list.h"

namespace tonadex::shell {

// The system's ids of the controls: the first one and one more for each row of app::Controls().
inline constexpr int kFirstControlId = 1000;

struct BoundControl {
  const app::ControlInfo* info;
  HWND window = nullptr;  // null for a timer and for storage
  std::unique_ptr<RowList> list;
  std::unique_ptr<PhoneDisplay> display;
  std::unique_ptr<MelodyView> view;
  std::unique_ptr<KeyRow> keys;
  std::unique_ptr<platform::WebControl> browser;
  bool ticking = false;

  int Id() const { return kFirstControlId + static_cast<int>(info - app::Controls().data()); }
};

// Ties every control of the model to one window. It knows how the kinds of controls are drawn and
// read back, and nothing of what they mean.
class Binding {
 public:
  using Handler = std::function<void()>;
  // Calls a handler of the model: copies the user's edits in, runs it, draws.
  using Dispatch = std::function<void(const Handler&)>;

  Binding(app::Form1& form, HWND parent, const Theme& theme, Dispatch dispatch);

  std::span<const BoundControl> Controls() const { return bound_; }
  const BoundControl& Of(app::Control app::Form1::*member) const;
  HWND Window(app::Control app::Form1::*member) const { return Of(member).window; }
  // The row of a window, nullptr when it is none of ours.
  const BoundControl* Find(HWND window) const;

  // What the user typed and chose, into the model.
  void CopyIn();
  // The model's state onto the windows; what is as it should be is left alone.
  void Draw();
  void ThemeChanged();

  // Answer the parent's WM_COMMAND and WM_TIMER.
  void Command(int id, int notification);
  void Tick(UINT_PTR timer);
  // Calls the model's handler of this event; without one a choice is drawn all the same.
  void Raise(const BoundControl& bound, app::Event event);

 private:
  BoundControl Make(const app::ControlInfo& info);

  app::Form1& form_;
  HWND parent_;
  const Theme& theme_;
  Dispatch dispatch_;
  std::vector<BoundControl> bound_;
  bool drawing_ = false;  // what windows report while they are drawn is no user's doing
};

}  // namespace tonadex::shell
