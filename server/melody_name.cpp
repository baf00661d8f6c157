#include "server/melody_name.h"

#include <algorithm>
#include <charconv>

#include "core/melody_file.h"
#include "core/number.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "net/file_name.h"
#include "net/listing.h"
#include "net/upload.h"
#include "server/limits.h"

namespace tonadex::server {
namespace {

using namespace core::literals;

constexpr std::string_view kBadName =
    u8"El nombre del fichero no es válido: nombre.número, sin puntos en el nombre."_w;
constexpr std::string_view kBadForm = u8"El texto no es una melodía RTTTL válida."_w;
constexpr std::string_view kBadKey =
    u8"El nombre del fichero no corresponde al nombre y la longitud de la melodía."_w;

// Values that the phones' formats accept.
constexpr std::string_view kPitches = "abcdefgp";
constexpr double kMaxDuration = 64;
constexpr double kMaxOctave = 10;
constexpr double kMaxTempo = 32'767;
constexpr std::size_t kMaxHeaderValueBytes = 8;

std::optional<std::uint32_t> ParseNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  const bool whole = error == std::errc() && stop == end && number <= kMaxNumber;
  if (!whole || (digits.size() > 1 && digits.front() == '0')) {
    return std::nullopt;
  }
  return number;
}

// Whether the text is a number from `least` to `most`, short enough for a header.
bool IsHeaderNumber(std::string_view text, double least, double most) {
  const std::optional<double> number = core::FindNumber(text);
  return !text.empty() && text.size() <= kMaxHeaderValueBytes && number && *number >= least &&
         *number <= most;
}

bool IsPlayable(const core::RTTTLMelody& melody) {
  return IsHeaderNumber(melody.DefaultDuration, 1, kMaxDuration) &&
         IsHeaderNumber(melody.DefaultOctave, 0, kMaxOctave) &&
         IsHeaderNumber(melody.Beats, 1, kMaxTempo) &&
         std::ranges::all_of(melody.Notes, [](const core::RTTTLNote& note) {
           return kPitches.find(note.Note.front()) != kPitches.npos;
         });
}

// Stricter than the clients, which only look for the header's separators: a melody must be playable
// and convertible.
bool IsReadable(std::string_view text) {
  core::RTTTLMelody melody;
  melody.Text = text;
  const bool plain = std::ranges::none_of(text, [](char c) { return core::Code(c) < 0x20; });
  return plain && core::ParseRTTTL(melody) == core::kParsed && IsPlayable(melody);
}

std::string Shown(std::string_view name) {
  std::string shown;
  for (const char c : name) {
    if (c != '.') {
      shown += c == '(' ? '[' : c == ')' ? ']' : core::Code(c) < 0x20 ? ' ' : c;
    }
  }
  return std::string(core::Trim(shown));
}

}  // namespace

std::optional<MelodyName> ParseMelodyName(std::string_view fileName) {
  const std::size_t dot = fileName.find('.');
  const std::string_view stem = fileName.substr(0, dot);
  if (dot == fileName.npos || core::Trim(stem).empty() || !net::IsSafeFileName(fileName) ||
      core::Contains(fileName, net::kRecordEnd) ||
      core::ToUtf8(fileName).size() > kMaxFileNameUtf8Bytes) {
    return std::nullopt;
  }
  const auto number = ParseNumber(fileName.substr(dot + 1));
  if (!number) {
    return std::nullopt;
  }
  return MelodyName{stem, *number};
}

std::string Description(std::string_view line, std::string_view stem) {
  const std::size_t colon = line.find(':');
  std::string name;
  if (colon != line.npos) {
    name = Shown(line.substr(0, std::min(colon, kMaxDescriptionBytes)));
  }
  return name.empty() ? Shown(stem) : name;
}

std::string Record(std::string_view description, std::string_view fileName) {
  std::string record(description);
  return record.append(" (").append(fileName).append(net::kRecordEnd);
}

std::string_view UploadFault(std::string_view fileName, std::string_view contents) {
  const auto name = ParseMelodyName(fileName);
  if (!name) {
    return kBadName;
  }
  const std::string melody = core::UndoSharpEscape(contents);
  // A pasted text may end in line ends, which are not part of the melody.
  const auto line = std::string_view(melody).substr(0, melody.find_last_not_of("\r\n") + 1);
  if (!net::IsUploadable(melody, fileName) || !IsReadable(line)) {
    return kBadForm;
  }
  const std::string_view melodyName = std::string_view(melody).substr(0, melody.find(':'));
  return net::UploadKey(melodyName, melody) == fileName ? std::string_view() : kBadKey;
}

}  // namespace tonadex::server
