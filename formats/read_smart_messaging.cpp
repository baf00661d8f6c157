#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/pitch.h"
#include "formats/smart_messaging.h"
#include "formats/smart_messaging_bits.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;
using namespace ott;

constexpr unsigned kEndless = 15;
constexpr unsigned kLongestLength = 5, kLastNote = 12;

class BitReader {
 public:
  explicit BitReader(std::string_view bytes) : bytes_(bytes) {}

  unsigned Take(int bits) {
    unsigned value = 0;
    for (int i = 0; i < bits; ++i, ++at_) {
      if (at_ / 8 >= bytes_.size()) {
        Fail("el mensaje se acaba a medias");
      }
      const unsigned byte = core::Code(bytes_[at_ / 8]);
      value = (value << 1) | ((byte >> (7 - at_ % 8)) & 1u);
    }
    return value;
  }
  // To the next byte.
  void Align() { at_ = (at_ + 7) / 8 * 8; }

  [[noreturn]] void Fail(std::string_view what) const {
    RefuseFile({"byte ", std::to_string(at_ / 8 + 1), ": ", what});
  }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;  // in bits
};

class OttReader {
 public:
  OttReader(std::string_view bytes, Reading& reading)
      : in_(bytes), reading_(reading), line_(reading) {
    reading_.melody.tempo = kDefaultTempo;
  }

  void Read() {
    SkipToSound();
    const unsigned song = in_.Take(3);
    if (song != kBasicSong && song != kTemporarySong) {
      in_.Fail(u8"no es una melodía"_w);
    }
    const unsigned letters = song == kBasicSong ? in_.Take(4) : 0;
    for (unsigned i = 0; i < letters; ++i) {
      const unsigned code = in_.Take(unicode_ ? 16 : 8);
      reading_.melody.name += unicode_ ? core::FromUnicode(code) : static_cast<char>(code);
    }
    for (unsigned patterns = in_.Take(8); patterns > 0; --patterns) {
      ReadPattern();
    }
  }

 private:
  struct Instruction {
    unsigned kind, value;
  };

  void SkipToSound() {
    for (unsigned parts = in_.Take(8); parts > 0; --parts) {
      const unsigned command = in_.Take(7);
      if (command == kSound) {
        return;
      }
      if (command != kProgramming && command != kUnicode) {
        break;
      }
      unicode_ = unicode_ || command == kUnicode;
      in_.Align();
    }
    in_.Fail(u8"no es una melodía"_w);
  }

  void ReadPattern() {
    if (in_.Take(3) != kPattern) {
      in_.Fail("falta el principio de una parte");
    }
    const unsigned id = in_.Take(2), loop = in_.Take(4), size = in_.Take(8);
    if (size > 0) {
      patterns_[id].clear();
      for (unsigned i = 0; i < size; ++i) {
        patterns_[id].push_back(ReadInstruction());
      }
    }
    if (loop == kEndless) {
      reading_.RemarkEndless();
    }
    for (unsigned times = loop == kEndless ? 0 : loop;; --times) {
      std::ranges::for_each(patterns_[id], [this](const Instruction& each) { Play(each); });
      if (times == 0) {
        return;
      }
    }
  }

  Instruction ReadInstruction() {
    struct Size {
      unsigned kind;
      int bits;
    };
    static constexpr Size kSizes[] = {
        {kNote, 9}, {kScale, 2}, {kStyle, 2}, {kTempo, 5}, {kVolume, 4}};
    const unsigned kind = in_.Take(3);
    const auto* known = std::ranges::find(kSizes, kind, &Size::kind);
    if (known == std::end(kSizes)) {
      in_.Fail(u8"una instrucción que no existe"_w);
    }
    const Instruction instruction = {kind, in_.Take(known->bits)};
    if (kind == kNote &&
        (instruction.value >> 5 > kLastNote || ((instruction.value >> 2) & 7u) > kLongestLength)) {
      in_.Fail("una nota que no existe");
    }
    return instruction;
  }

  void Play(const Instruction& instruction) {
    if (instruction.kind == kScale) {
      scale_ = instruction.value;
    } else if (instruction.kind == kTempo) {
      tempo_ = kTempos[instruction.value];
      if (reading_.melody.notes.empty()) {
        reading_.melody.tempo = tempo_;
      }
    } else if (instruction.kind == kNote) {
      const unsigned value = instruction.value >> 5, length = (instruction.value >> 2) & 7u;
      // Another tempo than the melody's makes other lengths.
      const double whole = kWhole * reading_.melody.tempo / tempo_;
      line_.Add(value == kPauseValue ? kPause
                                     : Pitch(static_cast<int>(value) - 1,
                                             kLowestOctave + static_cast<int>(scale_), reading_),
                Modified(whole / (1u << length), static_cast<Modifier>(instruction.value & 3u)));
    }
  }

  BitReader in_;
  Reading& reading_;
  NoteLine line_;
  bool unicode_ = false;
  unsigned scale_ = kDefaultScale;
  int tempo_ = kDefaultTempo;
  std::array<std::vector<Instruction>, 4> patterns_;
};

// The bytes of hexadecimal digits; blanks and line ends are skipped. `number` is the message's.
std::string BytesOfHex(std::string_view digits, std::size_t number) {
  std::string bytes;
  unsigned high = 0;
  bool half = false;  // the first digit of a byte has been read
  for (const char c : digits) {
    if (c == ' ' || c == '\r' || c == '\n' || c == '\t') {
      continue;
    }
    unsigned value = 0;
    if (std::from_chars(&c, &c + 1, value, 16).ptr == &c) {
      RefuseFile({"mensaje ", std::to_string(number), ", byte ", std::to_string(bytes.size() + 1),
                  u8": «"_w, std::string_view(&c, 1), u8"» no es una cifra hexadecimal"_w});
    }
    if (half) {
      bytes += static_cast<char>(high * 16 + value);
    }
    high = value;
    half = !half;
  }
  return bytes;
}

constexpr std::string_view kSckl = "//SCKL";
constexpr std::size_t kAloneHeader = 4, kJoinedHeader = 14;  // digits after "//SCKL"

}  // namespace

Reading ReadOtt(std::string_view bytes) {
  Reading reading;
  OttReader(bytes, reading).Read();
  return reading;
}

Reading ReadSckl(std::string_view text) {
  std::map<std::size_t, std::string> parts;
  std::size_t total = 1, count = 0;
  for (std::size_t at = text.find(kSckl); at != std::string_view::npos;) {
    const std::size_t next = text.find(kSckl, at + 1);
    const std::string_view message = text.substr(
        at + kSckl.size(), next == std::string_view::npos ? next : next - at - kSckl.size());
    at = next;
    ++count;
    const std::size_t header = std::min(message.find_first_of(" \r\n"), message.size());
    std::size_t number = 1;
    if (header == kJoinedHeader) {
      const std::string place = BytesOfHex(message.substr(kJoinedHeader - 4, 4), count);
      total = core::Code(place[0]);
      number = core::Code(place[1]);
    } else if (header != kAloneHeader) {
      RefuseFile(
          {"mensaje ", std::to_string(count), u8": el principio «//SCKL» no está completo"_w});
    }
    parts[number] = BytesOfHex(message.substr(header), count);
  }
  std::string bytes;
  for (std::size_t number = 1; number <= total; ++number) {
    if (!parts.contains(number)) {
      RefuseFile({"falta el mensaje ", std::to_string(number), " de ", std::to_string(total)});
    }
    bytes += parts[number];
  }
  return ReadOtt(bytes);
}

}  // namespace tonadex::formats
