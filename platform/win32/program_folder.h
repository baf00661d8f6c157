#pragma once

#include <filesystem>

// Everything the program reads and keeps lies beside the executable: ver.dat, print.rtf,
// TONADEX.HLP, noactualiza.tdx and melodias\.
namespace tonadex::platform {

// The folder of the executable, whatever the current folder is.
std::filesystem::path ProgramFolderPath();

// The same, rid of the temporary files of killed programs. Nothing has to be made or copied there
// before the first start.
std::filesystem::path PrepareProgramFolder();

// The data that came with the program: the same folder.
std::filesystem::path InstalledData();

}  // namespace tonadex::platform
