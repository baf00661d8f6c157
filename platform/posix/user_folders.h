#pragma once

#include <filesystem>
#include <string>

// The user's folders according to the XDG base directory specification. Relative values of the XDG
// variables are ignored.
namespace tonadex::platform {

// $HOME, else the home folder of the user's account; empty when there is neither.
std::filesystem::path HomeFolder();

// $XDG_CONFIG_HOME, else ~/.config; empty without a home.
std::filesystem::path ConfigFolder();

// $XDG_DATA_HOME, else ~/.local/share; empty without a home.
std::filesystem::path DataFolder();

// A private temporary folder of the user, created if missing: Windows-1252 with a trailing "/". The
// path is used unquoted in sequencer commands, so it contains no blank and no character that
// Windows-1252 lacks. The first usable one in $XDG_RUNTIME_DIR, $TMPDIR, /tmp, /var/tmp and the
// user's cache folder; if none is usable, the one in /tmp, where writing then fails.
std::string PrivateTempFolder();

}  // namespace tonadex::platform
