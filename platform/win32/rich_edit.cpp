#include "platform/win32/rich_edit.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>

#include "platform/win32/send.h"

namespace tonadex::platform {
namespace {

constexpr LPARAM kMostText = 0x7FFFFFFE;  // the control's default limit is 32 KiB

DWORD CALLBACK Append(DWORD_PTR target, BYTE* bytes, LONG size, LONG* taken) {
  reinterpret_cast<std::string*>(target)->append(reinterpret_cast<const char*>(bytes),
                                                 static_cast<std::size_t>(size));
  *taken = size;
  return 0;
}

DWORD CALLBACK Hand(DWORD_PTR source, BYTE* bytes, LONG size, LONG* given) {
  auto& rest = *reinterpret_cast<std::string_view*>(source);
  const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(size));
  std::memcpy(bytes, rest.data(), count);
  rest.remove_prefix(count);
  *given = static_cast<LONG>(count);
  return 0;
}

}  // namespace

HWND MakeRichEdit(HWND parent, DWORD style) {
  static const HMODULE library = LoadLibraryW(L"riched20.dll");
  if (library == nullptr) {
    return nullptr;
  }
  const HWND control = CreateWindowExW(
      0, RICHEDIT_CLASSW, L"", ES_MULTILINE | style | (parent == nullptr ? WS_POPUP : WS_CHILD), 0,
      0, 100, 100, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
  Send(control, EM_EXLIMITTEXT, 0, kMostText);
  return control;
}

std::string RichEditSource(HWND richEdit) {
  std::string source;
  EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, Append};
  Send(richEdit, EM_STREAMOUT, SF_RTF, &stream);
  return source;
}

bool SetRichEditSource(HWND richEdit, std::string_view source) {
  EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, Hand};
  Send(richEdit, EM_STREAMIN, SF_RTF, &stream);
  return stream.dwError == 0;
}

}  // namespace tonadex::platform
