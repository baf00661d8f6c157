#pragma once

#include <windows.h>

#include <string>

#include "app/controls.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// A list of rows that we paint, in the system's list box.
class RowList {
 public:
  RowList(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // Rows and selection as the model has them. A chosen text that no row holds stands below them,
  // marked.
  void Draw(const app::Control& control);
  // What the empty list says.
  void SetInvitation(const std::wstring& invitation);
  void ThemeChanged();
  // The model's row, -1 for none.
  int Selected() const;

  static void DrawRow(const DRAWITEMSTRUCT& item, const Theme& theme);

 private:
  void PaintInvitation();

  HWND window_;
  const Theme& theme_;
  app::ListRows rows_;
  bool foreign_ = false;  // the last row is none of the model's
  std::wstring invitation_;
};

// Answers the parent's WM_DRAWITEM, for lists and buttons.
void DrawItem(const DRAWITEMSTRUCT& item, const Theme& theme);

}  // namespace tonadex::shell
