#include "platform/win32/system_services.h"

#include <shellapi.h>

#include <cstring>

#include "platform/win32/wide_text.h"

namespace tonadex::platform {

SystemServices::SystemServices(WindowHooks& hooks, std::filesystem::path programFolder)
    : hooks_(hooks), folder_(std::move(programFolder)) {}

std::string SystemServices::TempPath() const {
  std::string path(MAX_PATH + 1, '\0');
  path.resize(GetTempPathA(static_cast<DWORD>(path.size()), path.data()));
  return path;
}

bool SystemServices::IsHidden(const std::filesystem::path& file) const {
  const DWORD attributes = GetFileAttributesW(file.c_str());
  return app::ShellServices::IsHidden(file) ||
         (attributes != INVALID_FILE_ATTRIBUTES &&
          (attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) != 0);
}

void SystemServices::SetTopMost(std::intptr_t window) {
  SetWindowPos(reinterpret_cast<HWND>(window), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void SystemServices::DoEvents() {
  if (hooks_.draw) {
    hooks_.draw();
  }
  PumpPaint();
}

void SystemServices::Beep() {
  MessageBeep(MB_OK);
}

void SystemServices::CopyText(std::string_view text) {
  PutOnClipboard(text);
}

void PutOnClipboard(std::string_view text) {
  const std::wstring wide = ToWideLines(text);
  const std::size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
  if (OpenClipboard(GetActiveWindow()) == 0) {
    return;
  }
  EmptyClipboard();
  if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes)) {
    std::memcpy(GlobalLock(memory), wide.c_str(), bytes);
    GlobalUnlock(memory);
    SetClipboardData(CF_UNICODETEXT, memory);
  }
  CloseClipboard();
}

void SystemServices::OpenFolder(const std::filesystem::path& folder) {
  ShellExecuteW(nullptr, L"open", folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void SystemServices::OpenHelp(const std::filesystem::path& file) {
  if (hooks_.openHelp) {
    hooks_.openHelp(file);
  }
}

void SystemServices::OpenFile(const std::filesystem::path& file) {
  ShellExecuteW(nullptr, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void SystemServices::ShowInFolder(const std::filesystem::path& file) {
  const std::wstring select = L"/select,\"" + file.wstring() + L"\"";
  ShellExecuteW(nullptr, L"open", L"explorer.exe", select.c_str(), nullptr, SW_SHOWNORMAL);
}

void SystemServices::End() {
  PostQuitMessage(0);
}

void PumpPaint(const std::function<void(const MSG&)>& dropped) {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT) != 0) {
    if (dropped) {
      dropped(message);
    }
  }
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE) != 0) {
    DispatchMessageW(&message);
  }
}

}  // namespace tonadex::platform
