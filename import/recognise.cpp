#include "import/recognise.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/reading.h"
#include "formats/smart_messaging_bits.h"
#include "nokia3210/cnokia.h"

namespace tonadex::import {
namespace {

using namespace core::literals;
using formats::BehindKey;

constexpr std::size_t kHeadBytes = 4096;  // enough to recognise every format
constexpr std::string_view kBlanks = " \t\r\n";

unsigned At(std::string_view bytes, std::size_t i) {
  return i < bytes.size() ? core::Code(bytes[i]) : 0;
}

bool HasKey(std::string_view text, std::string_view key) {
  return BehindKey(text, key) != std::string_view::npos;
}

bool IsMidi(std::string_view bytes) {
  return bytes.starts_with("MThd") ||
         (bytes.starts_with("RIFF") && bytes.substr(0, 12).ends_with("RMID"));
}

// The first byte is a small number of command parts, the second a known command.
bool IsOtt(std::string_view bytes) {
  const unsigned parts = At(bytes, 0), command = At(bytes, 1) >> 1;
  return parts > 0 && parts < 5 &&
         (command == formats::ott::kProgramming || command == formats::ott::kUnicode);
}

// The first four bytes are the inverted length; its high half is 0xFFFF for less than 64 KiB.
bool IsKws(std::string_view bytes) {
  return bytes.size() >= 6 && At(bytes, 2) == 0xFF && At(bytes, 3) == 0xFF &&
         ~(At(bytes, 0) | At(bytes, 1) << 8 | 0xFFFF0000u) % 4 == 2;
}

bool IsSckl(std::string_view text) {
  return core::Contains(text, "//SCKL");
}

bool IsIMelody(std::string_view text) {
  return HasKey(text, "BEGIN:IMELODY");
}

bool IsEMelody(std::string_view text) {
  return HasKey(text, "BEGIN:EMELODY");
}

// The value must be a number: "Tempo=120:" starts composer notation.
bool IsTriumMdy(std::string_view text) {
  const std::string tempo = formats::HeaderValue(text, "TEMPO=");
  return !tempo.empty() && std::ranges::all_of(tempo, core::IsDigit);
}

bool IsMotorolaSms(std::string_view text) {
  formats::Scanner in(text);
  return in.TakeWord("l") && in.Number() && in.Take('&') && core::IsDigit(in.Next());
}

bool IsText(std::string_view text) {
  return !core::Contains(text, std::string_view("\0", 1));
}

// A picture or program may have colons; only text in UTF-16 has zero bytes.
bool IsRtttl(std::string_view text) {
  const std::size_t colon = text.find(':');
  return (IsText(text) || text.starts_with("\xFF\xFE")) && colon != std::string_view::npos &&
         text.find(':', colon + 1) != std::string_view::npos;
}

bool ConsistsOf(std::string_view text, std::string_view characters) {
  return std::ranges::all_of(text, [characters](char c) {
    return core::Contains(characters, std::string_view(&c, 1)) ||
           core::Contains(kBlanks, std::string_view(&c, 1));
  });
}

bool IsKeys(std::string_view text) {
  return ConsistsOf(text, "0123456789*#()<>^");
}

bool IsIMelodyKeys(std::string_view text) {
  return core::Contains(text, "*") && ConsistsOf(text, "*012345678#&abcdefgr.:;");
}

// Recognised if it has more notes than faults.
bool IsComposer(std::string_view text) {
  nokia3210::CNokia converter;
  converter.SetOriginalText(text);
  converter.Convert();
  const auto faults = std::ranges::count(converter.ConversionErrors(), '[');
  return converter.NoteCount() > static_cast<std::size_t>(faults);
}

struct KindRow {
  FileKind kind;
  std::string_view name;
  bool (*is)(std::string_view);
  bool ofBytes = false;  // tests bytes, else text
};

// Tried in this order.
constexpr auto kKinds = std::to_array<KindRow>({
    {FileKind::kMidi, "MIDI", IsMidi, true},
    {FileKind::kOtt, u8"melodía de Nokia Smart Messaging"_w, IsOtt, true},
    {FileKind::kKws, "Kyocera KWS", IsKws, true},
    {FileKind::kSckl, "mensaje de Nokia Smart Messaging", IsSckl},
    {FileKind::kIMelody, "iMelody", IsIMelody},
    {FileKind::kEMelody, "EMelody", IsEMelody},
    {FileKind::kTriumMdy, "Trium MDY", IsTriumMdy},
    {FileKind::kMotorolaSms, "mensaje de Motorola", IsMotorolaSms},
    {FileKind::kKeys, "pulsaciones de teclas", IsKeys},
    {FileKind::kIMelodyKeys, "notas iMelody", IsIMelodyKeys},
    {FileKind::kRtttl, "RTTTL", IsRtttl},
    {FileKind::kComposer, "texto del compositor de Nokia", IsComposer},
    {FileKind::kRtttl, "RTTTL", IsText},
});

}  // namespace

FileKind RecogniseFile(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, kHeadBytes);
  const std::string text = core::FromOutside(head);
  if (text.find_first_not_of(kBlanks) == std::string::npos) {
    return FileKind::kUnknown;
  }
  const auto row = std::ranges::find_if(
      kKinds, [&](const KindRow& each) { return each.is(each.ofBytes ? head : text); });
  return row == kKinds.end() ? FileKind::kUnknown : row->kind;
}

bool IsBinary(FileKind kind) {
  const auto row = std::ranges::find(kKinds, kind, &KindRow::kind);
  return row != kKinds.end() && row->ofBytes;
}

std::string_view KindName(FileKind kind) {
  const auto row = std::ranges::find(kKinds, kind, &KindRow::kind);
  return row == kKinds.end() ? std::string_view() : row->name;
}

}  // namespace tonadex::import
