#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/control_table.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The system's list box, which stores no rows: it is painted from the model's, even millions.
class RowList {
 public:
  RowList(HWND parent, int id, const Theme& theme);

  // Shows the entries that have an icon as buttons on each row. Pressing one selects its row.
  void SetButtons(std::span<const app::MenuItem> menu,
                  std::function<void(const app::MenuItem&)> press);

  HWND window() const { return window_; }
  // Shows the lines and the selection of the control.
  void Draw(const app::Control& control);
  void ThemeChanged();
  // The selected row, -1 for none.
  int Selected() const;
  // Selects the row at a place of the window, as a click does.
  void SelectAt(POINT place);
  // Where a menu on the selected row begins, on the screen.
  POINT MenuPlace() const;
  // The tooltip of the row under the mouse; it closes when the mouse leaves the row.
  std::wstring HelpUnderMouse() const;
  void SetTips(HWND tips) { tips_ = tips; }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);
  void FindTyped(wchar_t character);
  void Choose(std::size_t row) const;
  std::size_t RowAt(POINT place) const;  // the number of rows if there is none
  RECT ButtonPlace(const RECT& row, std::size_t button) const;
  const app::MenuItem* ButtonAt(POINT place) const;
  void PaintRow(const DRAWITEMSTRUCT& item) const;
  void PaintInvitation() const;

  HWND window_;
  const Theme& theme_;
  app::Control list_;  // as drawn
  std::vector<const app::MenuItem*> buttons_;
  std::function<void(const app::MenuItem&)> press_;
  std::wstring typed_;  // of a row's beginning
  DWORD typedAt_ = 0;
  HWND tips_ = nullptr;
  std::size_t under_ = 0;  // row under the mouse
};

}  // namespace tonadex::shell
