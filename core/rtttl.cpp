#include "core/rtttl.h"

#include <algorithm>
#include <array>
#include <span>

#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr std::size_t kSampleNotes = 5001;  // empty notes of a fresh record
constexpr std::size_t kMaxDefault = 8;      // longest default duration or octave, characters
constexpr std::ptrdiff_t kMaxQuoted = 8;    // characters of a longer one in the message

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

std::string_view PitchText(char letter, bool sharp) {
  return {kPitchTexts.data() + std::size_t{2} * Code(letter), sharp ? 2u : 1u};
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
bool DropStrayMark(std::span<char>& item) {
  const std::string_view text(item.data(), item.size());
  const std::string_view tail = Right(text, 3);
  const bool mark = tail.starts_with('#') || tail.starts_with('.');
  if (!mark || Has(text, 'p') || Has(text, 'P') || tail.starts_with("#.") ||
      tail.starts_with(".#")) {
    return true;
  }
  if (item.size() < 3) {
    return false;
  }
  const std::size_t at = item.size() - 3;
  item[at] = item[at + 1];
  item[at + 1] = item[at + 2];
  item = item.first(item.size() - 1);
  return true;
}

// Reads one item by position and shortens `item` by the marks dropped.
RTTTLNote ReadNote(std::span<char>& item, std::string_view defaultDuration,
                   std::string_view defaultOctave) {
  RTTTLNote note;
  if (!DropStrayMark(item) || !DropStrayMark(item)) {  // exactly twice
    return note;
  }
  const std::string_view text(item.data(), item.size());
  const auto digitAt = [text](std::size_t i) {
    return i < text.size() && IsDurationDigit(text[i]);
  };
  const std::size_t digits = !digitAt(0) ? 0 : digitAt(1) ? 2 : 1;
  note.Duration = digits == 0 ? defaultDuration : text.substr(0, digits);
  note.Octave =
      text.empty() || !IsDurationDigit(text.back()) ? defaultOctave : text.substr(text.size() - 1);
  note.Dotted = Has(text, '.');
  if (digits < text.size()) {
    char letter = text.back() == 'p' ? 'p' : text[digits];
    if (letter == 'h') {
      letter = 'b';
    }
    note.Note = PitchText(letter, Has(text, '#'));
  }
  return note;
}

// The lower-cased notes section followed by both defaults, in a buffer that no copy of the record
// shares.
std::string& FreshNoteTexts(RTTTLMelody& melody, std::string_view section) {
  if (melody.NoteTexts == nullptr || melody.NoteTexts.use_count() > 1) {
    melody.NoteTexts = std::make_shared<std::string>();
  }
  std::string& texts = *melody.NoteTexts;
  texts.clear();
  texts.reserve(section.size() + melody.DefaultDuration.size() + melody.DefaultOctave.size());
  for (const char c : section) {
    texts += ToLower(c);
  }
  texts += melody.DefaultDuration;
  texts += melody.DefaultOctave;
  return texts;
}

std::int16_t ParseNotes(RTTTLMelody& melody, std::string_view section) {
  const std::vector<std::string_view> items = SplitText(section, ',');
  melody.Notes.Reserve(items.size());
  std::string& texts = FreshNoteTexts(melody, section);
  const std::string_view duration =
      std::string_view(texts).substr(section.size(), melody.DefaultDuration.size());
  const std::string_view octave =
      std::string_view(texts).substr(section.size() + melody.DefaultDuration.size());
  std::int16_t code = kParsed;
  std::int16_t number = 0;
  for (const std::string_view part : items) {
    const auto offset = part.empty() ? 0 : part.data() - section.data();
    std::span<char> item(texts.data() + offset, part.size());
    const RTTTLNote note = ReadNote(item, duration, octave);
    melody.Notes.Append(note);
    ++number;
    if (note.Note.empty()) {
      code = number;
    }
  }
  return code;
}

void RefuseLong(std::string_view what, std::string_view value) {
  if (value.size() > kMaxDefault) {
    throw RunTimeError(ErrorNumber::kInvalidArgument,
                       std::string(what) + std::string(u8" de la cabecera «"_w) +
                           std::string(Left(value, kMaxQuoted)) + std::string(u8"…» pasa de "_w) +
                           std::to_string(kMaxDefault) + " caracteres");
  }
}

std::int16_t SectionsError(RTTTLMelody& melody) {
  melody.Notes.Resize(1);
  return kSectionsError;
}

std::int16_t ParseSections(RTTTLMelody& melody) {
  ParseRTTTLHeader(melody);
  if (melody.Text.ends_with(',')) {
    melody.Text.pop_back();
  }
  std::erase(melody.Text, ' ');
  const std::vector<std::string_view> sections = SplitText(melody.Text, ':');
  if (sections.front().empty()) {
    return SectionsError(melody);
  }
  return ParseNotes(melody, sections.back());
}

}  // namespace

std::int16_t ParseRTTTL(RTTTLMelody& melody) {
  const bool noFirstSection = melody.Text.empty() || melody.Text.front() == ':';
  try {
    return ParseSections(melody);
  } catch (const RunTimeError&) {
    return noFirstSection ? SectionsError(melody) : kParseFailure;
  }
}

void ParseRTTTLHeader(RTTTLMelody& melody) {
  const std::string_view text = melody.Text;
  melody.Name.clear();  // a text that names nothing does not go by the name of the melody before it
  const std::ptrdiff_t nameEnd = InStr16(text, ':');
  melody.Name = Left(text, nameEnd - 1);
  const std::string_view rest = Mid(text, nameEnd + 1);
  std::string_view header = Left(rest, InStr16(rest, ':') - 1);
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
}

RTTTLNote ParseRTTTLNote(std::string& item, const RTTTLMelody& melody) {
  std::span<char> characters(item);
  RTTTLNote note = ReadNote(characters, melody.DefaultDuration, melody.DefaultOctave);
  item.resize(characters.size());
  return note;
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
