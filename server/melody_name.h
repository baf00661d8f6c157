#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// File names "stem.number" and the records that listings show for them. Texts are Windows-1252.
namespace tonadex::server {

struct MelodyName {
  std::string_view stem;
  std::uint32_t number = 0;  // characters of the melody before its "#" were escaped
};

// The parts of a melody's file name. None for a name that no client could find again: no stem, a
// full stop or ")498" in it, a number of more than five digits or with zeros in front, characters
// that some system's file names cannot hold.
std::optional<MelodyName> ParseMelodyName(std::string_view fileName);

// What a listing says about a melody whose first line is `line`: its name, without full stops and
// parentheses (a client would read them as the record's own); the stem for a line without a name.
// Never empty: clients miss the number of a record that is too short.
std::string Description(std::string_view line, std::string_view stem);

// "description (stem.number)498"
std::string Record(std::string_view description, std::string_view fileName);

// Why an upload is refused, as a Spanish sentence; "" for a good one. The contents are as sent:
// sharps escaped.
std::string_view UploadFault(std::string_view fileName, std::string_view contents);

}  // namespace tonadex::server
