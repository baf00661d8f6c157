#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "net/client.h"

namespace tonadex::net {

// Fetches the melody of a listing's row and stores it in the folder under the server's own name,
// less one line feed at its end and with CR LF behind it. `text` holds the reply afterwards. Each
// step that fails is skipped: a failed request stores what `text` held before; a name that is
// refused, or that the repertoire could not list, stores nothing. Gives whether reply and file both
// came about. Shows nothing.
bool DownloadMelody(const Fetch& fetch, const std::filesystem::path& folder, std::string_view row,
                    std::int32_t number, std::string& text);

}  // namespace tonadex::net
