#pragma once

#include <filesystem>

// The folder with the user's own copies of the program's files and the repertoire: ver.dat,
// print.rtf, TONADEX.HLP, noactualiza.tdx and melodias/.
namespace tonadex::platform {

// $TONADEX_HOME, else "tonadex" in the user's data folder, else in the temporary folder. An
// absolute path; creates nothing.
std::filesystem::path ProgramFolderPath();

// The folder above the executable's, whose "share" and "libexec" hold what is installed with it.
std::filesystem::path InstallPrefix();

// The installed data files: share/tonadex in InstallPrefix, else share/tonadex-server, else those
// of the build tree; empty when there are none.
std::filesystem::path InstalledData();

// On the first start (the folder has no marker yet) copies every file of `installed` that `folder`
// lacks, then writes the marker. Later nothing is copied, so files that the user deleted stay
// deleted; but when the ver.dat of `installed` has a higher version, ver.dat and TONADEX.HLP are
// replaced. Copies are atomic. False when a copy failed: the next start tries again.
bool SeedProgramFolder(const std::filesystem::path& folder, const std::filesystem::path& installed);

// Creates and seeds the program's folder as far as possible and returns it. Removes temporary files
// of killed programs from it and from the folders of settings and temporary files. Throws nothing
// but bad_alloc.
std::filesystem::path PrepareProgramFolder();

}  // namespace tonadex::platform
