#include "shell/win32/window_text.h"

#include <initguid.h>
#include <objbase.h>
#include <oleacc.h>
#include <wrl/client.h>

#include "platform/win32/wide_text.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {

std::wstring WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::string TextOf(HWND window) {
  return platform::FromWide(WindowText(window));
}

void SetText(HWND window, std::string_view text) {
  SetWords(window, platform::ToWideLines(text));
}

void SetWords(HWND window, const std::wstring& words) {
  if (WindowText(window) != words) {
    SetWindowTextW(window, words.c_str());
    InvalidateRect(window, nullptr, TRUE);
  }
}

std::wstring PlainWords(const std::wstring& caption) {
  std::wstring plain;
  for (const wchar_t c : caption) {
    if (c != L'&') {
      plain += c;
    }
  }
  return plain;
}

void SetSpokenName(HWND window, std::string_view name) {
  Microsoft::WRL::ComPtr<IAccPropServices> services;
  if (name.empty() || CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER,
                                       IID_IAccPropServices, &services) != S_OK) {
    return;
  }
  services->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                           platform::ToWide(name).c_str());
}

void SetSpokenTab(HWND window, bool selected) {
  Microsoft::WRL::ComPtr<IAccPropServices> services;
  if (CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                       &services) != S_OK) {
    return;
  }
  const auto set = [&](const MSAAPROPID& property, LONG value) {
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = value;
    services->SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, property, number);
  };
  set(PROPID_ACC_ROLE, ROLE_SYSTEM_PAGETAB);
  set(PROPID_ACC_STATE,
      STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE | (selected ? STATE_SYSTEM_SELECTED : 0));
}

void RegisterKind(const wchar_t* name, WNDPROC procedure, UINT style, const wchar_t* cursor) {
  constexpr int kIconResource = 1;
  WNDCLASSW kind{};
  kind.style = style;
  kind.lpfnWndProc = procedure;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hCursor = LoadCursorW(nullptr, cursor);
  kind.hIcon = LoadIconW(kind.hInstance, MAKEINTRESOURCEW(kIconResource));
  kind.lpszClassName = name;
  RegisterClassW(&kind);
}

HWND MakeTopWindow(const wchar_t* name, std::string_view title, DWORD style, SIZE size) {
  return CreateWindowExW(WS_EX_CONTROLPARENT, name, platform::ToWide(title).c_str(),
                         style | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, size.cx, size.cy,
                         nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

HWND MakeChild(const wchar_t* kind, DWORD style, HWND parent, int id) {
  return CreateWindowExW(0, kind, L"", WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 1, 1, parent,
                         reinterpret_cast<HMENU>(LONG_PTR{id}), GetModuleHandleW(nullptr), nullptr);
}

HWND MakeBareWindow(HWND parent, DWORD style, int id) {
  constexpr wchar_t kClass[] = L"TonadexPart";
  RegisterKind(kClass, DefWindowProcW, CS_HREDRAW | CS_VREDRAW);
  return MakeChild(kClass, style, parent, id);
}

}  // namespace tonadex::shell
