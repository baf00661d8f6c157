#include <algorithm>
#include <array>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/motorola_sms.h"
#include "formats/readers.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr int kMiddleOctave = 6;
constexpr int kLongestDigit = 6;  // a whole note

constexpr std::string_view kCut = u8"El mensaje no tiene final: puede faltar música."_w;
constexpr std::string_view kOtherCheck =
    u8"Las dos cifras de control del mensaje no son las de sus notas: puede haber una errata."_w;

// The letters on a key by its presses, from one.
struct LetterKey {
  char key;
  std::string_view letters;
};
constexpr std::array kLetterKeys =
    std::to_array<LetterKey>({{'2', "abc"}, {'3', "def"}, {'4', "gp"}});

// By the presses of the duration key; two durations have the same.
constexpr std::array kKeyDurations = {0, 16, 4, 2};

std::string WithoutBlanks(std::string_view text) {
  std::string plain(text);
  std::erase_if(plain, [](char c) { return c == ' ' || c == '\r' || c == '\n' || c == '\t'; });
  return plain;
}

// Compares the two check characters after "&&" with those of the notes.
void CheckEnd(std::string_view text, Scanner& in, Reading& reading) {
  if (!in.Take('&') || !in.Take('&') || in.AtEnd()) {
    reading.Remark(kCut);
    return;
  }
  const std::string plain = WithoutBlanks(text);
  const std::size_t first = plain.find('&') + 2, last = plain.find("&&", first);
  const std::string check = CheckCharacters(std::string_view(plain).substr(first, last - first));
  if (!in.Take(check[0]) || !in.Take(check[1])) {
    reading.Remark(kOtherCheck);
  }
}

}  // namespace

Reading ReadMotorolaSms(std::string_view text) {
  Reading reading;
  reading.SetTempo({}, kAssumedTempo);
  NoteLine line(reading);
  Scanner in(text);
  if (!in.TakeWord("l") || !in.Number() || !in.Take('&') || !core::IsDigit(in.Next())) {
    in.Fail();
  }
  while (!in.AtEnd() && in.Peek() != '&') {
    core::PlainNote pitch = kPause;
    if (!in.TakeWord("r")) {
      const std::optional<int> natural = SemitoneOfLetter(core::ToLower(in.Peek()));
      if (!natural) {
        in.Fail();
      }
      in.Next();
      const int sharp = in.Take('#') ? 1 : 0;
      const int octave = kMiddleOctave + (in.Take('+') ? 1 : in.Take('-') ? -1 : 0);
      pitch = Pitch(*natural + sharp, octave, reading);
    }
    const int digit = in.Peek() - '0';
    if (digit < 1 || digit > kLongestDigit) {
      in.Fail();
    }
    in.Next();
    line.Add(pitch, 1 << digit);
  }
  CheckEnd(text, in, reading);
  return reading;
}

Reading ReadMotorolaKeys(std::string_view text) {
  int octave = 2, code = 1;
  return ReadNotes(text, [&](Scanner& in, NoteLine& line, Reading& reading) {
    const int ones = in.Run('1');
    octave = ones == 0 ? octave : ones;
    const auto* key = std::ranges::find(kLetterKeys, in.Peek(), &LetterKey::key);
    if (key == kLetterKeys.end() || octave > 3) {
      in.Fail();
    }
    const auto presses = static_cast<std::size_t>(in.Run(key->key));
    if (presses > key->letters.size()) {
      in.Fail();
    }
    const char letter = key->letters[presses - 1];
    const int sharp = in.Take('7') ? 1 : 0;
    const int zeros = in.Run('0');
    code = zeros == 0 ? code : zeros;
    if (code > 3) {
      in.Fail();
    }
    line.Add(letter == 'p' ? kPause : Pitch(*SemitoneOfLetter(letter) + sharp, octave + 4, reading),
             LengthOf(kKeyDurations[static_cast<std::size_t>(code)]));
  });
}

}  // namespace tonadex::formats
