#pragma once

#include <filesystem>

// The folder with the user's copies of the program's data and the repertoire: ver.dat, print.rtf,
// TONADEX.HLP, noactualiza.tdx and melodias. On Windows that of the executable. Each system
// implements these functions.
namespace tonadex::platform {

// An absolute path; nothing is created. Not on Windows: $TONADEX_HOME, else "tonadex" in the user's
// data folder, else in the temporary folder.
std::filesystem::path ProgramFolderPath();

// Creates the folder as far as possible, brings the installed data into it where they are installed
// elsewhere, and returns it. Removes the temporary files of killed programs. Throws only bad_alloc.
std::filesystem::path PrepareProgramFolder();

// The folder of the installed data; empty if there is none.
std::filesystem::path InstalledData();

}  // namespace tonadex::platform
