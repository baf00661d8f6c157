#pragma once

#include <filesystem>
#include <string>

// The folders of the user that the program may use, as the desktop's base directory rules place
// them. Relative values of the XDG variables count as missing.
namespace tonadex::platform {

// $HOME, else the home of the user's account; empty when there is none.
std::filesystem::path HomeFolder();

// $XDG_CONFIG_HOME, else ~/.config; empty without a home.
std::filesystem::path ConfigFolder();

// $XDG_DATA_HOME, else ~/.local/share; empty without a home.
std::filesystem::path DataFolder();

// A temporary folder that belongs to the user alone, made when it is missing: Windows-1252 with a
// trailing "/". The path goes unquoted into sequencer commands, so it holds no blank, and no
// character that Windows-1252 lacks. The first that can be used of $XDG_RUNTIME_DIR, $TMPDIR, /tmp
// and the user's cache folder. When none can, the one in /tmp: writing there then fails.
std::string PrivateTempFolder();

}  // namespace tonadex::platform
