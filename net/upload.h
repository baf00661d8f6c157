#pragma once

#include <string>
#include <string_view>

#include "net/client.h"

// Giving a melody to the server.
namespace tonadex::net {

// The melody's file on the server: name, ".", and the text's length before anything is escaped.
std::string UploadKey(std::string_view name, std::string_view text);

// Whether name and text survive in an address and hold the parts of an RTTTL header. The notes are
// not looked at.
bool IsUploadable(std::string_view text, std::string_view key);

// Whether a full stop stands in the name or the first setting of an RTTTL text.
bool HasStopInName(std::string_view text);

enum class UploadResult { kSent, kAlreadyThere, kNotValid, kStopInName };

// Asks the server for its listing (left in `listing`), refuses or sends, and tells the user in a
// message box either way. `text` leaves with its "#" escaped once it was found valid. A listing
// that holds the key anywhere, also inside a longer name, counts as holding the melody: deliberate.
// The server's answer to the upload is not looked at. Errors: core::RunTimeError (kTransfer) when a
// request brings no reply.
UploadResult UploadMelody(const Fetch& fetch, std::string_view name, std::string& text,
                          std::string& listing);

}  // namespace tonadex::net
