#include "platform/win32/file_dialogs.h"

#include <windows.h>

#include <commdlg.h>

#include <algorithm>

#include "platform/win32/wide_text.h"

#undef GetSaveFileName
#undef GetOpenFileName

namespace tonadex::platform {
namespace {

constexpr std::size_t kLongestPath = 32768;  // limit of the system's W functions

using Dialog = BOOL(WINAPI*)(LPOPENFILENAMEA);

bool Run(Dialog dialog, app::FileDialogRecord& record) {
  std::string file = record.lpstrFile;
  std::string title = record.lpstrFileTitle;
  std::string folder = record.lpstrInitialDir;
  const std::string extension = record.lpstrDefExt;
  file.resize(std::max(file.size(), static_cast<std::size_t>(std::max(record.nMaxFile, 0))) + 1);
  title.resize(std::max(title.size(), static_cast<std::size_t>(std::max(record.nMaxFileTitle, 0))) +
               1);

  OPENFILENAMEA system{};
  // The old version of the structure: 76 bytes in a 32-bit program, more in a 64-bit one.
  system.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
  system.hwndOwner = reinterpret_cast<HWND>(record.hwndOwner);
  system.lpstrFilter = record.lpstrFilter.c_str();
  system.nFilterIndex = static_cast<DWORD>(record.nFilterIndex);
  system.lpstrFile = file.data();
  system.nMaxFile = static_cast<DWORD>(record.nMaxFile);
  system.lpstrFileTitle = title.data();
  system.nMaxFileTitle = static_cast<DWORD>(record.nMaxFileTitle);
  system.lpstrInitialDir = folder.c_str();
  system.lpstrTitle = record.lpstrTitle.c_str();
  system.Flags = record.Flags;
  system.nFileOffset = record.nFileOffset;
  system.nFileExtension = record.nFileExtension;
  system.lpstrDefExt = extension.c_str();
  system.lpTemplateName = record.lpTemplateName.c_str();
  if (dialog(&system) == 0) {
    return false;
  }
  record.Flags = system.Flags;
  record.nFilterIndex = static_cast<std::int32_t>(system.nFilterIndex);
  record.nFileOffset = system.nFileOffset;
  record.nFileExtension = system.nFileExtension;
  record.lpstrFile = file;
  record.lpstrFileTitle = title;
  return true;
}

// A dialog of this program over its active window. It writes paths to `file`; both strings must
// outlive it.
OPENFILENAMEW NewDialog(const std::wstring& title, std::wstring& file, DWORD flags) {
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = GetActiveWindow();
  dialog.lpstrFile = file.data();
  dialog.nMaxFile = static_cast<DWORD>(file.size());
  dialog.lpstrTitle = title.c_str();
  dialog.Flags = flags | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
  return dialog;
}

}  // namespace

bool WindowsFileDialogs::GetSaveFileName(app::FileDialogRecord& record) {
  return Run(&GetSaveFileNameA, record);
}

bool WindowsFileDialogs::GetOpenFileName(app::FileDialogRecord& record) {
  return Run(&GetOpenFileNameA, record);
}

std::optional<app::SaveChoice> WindowsFileDialogs::AskSaveAs(std::string_view title,
                                                             std::string_view name,
                                                             std::span<const std::string> kinds) {
  std::wstring file = ToWide(name);
  file.resize(kLongestPath);
  std::wstring filters;
  for (const std::string& kind : kinds) {
    // The pattern is in the brackets: "Texto (*.txt)".
    const std::wstring described = ToWide(kind);
    const std::size_t bracket = std::min(described.rfind(L'('), described.size() - 1);
    filters +=
        described + L'\0' + described.substr(bracket + 1, described.size() - bracket - 2) + L'\0';
  }
  const std::wstring words = ToWide(title);
  OPENFILENAMEW dialog = NewDialog(words, file, OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
  dialog.lpstrFilter = filters.c_str();
  dialog.nFilterIndex = 1;
  if (GetSaveFileNameW(&dialog) == 0) {
    return std::nullopt;
  }
  return app::SaveChoice{file.c_str(), std::max<std::size_t>(1, dialog.nFilterIndex) - 1};
}

// The dialog returns one path, or the folder followed by the names of several files.
std::vector<std::filesystem::path> WindowsFileDialogs::AskOpen(
    std::string_view title, const std::filesystem::path& folder) {
  std::wstring chosen(kLongestPath, L'\0');
  const std::wstring words = ToWide(title);
  OPENFILENAMEW dialog =
      NewDialog(words, chosen, OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_FILEMUSTEXIST);
  dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  std::vector<std::filesystem::path> paths;
  if (GetOpenFileNameW(&dialog) == 0) {
    return paths;
  }
  const std::filesystem::path first = chosen.c_str();
  for (std::size_t at = first.native().size() + 1; chosen[at] != 0;) {
    const std::wstring name = chosen.c_str() + at;
    paths.push_back(first / name);
    at += name.size() + 1;
  }
  return paths.empty() ? std::vector{first} : paths;
}

}  // namespace tonadex::platform
