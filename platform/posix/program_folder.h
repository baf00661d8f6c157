#pragma once

#include <filesystem>

// The folder with the user's copies of the program's data and the repertoire: ver.dat, print.rtf,
// TONADEX.HLP, noactualiza.tdx and melodias/.
namespace tonadex::platform {

// $TONADEX_HOME, else "tonadex" in the user's data folder, else in the temporary folder. The path
// is absolute; nothing is created.
std::filesystem::path ProgramFolderPath();

// The parent of the executable's folder; its "share" and "libexec" contain the installed files.
std::filesystem::path InstallPrefix();

// The folder of the installed data: share/tonadex in InstallPrefix, else share/tonadex-server, else
// that of the build tree; empty when there is none.
std::filesystem::path InstalledData();

// On the first start (no marker in `folder`) copies every file of `installed` that `folder` lacks,
// then writes the marker. Later starts copy nothing, so that files deleted by the user stay
// deleted, except that ver.dat and TONADEX.HLP are replaced when the ver.dat of `installed` has a
// higher version. Copies are atomic. False when a copy failed; the next start tries again.
bool SeedProgramFolder(const std::filesystem::path& folder, const std::filesystem::path& installed);

// Creates and seeds the program's folder as far as possible and returns it. Removes temporary files
// of killed programs from it and from the folders of settings and temporary files. Throws only
// bad_alloc.
std::filesystem::path PrepareProgramFolder();

}  // namespace tonadex::platform
