#pragma once

#include <filesystem>

// All the program's files are in the folder of the executable: ver.dat, print.rtf,
// TONADEX.HLP, noactualiza.tdx and melodias\.
namespace tonadex::platform {

// The folder of the executable.
std::filesystem::path ProgramFolderPath();

// The same, after removing the temporary files of killed programs from it. The program's
// files are there from the start, so there is nothing to copy.
std::filesystem::path PrepareProgramFolder();

// The installed data files: the same folder.
std::filesystem::path InstalledData();

}  // namespace tonadex::platform
