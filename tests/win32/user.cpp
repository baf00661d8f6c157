#include "tests/win32/user.h"

#include <algorithm>

#include "platform/win32/wide_text.h"
#include "shell/win32/binding.h"

namespace tonadex::test {
namespace {

constexpr wchar_t kDialogClass[] = L"#32770";
constexpr int kBoxText = 0xFFFF;  // the system's id of a message box's text

struct Search {
  const wchar_t* kind;
  DWORD process;
  HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  wchar_t kind[64] = {};
  GetClassNameW(window, kind, 64);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (IsWindowVisible(window) != 0 && std::wstring_view(kind) == search.kind &&
      (search.process == 0 || search.process == process)) {
    search.found = window;
    return FALSE;
  }
  return TRUE;
}

void SendKey(WORD key, wchar_t character, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = character;
  input.ki.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

// Sends a key by its scan code, as the keyboard does. Wine uses only the scan code.
void SendPlace(WORD key, DWORD flags) {
  const auto place = static_cast<wchar_t>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
  SendKey(key, place, flags | KEYEVENTF_SCANCODE | (key == VK_RMENU ? KEYEVENTF_EXTENDEDKEY : 0U));
}

}  // namespace

HWND WaitForWindow(const wchar_t* kind, DWORD process) {
  Search search{kind, process};
  Eventually([&search] {
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    return search.found != nullptr;
  });
  return search.found;
}

HWND ControlWindow(HWND mainWindow, app::Control app::Form1::*member) {
  const auto controls = app::Controls();
  const auto row = std::ranges::find(controls, member, &app::ControlInfo::member);
  return GetDlgItem(mainWindow, shell::kFirstControlId + static_cast<int>(row - controls.begin()));
}

std::string TextIn(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1,
                    L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return platform::FromWide(text);
}

// Posts messages to the window at this position, because Wine's emulated mouse sometimes loses a
// click.
void ClickAt(HWND window, int x, int y) {
  HWND target = window;
  Eventually([&] {
    POINT place{x, y};
    ClientToScreen(window, &place);
    target = WindowFromPoint(place);
    return target == window || IsChild(window, target) != 0;
  });
  POINT place{x, y};
  MapWindowPoints(window, target, &place, 1);
  const LPARAM where = MAKELPARAM(place.x, place.y);
  PostMessageW(target, WM_MOUSEMOVE, 0, where);
  PostMessageW(target, WM_LBUTTONDOWN, MK_LBUTTON, where);
  PostMessageW(target, WM_LBUTTONUP, 0, where);
}

void Click(HWND window) {
  RECT area{};
  Eventually([&] { return GetClientRect(window, &area) != 0 && area.right > 8; });
  GetClientRect(window, &area);
  ClickAt(window, area.right / 2, area.bottom / 2);
}

void ClickRow(HWND list, int row) {
  const auto height = static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
  const auto top = static_cast<int>(SendMessageW(list, LB_GETTOPINDEX, 0, 0));
  ClickAt(list, 30, (row - top) * height + height / 2);
}

void Type(const std::wstring& text) {
  for (const wchar_t character : text) {
    SendKey(0, character, KEYEVENTF_UNICODE);
    SendKey(0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

void Press(WORD key, const std::vector<WORD>& held) {
  for (const WORD modifier : held) {
    SendPlace(modifier, 0);
  }
  SendPlace(key, 0);
  SendPlace(key, KEYEVENTF_KEYUP);
  for (const WORD modifier : held) {
    SendPlace(modifier, KEYEVENTF_KEYUP);
  }
}

std::string AnswerBox(DWORD process) {
  const HWND box = WaitForWindow(kDialogClass, process);
  if (box == nullptr) {
    return "(no message box)";
  }
  const std::string text = TextIn(GetDlgItem(box, kBoxText));
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  Eventually([box] { return IsWindow(box) == 0; });
  return text;
}

}  // namespace tonadex::test
