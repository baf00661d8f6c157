#include "nokia3210/cnotes.h"

#include <algorithm>
#include <optional>
#include <string>

#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "nokia3210/phone_tables.h"

namespace tonadex::nokia3210 {
namespace {

using namespace core::literals;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kConvertSource = "CNokia.Convert";
constexpr std::string_view kHold = "(hold ";
constexpr std::string_view kTempo = "tempo=";

constexpr std::string_view kPosition = u8"Posición "_w;
constexpr std::string_view kNotUnderstood = u8": no se entiende «"_w;
constexpr std::string_view kQuoteEnd = u8"»"_w;
constexpr std::string_view kNoSuchNote = u8"No hay ninguna nota con el número "_w;

// `at` is a 0-based offset.
void LogUnread(ErrorLog& log, std::size_t at, std::string_view text) {
  std::string message(kPosition);
  message += std::to_string(at + 1);
  message += kNotUnderstood;
  message += core::Trim(text);
  message += kQuoteEnd;
  log.AddError(kConvertSource, message);
}

bool IsOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

// Scans composer notation from left to right. The Read functions return nullopt or false when the
// text is not a note; `at_` is then somewhere inside the unreadable text, before the next
// separator.
class ComposerScanner {
 public:
  ComposerScanner(std::string_view text, std::uint8_t defaultDuration)
      : text_(text), defaultDuration_(defaultDuration) {}

  void ReadAll(CNotes& notes, ErrorLog& log) {
    SkipTempo();
    while ((at_ = text_.find_first_not_of(kNoteSeparators, at_)) != std::string_view::npos) {
      const std::size_t start = at_;
      if (const std::optional<cNote> note = ReadHeldOrToken()) {
        notes.Add(*note);
      } else {
        at_ = std::min(text_.find_first_of(kNoteSeparators, at_), text_.size());
        LogUnread(log, start, text_.substr(start, at_ - start));
      }
    }
  }

 private:
  // NUL at the end of the text; it is not a character of the notation.
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? core::ToLower(text_[at_ + ahead]) : '\0';
  }

  bool Take(char c) {
    const bool taken = at_ < text_.size() && Peek() == c;
    at_ += taken ? 1 : 0;
    return taken;
  }

  bool TakeWord(std::string_view lowerCase) {
    const bool taken = core::ToLower(text_.substr(at_, lowerCase.size())) == lowerCase;
    at_ += taken ? lowerCase.size() : 0;
    return taken;
  }

  std::string_view DigitRun() const {
    const std::string_view rest = text_.substr(at_);
    return rest.substr(0, rest.find_first_not_of(kDigits));
  }

  // True when a note or pause can start `ahead` characters on; the digits just read are then its
  // duration.
  bool NoteFollows(std::size_t ahead) const {
    const char c = Peek(ahead);
    return c != '\0' && IsOneOf(c, ".#-pabcdefgh");
  }

  void SkipTempo() {
    if (TakeWord(kTempo)) {
      const std::string_view digits = DigitRun();
      at_ += digits.size();
      if (digits.empty() || !Take(':')) {
        at_ = 0;
      }
    } else if (DigitRun().size() == 3 && Peek(3) == ' ') {
      at_ = 4;
    }
  }

  // "(4c2)": on the phone, holding a note's key makes the note dotted.
  std::optional<cNote> ReadHeldOrToken() {
    if (Peek() != '(') {
      return ReadToken();
    }
    if (!TakeWord(kHold)) {
      Take('(');
    }
    std::optional<cNote> note = ReadToken();
    if (!note || !Take(')')) {
      return std::nullopt;
    }
    note->Dotted = true;
    return note;
  }

  std::optional<cNote> ReadToken() {
    cNote note;
    if (!ReadDuration(note) || !ReadMarks(note, ".#")) {
      return std::nullopt;
    }
    const bool pause = Take('-') || Take('p');
    if (pause) {
      note.Letter = 'p';
    }
    const bool read = pause ? !note.Sharp && ReadMarks(note, ".")
                            : ReadLetter(note) && ReadMarks(note, ".#") &&
                                  (!note.Sharp || !IsOneOf(note.Letter, kNeverSharp)) &&
                                  ReadOctave(note);
    return read ? std::optional(note) : std::nullopt;
  }

  bool ReadDuration(cNote& note) {
    const std::string_view digits = DigitRun();
    note.Duration = digits.empty() ? defaultDuration_ : DurationOf(digits);
    at_ += digits.size();
    return note.Duration != 0;
  }

  // Each mark may occur once in a note.
  bool ReadMarks(cNote& note, std::string_view allowed) {
    for (; at_ < text_.size() && IsOneOf(text_[at_], allowed); ++at_) {
      bool& mark = text_[at_] == '.' ? note.Dotted : note.Sharp;
      if (mark) {
        return false;
      }
      mark = true;
    }
    return true;
  }

  bool ReadLetter(cNote& note) {
    const char letter = Peek();
    if (letter < 'a' || letter > 'h') {
      return false;
    }
    note.Letter = letter == 'h' ? 'b' : letter;
    ++at_;
    return true;
  }

  // "4c8d" is 4c 8d and "4c28d" is 4c2 8d: an octave is one digit, and digits that are the duration
  // of the next note are not an octave.
  bool ReadOctave(cNote& note) {
    const std::string_view digits = DigitRun();
    if (digits.empty() || (DurationOf(digits) > 2 && NoteFollows(digits.size()))) {
      return true;
    }
    if (digits.front() < '1' || digits.front() > '3') {
      return false;
    }
    note.Octave = digits.front();
    ++at_;
    return ReadMarks(note, ".");
  }

  std::string_view text_;
  std::uint8_t defaultDuration_;
  std::size_t at_ = 0;
};

// The composer's note for a parsed one; nullopt when the composer has no such note. Octaves 4 and
// 8, which the phone lacks, are converted, and GetOctave logs them.
std::optional<cNote> ToComposer(const core::RTTTLNote& parsed, ErrorLog& log) {
  cNote note{.Duration = DurationOf(parsed.Duration), .Dotted = parsed.Dotted};
  if (note.Duration == 0 || parsed.Note.empty()) {
    return std::nullopt;
  }
  note.Letter = parsed.Note.front();
  note.Sharp = parsed.Note.size() > 1;
  if (core::IsPause(parsed)) {
    return note;
  }
  const bool known =
      IsOneOf(note.Letter, "abcdefg") && !(note.Sharp && IsOneOf(note.Letter, kNeverSharp));
  if (!known || parsed.Octave.size() != 1 || parsed.Octave.front() < '4') {
    return std::nullopt;
  }
  const std::string_view mark = GetOctave(parsed.Octave, log);
  if (mark.empty()) {
    return std::nullopt;
  }
  note.Octave = mark.front();
  return note;
}

void ReadRTTTL(std::string_view text, const Defaults& defaults, CNotes& notes, ErrorLog& log) {
  core::RTTTLMelody melody;
  melody.DefaultDuration = defaults.Duration;
  melody.DefaultOctave = defaults.Octave;
  std::size_t at = text.rfind(':') + 1;  // 0 when there is no header
  if (at > 0) {
    melody.Text = text;
    core::SkipErrors([&] { core::ParseRTTTLHeader(melody); });
  }
  while ((at = text.find_first_not_of(kNoteSeparators, at)) != std::string_view::npos) {
    const std::size_t end = std::min(text.find(',', at), text.size());
    std::string item = core::ToLower(text.substr(at, end - at));
    std::erase_if(item, [](char c) { return IsOneOf(c, kBlanks); });
    if (const auto note = ToComposer(core::ParseRTTTLNote(item, melody), log)) {
      notes.Add(*note);
    } else {
      LogUnread(log, at, text.substr(at, end - at));
    }
    at = end;
  }
}

std::size_t CheckedIndex(std::size_t number, std::size_t count) {
  if (number < 1 || number > count) {
    throw core::RunTimeError(core::ErrorNumber::kSubscript,
                             std::string(kNoSuchNote) + std::to_string(number));
  }
  return number - 1;
}

}  // namespace

const cNote& CNotes::Item(std::size_t number) const {
  return notes_[CheckedIndex(number, notes_.size())];
}

void CNotes::Delete(std::size_t number) {
  notes_.erase(notes_.begin() + static_cast<std::ptrdiff_t>(CheckedIndex(number, notes_.size())));
}

void CNotes::GetNotes(std::string_view text, NoteKind kind, const Defaults& defaults,
                      ErrorLog& log) {
  if (kind == NoteKind::kRTTTL) {
    ReadRTTTL(text, defaults, *this, log);
  } else {
    const std::uint8_t duration = DurationOf(defaults.Duration);
    ComposerScanner(text, duration == 0 ? cNote{}.Duration : duration).ReadAll(*this, log);
  }
}

}  // namespace tonadex::nokia3210
