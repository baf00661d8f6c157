#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "net/client.h"

namespace tonadex::net {

// Fetches the melody of a listing's row into `text`, removes one LF at its end and stores it in the
// folder, with CR LF, under the server's file name. Failed steps are skipped: after a failed
// request the old `text` is stored. Nothing is stored under a name that is unsafe or that the
// repertoire could not list. A file of other content that it replaces is kept in `bin` first; where
// that fails, nothing is stored. True when the melody was both fetched and stored. Shows no
// message.
bool DownloadMelody(const Fetch& fetch, const std::filesystem::path& folder,
                    const std::filesystem::path& bin, std::string_view row, std::int32_t number,
                    std::string& text);

}  // namespace tonadex::net
