#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "app/form1.h"
#include "platform/win32/web_control.h"
#include "shell/win32/theme.h"
#include "shell/win32/widgets/fault_waves.h"
#include "shell/win32/widgets/key_row.h"
#include "shell/win32/widgets/melody_view.h"
#include "shell/win32/widgets/phone_display.h"
#include "shell/win32/widgets/row_list.h"
#include "shell/win32/widgets/shape_view.h"

namespace tonadex::shell {

// Control ids: this one for the first row of app::Controls(), then consecutive.
inline constexpr int kFirstControlId = 1000;

struct BoundControl {
  const app::ControlInfo* info;
  HWND window = nullptr;  // null for a timer and for storage
  std::unique_ptr<RowList> list;
  std::unique_ptr<PhoneDisplay> display;
  std::unique_ptr<MelodyView> view;
  std::unique_ptr<KeyRow> keys;
  std::unique_ptr<ShapeView> shapes;
  std::unique_ptr<platform::WebControl> browser;
  std::unique_ptr<FaultWaves> waves;  // of a text area
  bool ticking = false;

  int Id() const { return kFirstControlId + static_cast<int>(info - app::Controls().data()); }
};

// Binds each control of the model to one window: draws it and reads it back by its look, without
// knowing what it means.
class Binding {
 public:
  using Handler = std::function<void()>;
  // Runs a handler of the model between copying in the user's edits and drawing.
  using Dispatch = std::function<void(const Handler&)>;

  Binding(app::Form1& form, HWND parent, const Theme& theme, Dispatch dispatch);

  std::span<const BoundControl> Controls() const { return bound_; }
  const BoundControl& Of(app::Control app::Form1::*member) const;
  HWND Window(app::Control app::Form1::*member) const { return Of(member).window; }
  // The first control of this look, which must exist.
  const BoundControl& The(app::Look look) const;
  // The control of a window, nullptr for a window of someone else.
  const BoundControl* Find(HWND window) const;

  // Copies what the user typed and chose into the model.
  void CopyIn();
  // Updates the windows that differ from the model.
  void Draw();
  void ThemeChanged();

  // Answer the parent's WM_COMMAND and WM_TIMER.
  void Command(int id, int notification);
  void Tick(UINT_PTR timer);
  // Calls the model's handler of this event; a click without a handler still redraws.
  void Raise(const BoundControl& bound, app::Event event);

 private:
  BoundControl Make(const app::ControlInfo& info);

  app::Form1& form_;
  HWND parent_;
  const Theme& theme_;
  Dispatch dispatch_;
  std::vector<BoundControl> bound_;
  bool drawing_ = false;  // ignore what windows report meanwhile: the user did nothing
};

}  // namespace tonadex::shell
