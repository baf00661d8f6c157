#include "app/phone_formats.h"

#include <algorithm>
#include <array>

#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

// In the order of the catalogue's codes. The octaves are those that a writer tells apart; it folds
// the others onto them.
constexpr std::array<PhoneFormat, 14> kFormats = {{
    {"NRTLNOMOD", u8"La melodía en RTTTL tal como está, para enviar por cable o SMS."_w, "rtttl",
     false, OctaveRange::kAny, 0, 0},
    {"NRTL", u8"La melodía en RTTTL pasada a tempo 125, para enviar por cable o SMS."_w, "rtttl",
     false, OctaveRange::kAny, 0, 0},
    {"NCOM", u8"Lo que aparece en el compositor, hasta 50 notas, tres octavas."_w, "txt", false,
     OctaveRange::kAround, 0, 3},
    {"NKEY", u8"Pulsaciones para el compositor, hasta 50 notas, tres octavas."_w, "txt", true,
     OctaveRange::kAround, 0, 3},
    {"EMSE", u8"Texto EMelody, para introducir por cable o a mano, dos octavas."_w, "emy", false,
     OctaveRange::kAround, 0, 2},
    {"EMSI", u8"Texto iMelody, para introducir por cable o a mano, cuatro octavas."_w, "imy", false,
     OctaveRange::kAround, 0, 4},
    {"KKWS", u8"Un fichero KWS para enviar por cable, desde la octava 4."_w, "kws", false,
     OctaveRange::kFrom, 4, 0},
    {"SAM1", u8"Pulsaciones de tipo 1 para el compositor, tres octavas."_w, "txt", true,
     OctaveRange::kAround, 0, 3},
    {"SAM2", u8"Pulsaciones de tipo 2 para el compositor, tres octavas."_w, "txt", true,
     OctaveRange::kAround, 0, 3},
    {"MOTS", u8"Un texto para enviar por SMS, tres octavas, sin puntillos."_w, "txt", false,
     OctaveRange::kBetween, 5, 3},
    {"MOTK", u8"Pulsaciones de tipo 1 para el compositor, tres octavas, sin puntillos."_w, "txt",
     true, OctaveRange::kAround, 0, 3},
    {"MOTI", u8"Notas iMelody para el compositor, tres octavas."_w, "txt", false,
     OctaveRange::kAround, 0, 3},
    {"mdy", u8"Un texto MDY para enviar por cable, dos octavas, tempo 100."_w, "mdy", false,
     OctaveRange::kBetween, 5, 2},
    {"midi", u8"Un fichero MIDI para enviar por cable."_w, "mid", false, OctaveRange::kAny, 0, 0},
}};

}  // namespace

std::optional<core::CatalogueRow> FindModel(std::string_view model) {
  for (const core::CatalogueRow& row : core::CatalogueRows()) {
    if (row.model == model) {
      return row;
    }
  }
  return std::nullopt;
}

const PhoneFormat* FindFormat(std::string_view model) {
  const auto row = FindModel(model);
  if (!row) {
    return nullptr;
  }
  const auto found = std::ranges::find(kFormats, row->code, &PhoneFormat::code);
  return found == kFormats.end() ? nullptr : &*found;
}

}  // namespace tonadex::app
