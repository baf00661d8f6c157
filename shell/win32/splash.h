#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <vector>

#include "app/inicio.h"
#include "app/melody_layout.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The splash window: inicio's model.
class Splash {
 public:
  // `finished` is called when the main window should open.
  Splash(app::Program& program, std::function<void()> finished);
  ~Splash();
  Splash(const Splash&) = delete;
  Splash& operator=(const Splash&) = delete;

  void Start();
  void Close();
  // Answers the window's messages.
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);

 private:
  void Tick();
  void Draw();
  void Paint();

  app::Program& program_;
  app::inicio model_;
  std::function<void()> finished_;
  Theme theme_;
  std::vector<app::Box> pattern_;
  HWND window_ = nullptr;
};

}  // namespace tonadex::shell
