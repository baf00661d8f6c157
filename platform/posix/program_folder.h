#pragma once

#include <filesystem>

// The folder with the user's own copies of the program's files and the repertoire: ver.dat,
// print.rtf, TONADEX.HLP, noactualiza.tdx and melodias/.
namespace tonadex::platform {

// $TONADEX_HOME, else "tonadex" in the user's data folder, else in the temporary folder. A full
// path; nothing is made.
std::filesystem::path ProgramFolderPath();

// The data that came with the program: ../share/tonadex as seen from the folder of the executable,
// else ../share/tonadex-server, else that of the build tree; empty when there is none.
std::filesystem::path InstalledData();

// First start (the folder has no marker of an earlier one): copies every file of `installed` that
// `folder` lacks, and leaves the marker when all went well. Later nothing is copied again, so what
// the user deleted stays deleted; only when `installed` has a higher version in its ver.dat,
// ver.dat and TONADEX.HLP are renewed. Each file is copied whole or not at all. False when
// something could not be copied: the next start tries again.
bool SeedProgramFolder(const std::filesystem::path& folder, const std::filesystem::path& installed);

// The program's folder, made and seeded as far as the system lets it, and rid of the temporary
// files of killed programs, as are the folders of settings and temporary files. Never throws
// (memory aside).
std::filesystem::path PrepareProgramFolder();

}  // namespace tonadex::platform
