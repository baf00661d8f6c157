#include "platform/common/program_folder.h"

#include <windows.h>

#include <string>

#include "files/write.h"

namespace tonadex::platform {

std::filesystem::path ProgramFolderPath() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
    if (size < file.size()) {
      file.resize(size);
      return std::filesystem::path(file).parent_path();
    }
    file.resize(2 * file.size());
  }
}

std::filesystem::path PrepareProgramFolder() {
  std::filesystem::path folder = ProgramFolderPath();
  for (const auto& written : {folder, folder / "melodias", folder / "servidor"}) {
    files::RemoveTemporaryFiles(written);
  }
  return folder;
}

std::filesystem::path InstalledData() {
  return ProgramFolderPath();
}

}  // namespace tonadex::platform
