#include "core/rtttl.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr std::size_t kSampleNotes = 5001;  // empty notes of a reset record
constexpr std::size_t kMaxDefault = 8;      // maximum characters of a default duration or octave
constexpr std::ptrdiff_t kMaxQuoted = 8;    // characters that the message quotes of a longer one

constexpr std::string_view kSectionsMessage =
    u8"Error encontrado al separar las secciones del RTTTL.\r\n"
    u8"Comprueba que los separadores ':' están colocados correctamente"_w;
constexpr std::string_view kFailureMessage =
    "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto";
constexpr std::string_view kNoteMessage = "Error encontrado al separar la nota #";
constexpr std::string_view kNoteMessageEnd =
    u8"\r\nComprueba que el RTTL sea correcto\r\n\r\n"
    u8"Asegurate también de que no hay dos\r\ncomas (,,) consecutivas"_w;

// "La cucaracha", traditional.
constexpr std::string_view kSampleName = "Cucaracha";
constexpr std::string_view kSampleText =
    "Cucaracha:d=4,o=5,b=225:c,c,c,2f,a,c,c,c,2f,2a,p,2f,f,e,e,d,d,2c,p,c,c,c,2e,g,c,c,c,2e,2g,p,"
    "2c6,d6,c6,a#,a,g,2f,p,c,c,c,2f,a,c6,d6,c6,a#,a,g,2f";
constexpr std::string_view kCredits =
    "(c) 2026 Los autores de Tonadex\r\n"
    "http://tonadex.example/\r\n"
    "http://tonadex.example/melodias";

// Every byte followed by "#", so that a pitch can be a view of one or two static characters.
constexpr auto kPitchTexts = [] {
  std::array<char, 512> texts{};
  for (std::size_t code = 0; code < 256; ++code) {
    texts[2 * code] = static_cast<char>(code);
    texts[2 * code + 1] = '#';
  }
  return texts;
}();

constexpr std::size_t kNumbers = 89;  // 0 to 88: numbers of two digits 1 to 8

// Tens and units of each number.
constexpr auto kNumberTexts = [] {
  std::array<char, 2 * kNumbers> texts{};
  for (std::size_t number = 0; number < kNumbers; ++number) {
    texts[2 * number] = static_cast<char>('0' + number / 10);
    texts[2 * number + 1] = static_cast<char>('0' + number % 10);
  }
  return texts;
}();

std::string_view PitchText(const NoteCodes& note) {
  return {kPitchTexts.data() + std::size_t{2} * Code(note.letter), note.pitchSize};
}

std::string_view NumberText(std::uint8_t number) {
  const std::size_t digits = number >= 10 ? 2 : number > 0 ? 1 : 0;
  return {kNumberTexts.data() + std::size_t{2} * number + 2 - digits, digits};
}

RTTTLNote TextsOf(const NoteCodes& note, std::string_view defaultDuration,
                  std::string_view defaultOctave) {
  return {.Duration = note.ownDuration ? NumberText(note.duration) : defaultDuration,
          .Note = PitchText(note),
          .Octave = note.ownOctave ? NumberText(note.octave) : defaultOctave,
          .Dotted = note.dotted};
}

std::uint8_t NumberCode(std::string_view text) {
  const double number = FindNumber(text).value_or(NoteCodes::kOther);
  const bool small = number >= 0 && number < NoteCodes::kOther;
  const auto code = small ? static_cast<std::uint8_t>(number) : NoteCodes::kOther;
  return code == number ? code : NoteCodes::kOther;
}

// The codes of a note that takes duration and octave from the melody's defaults.
NoteCodes DefaultCodes(const RTTTLMelody& melody) {
  NoteCodes note;
  note.ownDuration = note.ownOctave = false;
  note.duration = NumberCode(melody.DefaultDuration);
  note.octave = NumberCode(melody.DefaultOctave);
  const bool plain =
      note.duration < kNumbers && NumberText(note.duration) == melody.DefaultDuration;
  note.length = plain ? kLengthOf[note.duration] : NoteCodes::kNoLength;
  return note;
}

// "0" and "9" never count as a duration or an octave.
constexpr bool IsDurationDigit(char c) {
  return c > '0' && c < '9';
}

// Items are a few characters long: an inlined loop beats memchr.
bool Has(std::string_view text, char c) {
  return std::ranges::find(text, c) != text.end();
}

// Drops a "#" or "." that is the third character from the end ("8.c5" becomes "8c5"). "#." and ".#"
// right before the octave are left alone. A sharp before a trailing dot is lost ("8c#5." becomes
// "8c5."): deliberate, stored melodies have always been read so. False when the item is too short.
bool DropStrayMark(std::string& item) {
  const std::string_view tail = Right(item, 3);
  const bool mark = tail.starts_with('#') || tail.starts_with('.');
  if (!mark || Has(item, 'p') || Has(item, 'P') || tail.starts_with("#.") ||
      tail.starts_with(".#")) {
    return true;
  }
  if (item.size() < 3) {
    return false;
  }
  item.erase(item.size() - 3, 1);
  return true;
}

// Reads any item (lower case) by the positions of its characters.
NoteCodes ReadItem(std::string& item, const NoteCodes& defaults) {
  if (!DropStrayMark(item) || !DropStrayMark(item)) {  // exactly twice
    return {};
  }
  const auto digitAt = [&item](std::size_t i) {
    return i < item.size() && IsDurationDigit(item[i]) ? item[i] - '0' : 0;
  };
  NoteCodes note = defaults;
  const std::size_t digits = digitAt(0) == 0 ? 0 : digitAt(1) == 0 ? 1 : 2;
  if (digits > 0) {
    const int number = digits == 1 ? digitAt(0) : 10 * digitAt(0) + digitAt(1);
    note.ownDuration = true;
    note.duration = static_cast<std::uint8_t>(number);
    note.length = kLengthOf[note.duration];
  }
  if (const int octave = item.empty() ? 0 : digitAt(item.size() - 1); octave != 0) {
    note.ownOctave = true;
    note.octave = static_cast<std::uint8_t>(octave);
  }
  note.dotted = Has(item, '.');
  if (digits < item.size()) {
    const char letter = item.back() == 'p' ? 'p' : item[digits];
    note.letter = letter == 'h' ? 'b' : letter;
    note.pitchSize = Has(item, '#') ? 2 : 1;
  }
  return note;
}

constexpr std::size_t kWordSize = 8;

// The first eight bytes of the text, little-endian, padded with commas.
std::uint64_t LoadWord(std::string_view text) {
  std::array<char, kWordSize> bytes;
  if (text.size() >= kWordSize) {
    std::memcpy(bytes.data(), text.data(), kWordSize);
  } else {
    bytes.fill(',');
    std::ranges::copy(text, bytes.begin());
  }
  if constexpr (std::endian::native == std::endian::big) {
    std::ranges::reverse(bytes);
  }
  return std::bit_cast<std::uint64_t>(bytes);
}

// Index of the word's first comma, kWordSize when there is none. After the XOR a comma is a zero
// byte; subtracting 1 borrows into the high bit of a zero byte first, so the lowest set bit is the
// comma's.
std::size_t FindComma(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const std::uint64_t rest = word ^ (kOnes * ',');
  return static_cast<std::size_t>(std::countr_zero((rest - kOnes) & ~rest & (kOnes << 7))) / 8;
}

// A NoteCodes as one integer, so that the fields set by different parts of an item can be added.
using CodesWord = std::uint64_t;
static_assert(sizeof(NoteCodes) == sizeof(CodesWord));

constexpr CodesWord WordOf(const NoteCodes& note) {
  return std::bit_cast<CodesWord>(note);
}

constexpr CodesWord PitchWord(char letter, std::uint8_t pitchSize, bool dotted) {
  return WordOf({letter, pitchSize, dotted, 0, 0, 0, false, false});
}
constexpr CodesWord DurationWord(std::uint8_t number, std::uint8_t length, bool own) {
  return WordOf({'\0', 0, false, length, number, 0, own, false});
}
constexpr CodesWord OctaveWord(std::uint8_t number, bool own) {
  return WordOf({'\0', 0, false, 0, 0, number, false, own});
}

constexpr CodesWord kSharpWord = PitchWord('\0', 1, false);
constexpr CodesWord kDotWord = PitchWord('\0', 0, true);

template <std::size_t kCount, typename Make>
constexpr std::array<CodesWord, kCount> Words(Make make) {
  std::array<CodesWord, kCount> words{};
  for (std::size_t i = 0; i < kCount; ++i) {
    words[i] = make(static_cast<std::uint8_t>(i));
  }
  return words;
}

// A note's own duration and octave; 0 for none.
constexpr auto kDurationWords = Words<kNumbers>([](std::uint8_t number) {
  return number == 0 ? 0 : DurationWord(number, kLengthOf[number], true);
});
constexpr auto kOctaveWords =
    Words<9>([](std::uint8_t number) { return number == 0 ? 0 : OctaveWord(number, true); });

// The natural note of each ASCII letter; 0 for any other byte.
constexpr auto kLetterWords = Words<256>([](std::uint8_t code) {
  const char lower = static_cast<char>(code | 0x20);
  const bool letter = lower >= 'a' && lower <= 'z';
  return letter ? PitchWord(lower == 'h' ? 'b' : lower, 1, false) : 0;
});

struct DefaultWords {
  explicit DefaultWords(const NoteCodes& note)
      : duration(DurationWord(note.duration, note.length, false)),
        octave(OctaveWord(note.octave, false)) {}
  CodesWord duration, octave;
};

// Reads an item of the usual form, [duration] letter [#] [.] [octave], whose comma is at `size`, as
// ReadItem would; 0 for any other. The fields follow from comparisons, shifts and masks, because
// the branches of a scanner would be mispredicted about once per note.
CodesWord ReadUsualItem(std::uint64_t text, std::size_t size, const DefaultWords& defaults) {
  const auto digit = [&text] { return (text & 0xFF) - '0'; };
  const auto isDigit = [](std::uint64_t value) { return std::uint64_t{value - 1 < 8}; };
  const auto when = [](std::uint64_t wanted, std::uint64_t word) { return word & (0 - wanted); };
  const std::uint64_t first = digit();
  const std::uint64_t second = ((text >> 8) & 0xFF) - '0';
  const std::uint64_t own = isDigit(first);
  const std::uint64_t two = own & isDigit(second);
  const std::uint64_t number = when(own, first) + when(two, 9 * first + second);
  text >>= 8 * (own + two);
  const CodesWord letter = kLetterWords[text & 0xFF];
  text >>= 8;
  const std::uint64_t sharp = (text & 0xFF) == '#';
  text >>= 8 * sharp;
  const std::uint64_t dot = (text & 0xFF) == '.';
  text >>= 8 * dot;
  const std::uint64_t octave = digit();
  const std::uint64_t ownOctave = isDigit(octave);
  const bool usual = letter != 0 && own + two + 1 + sharp + dot + ownOctave == size;
  const CodesWord note = letter + when(sharp, kSharpWord) + when(dot, kDotWord) +
                         kDurationWords[number] + when(1 - own, defaults.duration) +
                         kOctaveWords[when(ownOctave, octave)] +
                         when(1 - ownOctave, defaults.octave);
  return usual ? note : 0;
}

// Throws SplitText's errors for a section with too many or too long items.
void CheckItems(std::string_view section, std::size_t count) {
  if (count > kMaxParts || section.size() > kMaxPosition) {
    SplitText(section, ',');
  }
}

std::int16_t ParseNotes(RTTTLMelody& melody, std::string_view section) {
  const auto count = static_cast<std::size_t>(std::ranges::count(section, ',')) + 1;
  CheckItems(section, count);
  const NoteCodes defaults = DefaultCodes(melody);
  const DefaultWords defaultWords(defaults);
  const std::span<NoteCodes> notes =
      melody.Notes.Start(count, melody.DefaultDuration, melody.DefaultOctave);
  std::size_t unread = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t word = LoadWord(section);
    std::size_t size = FindComma(word);
    if (const CodesWord note = ReadUsualItem(word, size, defaultWords); note != 0) {
      notes[i] = std::bit_cast<NoteCodes>(note);
    } else {
      if (i > 0 && section.starts_with(',')) {
        notes[0] = defaults;  // SplitText empties part 0 here
      }
      size = std::min(section.find(','), section.size());
      std::string item = ToLower(section.substr(0, size));
      notes[i] = ReadItem(item, defaults);
      unread = notes[i].pitchSize == 0 ? i + 1 : unread;
    }
    section.remove_prefix(std::min(size + 1, section.size()));
  }
  return static_cast<std::int16_t>(unread);
}

void RefuseLong(std::string_view what, std::string_view value) {
  if (value.size() > kMaxDefault) {
    throw RunTimeError(ErrorNumber::kInvalidArgument,
                       std::string(what) + std::string(u8" de la cabecera «"_w) +
                           std::string(Left(value, kMaxQuoted)) + std::string(u8"…» pasa de "_w) +
                           std::to_string(kMaxDefault) + " caracteres");
  }
}

// Returns the length of name and header with their separators.
std::size_t ReadHeader(RTTTLMelody& melody) {
  const std::string_view text = melody.Text;
  melody.Name.clear();  // do not keep the previous melody's name
  const std::ptrdiff_t nameEnd = InStr16(text, ':');
  melody.Name = Left(text, nameEnd - 1);
  const std::string_view rest = Mid(text, nameEnd + 1);
  const std::ptrdiff_t headerEnd = InStr16(rest, ':');
  std::string_view header = Left(rest, headerEnd - 1);
  std::ptrdiff_t comma = 0;
  do {
    comma = InStr16(header, ',');
    const std::string_view item = comma == 0 ? header : Left(header, comma - 1);
    if (item.starts_with("d=")) {
      melody.DefaultDuration = Mid(item, 3);
    } else if (item.starts_with("b=")) {
      melody.Beats = Mid(item, 3);
    } else if (item.starts_with("o=")) {
      melody.DefaultOctave = Mid(item, 3);
    }
    header = Mid(header, comma + 1);
  } while (comma > 0);
  return static_cast<std::size_t>(nameEnd + headerEnd);
}

// Branch-free, because the positions of blanks cannot be predicted.
void EraseBlanks(std::string& text, std::size_t first) {
  char* end = text.data() + first;
  for (const char c : std::string_view(text).substr(first)) {
    *end = c;
    end += c == ' ' ? 0 : 1;
  }
  text.resize(static_cast<std::size_t>(end - text.data()));
}

std::int16_t SectionsError(RTTTLMelody& melody) {
  melody.Notes.Resize(1);
  return kSectionsError;
}

std::int16_t ParseSections(RTTTLMelody& melody) {
  const std::size_t headerSize = ReadHeader(melody);
  if (melody.Text.ends_with(',')) {
    melody.Text.pop_back();
  }
  const std::size_t blank = melody.Text.find(' ');
  if (blank != melody.Text.npos) {
    EraseBlanks(melody.Text, blank);
  }
  const TextEnds sections = SplitEnds(melody.Text, ':');
  if (sections.front.empty()) {
    return SectionsError(melody);
  }
  const std::int16_t code = ParseNotes(melody, sections.back);
  melody.ParsesAlike = code == kParsed && blank >= headerSize;
  return code;
}

}  // namespace

std::span<NoteCodes> NoteList::Start(std::size_t count, std::string_view defaultDuration,
                                     std::string_view defaultOctave) {
  read_.resize(count);
  size_ = count;
  defaultDuration_ = defaultDuration;
  defaultOctave_ = defaultOctave;
  return read_;
}

RTTTLNote NoteList::operator[](std::size_t index) const {
  return index < read_.size() ? TextsOf(read_[index], defaultDuration_, defaultOctave_)
                              : RTTTLNote{};
}

std::int16_t ParseRTTTL(RTTTLMelody& melody) {
  melody.ParsesAlike = false;
  const bool noFirstSection = melody.Text.empty() || melody.Text.front() == ':';
  try {
    return ParseSections(melody);
  } catch (const RunTimeError&) {
    return noFirstSection ? SectionsError(melody) : kParseFailure;
  }
}

void ParseRTTTLHeader(RTTTLMelody& melody) {
  ReadHeader(melody);
}

RTTTLNote ParseRTTTLNote(std::string& item, const RTTTLMelody& melody) {
  return TextsOf(ReadItem(item, DefaultCodes(melody)), melody.DefaultDuration,
                 melody.DefaultOctave);
}

void ShowRTTTLError(std::int16_t code) {
  if (code <= kParsed) {
    return;
  }
  if (code == kSectionsError) {
    MsgBox(kSectionsMessage);
  } else if (code == kParseFailure) {
    MsgBox(kFailureMessage);
  } else {
    MsgBox(std::string(kNoteMessage) + std::to_string(code) + std::string(kNoteMessageEnd));
  }
}

void CheckDefaults(const RTTTLMelody& melody) {
  RefuseLong(u8"la duración"_w, melody.DefaultDuration);
  RefuseLong("la octava", melody.DefaultOctave);
}

bool ParseOrReport(RTTTLMelody& melody) {
  if (std::exchange(melody.SkipParse, false)) {
    return true;
  }
  const std::int16_t code = ParseRTTTL(melody);
  ShowRTTTLError(code);
  CheckDefaults(melody);
  return code == kParsed;
}

void InitMelody(RTTTLMelody& melody, std::string_view tempFolder) {
  melody.Instrument = 99;
  melody.Credits = kCredits;
  melody.TrackName = "MIDI by Tonadex v" TONADEX_VERSION;
  melody.Name = kSampleName;
  melody.Beats = "63";
  melody.DefaultDuration = "4";
  melody.DefaultOctave = "5";
  melody.Text = kSampleText;
  melody.TempFolder = tempFolder;
  melody.Notes.Resize(kSampleNotes);
}

}  // namespace tonadex::core
