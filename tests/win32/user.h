#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "app/form1.h"

// Finds windows, clicks and types like a user.
namespace tonadex::test {

// Generous for a busy machine; working code needs far less.
inline constexpr DWORD kPatienceMs = 60'000;

// Polls; true when the condition becomes true in time.
bool WaitUntil(const std::function<bool()>& condition, DWORD milliseconds = kPatienceMs);

// The visible top-level window of this class and, unless 0, of this process; null for none in time.
HWND WaitForWindow(const wchar_t* kind, DWORD process = 0, DWORD milliseconds = kPatienceMs);

// The window of a control of the main window.
HWND ControlWindow(HWND mainWindow, app::Control app::Form1::*member);

std::string TextIn(HWND window);  // Windows-1252

// The mouse, in the middle of a window or at a place within it.
void Click(HWND window);
void ClickAt(HWND window, int x, int y);
// The system's mouse, for what none of our windows takes as a message. Press and release carry the
// place with them: under Wine the pointer itself springs back to where the X server has it.
void ClickScreen(int x, int y);
// A row of a list box.
void ClickRow(HWND list, int row);
void Type(const std::wstring& text);
// Presses a key while others are held. AltGr is two of them: Windows adds the left Ctrl.
inline const std::vector<WORD> kAlt{VK_MENU}, kCtrl{VK_CONTROL}, kAltGr{VK_LCONTROL, VK_RMENU};
void Press(WORD key, const std::vector<WORD>& held = {});

// Waits for a message box of the process, gives its text and closes it.
std::string AnswerBox(DWORD process, std::string* title = nullptr);

}  // namespace tonadex::test
