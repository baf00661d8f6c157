#include "formats/reading.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/pitch.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kMostDigits = 4, kMostQuoted = 12;
constexpr int kLowestOctave = 1, kHighestOctave = 8;
constexpr double kTolerance = 0.25;  // in sixty-fourths: nearer to a sum of lengths is that sum

constexpr int kShortest = kNoteLengths.back().units;

// The longest note that leaves nothing or enough for a pause.
const NoteLength& LongestIn(int units) {
  return *std::ranges::find_if(kNoteLengths, [units](const NoteLength& length) {
    const int rest = units - length.units;
    return rest == 0 || rest >= kShortest;
  });
}

}  // namespace

void Reading::Remark(std::string_view sentence) {
  if (std::ranges::find(remarks, sentence) == remarks.end()) {
    remarks.emplace_back(sentence);
  }
}

void Reading::RemarkEndless() {
  Remark(u8"Lo que se repite sin fin se ha escrito una sola vez."_w);
}

void Reading::SetTempo(std::string_view text, int otherwise) {
  const std::optional<double> number = core::FindNumber(text);
  if (!core::Trim(text).empty() && number && *number >= kSlowestTempo && *number <= kFastestTempo) {
    melody.tempo = core::ToInt16(*number);
    return;
  }
  melody.tempo = otherwise;
  Remark(core::Joined({u8"El fichero no dice un tempo que sirva: se ha puesto "_w,
                       std::to_string(otherwise), "."}));
}

void RefuseFile(std::initializer_list<std::string_view> parts) {
  throw core::RunTimeError(core::ErrorNumber::kInvalidArgument, core::Joined(parts));
}

void RefuseTooLong() {
  RefuseFile({u8"la melodía pasa de "_w, std::to_string(kMostNotes), " notas"});
}

char Scanner::Peek() {
  at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
  return at_ == text_.size() ? '\0' : text_[at_] == '\0' ? '?' : text_[at_];
}

bool Scanner::AtBlank() {
  return AtEnd() || (at_ > 0 && kBlanks.find(text_[at_ - 1]) != std::string_view::npos);
}

char Scanner::Next() {
  const char c = Peek();
  at_ += c == '\0' ? 0 : 1;
  return c;
}

bool Scanner::Take(char c) {
  const bool taken = Peek() == c;
  at_ += taken ? 1 : 0;
  return taken;
}

bool Scanner::TakeWord(std::string_view lowerCase) {
  const std::size_t start = at_;
  for (const char c : lowerCase) {
    if (core::ToLower(Peek()) != c) {
      at_ = start;
      return false;
    }
    ++at_;
  }
  return true;
}

int Scanner::Run(char c) {
  if (Peek() != c) {
    return 0;
  }
  const std::size_t start = at_;
  at_ = std::min(text_.find_first_not_of(c, at_), text_.size());
  return static_cast<int>(std::min<std::size_t>(at_ - start, 1000));
}

std::optional<int> Scanner::Number() {
  Peek();
  const std::size_t start = at_;
  while (at_ < text_.size() && at_ - start < kMostDigits && core::IsDigit(text_[at_])) {
    ++at_;
  }
  if (at_ == start) {
    return std::nullopt;
  }
  return core::FindInt32(text_.substr(start, at_ - start));
}

void Scanner::Fail() {
  if (AtEnd()) {
    RefuseFile({"se acaba a medias"});
  }
  const std::string_view before = text_.substr(0, at_);
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 for the first line
  const std::string_view rest = text_.substr(at_, kMostQuoted);
  RefuseFile({u8"línea "_w, std::to_string(1 + std::ranges::count(before, '\n')), u8", posición "_w,
              std::to_string(at_ - lineStart + 1), u8": no se entiende «"_w,
              rest.substr(0, rest.find_first_of(core::kCrLf)), u8"»"_w});
}

std::size_t BehindKey(std::string_view text, std::string_view key) {
  for (std::size_t at = 0; at < text.size();) {
    at = std::min(text.find_first_not_of(kBlanks, at), text.size());
    if (core::ToUpper(text.substr(at, key.size())) == key) {
      return at + key.size();
    }
    at = std::min(text.find_first_of(core::kCrLf, at), text.size());
  }
  return std::string_view::npos;
}

std::string HeaderValue(std::string_view text, std::string_view key) {
  const std::size_t at = BehindKey(text, key);
  if (at == std::string_view::npos) {
    return {};
  }
  const std::string_view rest = text.substr(at);
  return std::string(core::Trim(rest.substr(0, rest.find_first_of(core::kCrLf))));
}

std::optional<int> SemitoneOfLetter(char lowerCase) {
  return Semitone(std::string_view(&lowerCase, 1));
}

core::PlainNote Pitch(int semitone, int octave, Reading& reading) {
  const int above = (semitone % kSemitones + kSemitones) % kSemitones;
  octave += (semitone - above) / kSemitones;
  const int written = std::clamp(octave, kLowestOctave, kHighestOctave);
  if (written != octave) {
    reading.Remark(u8"Las notas fuera de las octavas 1 a 8 se han llevado a la más próxima."_w);
  }
  return {.semitone = above, .octave = written};
}

bool IsOneLength(int units) {
  return std::ranges::find(kNoteLengths, units, &NoteLength::units) != kNoteLengths.end();
}

double Modified(double length, Modifier modifier) {
  constexpr std::array kFactors = {1.0, 1.5, 1.75, 2.0 / 3};
  return length * kFactors[static_cast<std::size_t>(modifier)];
}

void NoteLine::Append(core::PlainNote note) {
  if (reading_.melody.notes.size() == kMostNotes) {
    RefuseTooLong();
  }
  reading_.melody.notes.push_back(note);
}

void NoteLine::Add(core::PlainNote pitch, double length) {
  exact_ += length;
  const double nearest = std::round(exact_);
  const bool matches = std::abs(exact_ - nearest) <= kTolerance && nearest - written_ >= kShortest;
  const auto end = static_cast<int>(matches ? nearest : 2 * std::round(exact_ / 2));
  if (end - written_ < kShortest) {
    reading_.Remark(u8"Lo que dura menos de media fusa se ha dejado fuera."_w);
    return;
  }
  for (core::PlainNote next = pitch; written_ < end; next = kPause) {
    const NoteLength& longest = LongestIn(std::min(end - written_, 1 << 20));
    next.length = longest.length;
    next.dotted = longest.dotted;
    Append(next);
    written_ += longest.units;
  }
}

}  // namespace tonadex::formats
