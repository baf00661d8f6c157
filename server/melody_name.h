#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// File names "stem.number" and the records that listings show for them. Texts are Windows-1252.
namespace tonadex::server {

struct MelodyName {
  std::string_view stem;
  std::uint32_t number = 0;  // characters of the melody before "#" was escaped
};

// Splits a melody's file name. Empty for names that clients could not request: without a stem, with
// a full stop or ")498" in it, with a number of more than five digits or with leading zeros, or
// with characters that some file systems do not allow.
std::optional<MelodyName> ParseMelodyName(std::string_view fileName);

// The description in listings of a melody with this first line: its name without full stops and
// parentheses, which would break the record; the stem if it has no name. Never empty, because
// clients cannot find the number in too short a record.
std::string Description(std::string_view line, std::string_view stem);

// The record "description (stem.number)498".
std::string Record(std::string_view description, std::string_view fileName);

// Why an upload is refused, as a Spanish sentence; "" if it is valid. The contents are as received,
// with escaped sharps.
std::string_view UploadFault(std::string_view fileName, std::string_view contents);

}  // namespace tonadex::server
