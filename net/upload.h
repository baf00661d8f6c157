#pragma once

#include <string>
#include <string_view>

#include "net/client.h"

// Uploading a melody to the server.
namespace tonadex::net {

// Characters that neither the text nor the key may hold.
inline constexpr std::string_view kBreaksAddress = "/\\?'&";

// The melody's file on the server: name, ".", and the length of the unescaped text.
std::string UploadKey(std::string_view name, std::string_view text);

// Whether name and text can be sent in an address and the text has an RTTTL header. The notes are
// not checked.
bool IsUploadable(std::string_view text, std::string_view key);

// Whether there is a full stop in the name or the first key of an RTTTL text.
bool HasStopInName(std::string_view text);

enum class UploadResult { kSent, kAlreadyThere, kNotValid, kStopInName };

// Fetches the server's listing into `listing`, sends the melody or refuses to, and reports the
// result in a message box. In a valid `text` every "#" is escaped. A listing that contains the key
// anywhere, even inside a longer name, counts as containing the melody: deliberate. The server's
// answer to the upload is ignored. Errors: core::RunTimeError (kTransfer) when a request gets no
// reply.
UploadResult UploadMelody(const Fetch& fetch, std::string_view name, std::string& text,
                          std::string& listing);

}  // namespace tonadex::net
