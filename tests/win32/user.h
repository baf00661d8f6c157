#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "app/form1.h"
#include "tests/support/eventually.h"

// Finds windows, clicks and types like a user.
namespace tonadex::test {

// The visible top-level window of this class and, unless 0, of this process; null after a time-out.
HWND WaitForWindow(const wchar_t* kind, DWORD process = 0);

// The window of a control in the main window.
HWND ControlWindow(HWND mainWindow, app::Control app::Form1::*member);

std::string TextIn(HWND window);  // Windows-1252

// Clicks the middle of a window, or a position in it.
void Click(HWND window);
void ClickAt(HWND window, int x, int y);
// Clicks a row of a list box.
void ClickRow(HWND list, int row);
void Type(const std::wstring& text);
// Presses a key while others are held. AltGr is two keys, because Windows adds the left Ctrl.
inline const std::vector<WORD> kAlt{VK_MENU}, kCtrl{VK_CONTROL}, kAltGr{VK_LCONTROL, VK_RMENU};
void Press(WORD key, const std::vector<WORD>& held = {});

// Waits for a message box of the process, returns its text and closes it.
std::string AnswerBox(DWORD process);

}  // namespace tonadex::test
