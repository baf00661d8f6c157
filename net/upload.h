#pragma once

#include <string>
#include <string_view>

#include "net/client.h"

// Uploading a melody to the server.
namespace tonadex::net {

// Characters that must not occur in the text or the key, because they would break the URL or the
// file name.
inline constexpr std::string_view kBreaksAddress = "/\\?'&";

// The melody's file name on the server: name, ".", and the length of the text without escapes.
std::string UploadKey(std::string_view name, std::string_view text);

// Whether name and text can be sent in a URL and the text has an RTTTL header. The notes are not
// checked.
bool IsUploadable(std::string_view text, std::string_view key);

// Whether there is a full stop in the name or the first key of an RTTTL text.
bool HasStopInName(std::string_view text);

enum class UploadResult { kSent, kAlreadyThere, kNotValid, kStopInName };

// Fetches the server's listing into `listing`, sends the melody unless it is refused, and reports
// the result in a message box. Escapes every "#" of a valid `text`. A listing that contains the key
// anywhere, even inside a longer name, counts as containing the melody: deliberate. The server's
// reply to the upload is ignored. Errors: core::RunTimeError (kTransfer) when a request gets no
// reply.
UploadResult UploadMelody(const Fetch& fetch, std::string_view name, std::string& text,
                          std::string& listing);

}  // namespace tonadex::net
