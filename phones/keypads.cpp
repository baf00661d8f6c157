#include "phones/keypads.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/formats.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr int kColumns = 3;

// Parses the keys row by row, separated by "|": the typed characters, first the label, then ":" and
// the word.
template <std::size_t kCount>
constexpr auto Keys(std::string_view cells) {
  std::array<KeypadKey, kCount> keys{};
  std::size_t at = 0;
  // A loop, because std::string_view::find is not a constant expression in g++ 12 with sanitizers.
  const auto upTo = [&](char mark) {
    const std::size_t from = at;
    while (at < cells.size() && cells[at] != mark) {
      ++at;
    }
    return cells.substr(from, at++ - from);
  };
  for (int place = 0; KeypadKey & key : keys) {
    key.signs = upTo(':');
    key.label = key.signs[0];
    key.word = upTo('|');
    key.row = place / kColumns;
    key.column = place++ % kColumns;
  }
  return keys;
}

constexpr auto kNokia = Keys<12>(
    u8"1:do|2:re|3:mi|"
    u8"4:fa|5:sol|6:la|"
    u8"7:si|8:más corta|9:más larga|"
    u8"*:octava|0:silencio|#:sostenido"_w);
constexpr auto kMotorola = Keys<12>(
    u8"1:octava|2:la, si, do|3:re, mi, fa|"
    u8"4:sol, silencio|5:|6:|"
    u8"7:sostenido|8:|9:|"
    u8"*:|0:duración|#:"_w);
// The usual letters on the keys. A digit is the duration of the letter before it, or the octave
// after "*".
constexpr auto kIMelody = Keys<12>(
    u8"1.:blanca, puntillo|2abc:negra, la, si, do|3def:corchea, re, mi, fa|"
    u8"4g:semicorchea, sol|5:fusa|6:|"
    u8"7r:silencio|8:|9:|"
    u8"*:octava|0:redonda|#:sostenido"_w);
constexpr auto kSamsung1 = Keys<12>(
    u8"1:do|2:re|3:mi|"
    u8"4:fa|5:sol|6:la|"
    u8"7:si|8:octava|9:|"
    u8"*:duración|0:silencio|#:sostenido"_w);
constexpr auto kSamsung2 = Keys<15>(
    u8"<:duración|^:sostenido|>:silencio|"
    u8"1:do|2:re|3:mi|"
    u8"4:fa|5:sol|6:la|"
    u8"7:si|8:octava|9:|"
    u8"*:|0:|#:"_w);

constexpr Keypad Pad(std::string_view code, std::span<const KeypadKey> keys) {
  return {code, static_cast<int>(keys.size()) / kColumns, kColumns, keys};
}

constexpr std::array kKeypads = {Pad(kKeysCode, kNokia), Pad("MOTK", kMotorola),
                                 Pad("MOTI", kIMelody), Pad("SAM1", kSamsung1),
                                 Pad("SAM2", kSamsung2)};

}  // namespace

const Keypad* FindKeypad(std::string_view model) {
  const CatalogueRow* phone = FindModel(model);
  const auto found =
      std::ranges::find(kKeypads, phone == nullptr ? "" : phone->code, &Keypad::code);
  return found == kKeypads.end() ? nullptr : &*found;
}

std::string_view TypedModel(std::string_view model) {
  const CatalogueRow* phone = FindModel(model);
  return phone != nullptr && phone->code == kComposerCode ? ModelOfCode(kKeysCode) : model;
}

}  // namespace tonadex::phones
