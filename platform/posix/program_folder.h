#pragma once

#include <filesystem>

#include "platform/common/program_folder.h"

namespace tonadex::platform {

// The parent of the executable's folder; its "share" and "libexec" contain the installed files.
// InstalledData is share/tonadex in it, else share/tonadex-server, else that of the build tree.
std::filesystem::path InstallPrefix();

// On the first start (no marker in `folder`) copies every file of `installed` that `folder` lacks,
// then writes the marker. Later starts copy nothing, so that files deleted by the user stay
// deleted, except that ver.dat and TONADEX.HLP are replaced when the ver.dat of `installed` has a
// higher version. Copies are atomic. False when a copy failed; the next start tries again.
bool SeedProgramFolder(const std::filesystem::path& folder, const std::filesystem::path& installed);

}  // namespace tonadex::platform
