#pragma once

#include <filesystem>

// All files of the program are in the folder of the executable: ver.dat, print.rtf, TONADEX.HLP,
// noactualiza.tdx and melodias\.
namespace tonadex::platform {

// The folder of the executable.
std::filesystem::path ProgramFolderPath();

// Removes the temporary files of killed programs from that folder and returns it. The data files
// are installed there, so nothing is copied.
std::filesystem::path PrepareProgramFolder();

// The installed data files: the same folder.
std::filesystem::path InstalledData();

}  // namespace tonadex::platform
