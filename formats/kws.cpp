#include "formats/kws.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/note_warning.h"
#include "formats/pitch.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

// All layout constants, so that a correction from a test on a real phone changes one line.
constexpr int kLowestOctave = 4;  // lowest of the format
constexpr int kLowestNote = 1;    // number of the c of kLowestOctave
constexpr unsigned char kNoteKind = 4;
constexpr unsigned char kPauseKind = 0;
constexpr std::int64_t kMaxEntryMs = 0xFFFF;
constexpr std::size_t kMaxEntries = 0xFFFF;
constexpr std::size_t kHeaderSize = 6;
constexpr std::size_t kEntrySize = 4;

struct Entry {
  unsigned char note = 0;
  unsigned char kind = kPauseKind;
  std::int64_t ms = 0;
};

[[noreturn]] void ThrowOutOfRange(std::string_view what) {
  throw core::RunTimeError(core::ErrorNumber::kOverflow, std::string(what));
}

unsigned char NoteByte(const core::NoteList& notes, const core::NoteCodes& note) {
  const int octave = notes.WholeOctave(note);
  const int number =
      (octave - kLowestOctave) * kSemitones + std::max(SemitoneOf(note), 0) + kLowestNote;
  if (number > std::numeric_limits<unsigned char>::max()) {
    ThrowOutOfRange(u8"una nota está por encima de lo que permite el formato KWS"_w);
  }
  return static_cast<unsigned char>(number);
}

std::int32_t LengthMs(double duration, double tempo, bool dotted) {
  const std::int32_t ms = core::ToInt32(ExactNoteLengthMs(duration, tempo, dotted));
  if (ms < 0) {
    ThrowOutOfRange("el tempo es negativo");
  }
  return ms;
}

// Lengths in ms of each duration, plain and dotted, computed on first use: an invalid tempo is an
// error only for a melody with notes.
class Lengths {
 public:
  explicit Lengths(std::string_view tempo) : tempo_(tempo) {}

  // `length` is a phone's duration, as NoteCodes::length.
  std::int32_t operator()(std::uint8_t length, bool dotted) {
    std::optional<std::int32_t>& ms = ms_[length][dotted ? 1 : 0];
    if (!ms) {
      ms = LengthMs(core::kLengths[length], ToTempo(tempo_), dotted);
    }
    return *ms;
  }

 private:
  std::string_view tempo_;
  std::array<std::array<std::optional<std::int32_t>, 2>, core::kLengths.size()> ms_{};
};

bool LiesTooLow(const core::NoteList& notes) {
  return std::ranges::any_of(notes.Codes(), [&](const core::NoteCodes& note) {
    return !core::IsPause(note) && notes.Octave(note) < kLowestOctave;
  });
}

// One entry for each run of equal notes or of pauses; its duration is not limited yet.
std::vector<Entry> MergedEntries(const core::RTTTLMelody& melody, std::string& warnings) {
  std::vector<Entry> entries;
  entries.reserve(melody.Notes.size());
  Lengths lengths(melody.Beats);
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    melody.Notes.Duration(note);  // throws for a duration that is not a number
    const std::uint8_t length = core::kLengthOf[note.duration];
    if (length == core::NoteCodes::kNoLength) {
      AppendNoteWarning(warnings, "La nota # ", number, kBadDuration);
      continue;
    }
    const std::int32_t ms = lengths(length, note.dotted);
    const Entry entry = core::IsPause(note) ? Entry{0, kPauseKind, ms}
                                            : Entry{NoteByte(melody.Notes, note), kNoteKind, ms};
    if (!entries.empty() && entries.back().note == entry.note &&
        entries.back().kind == entry.kind) {
      entries.back().ms += ms;
    } else {
      entries.push_back(entry);
    }
  }
  return entries;
}

// The low 16 bits of a number, low byte first.
void AppendWord(std::size_t number, std::string& bytes) {
  bytes += static_cast<char>(number & 0xFF);
  bytes += static_cast<char>(number >> 8 & 0xFF);
}

void AppendEntry(unsigned char note, unsigned char kind, std::int64_t ms, std::string& bytes) {
  const auto word = static_cast<std::uint16_t>(ms);
  const auto high = static_cast<unsigned>(word >> 8);
  const char entry[kEntrySize] = {static_cast<char>(note), static_cast<char>(kind),
                                  static_cast<char>((word & 0xFFu) ^ ((high << 1) & 0xFFu)),
                                  static_cast<char>(high)};
  bytes.append(entry, kEntrySize);
}

std::string EntryBytes(const std::vector<Entry>& entries) {
  std::string bytes;
  bytes.reserve(entries.size() * kEntrySize);
  for (const Entry& entry : entries) {
    std::int64_t rest = entry.ms;
    do {
      if (bytes.size() == kMaxEntries * kEntrySize) {
        ThrowOutOfRange(u8"la melodía es demasiado larga para el formato KWS"_w);
      }
      const std::int64_t part = std::min(rest, kMaxEntryMs);
      AppendEntry(entry.note, entry.kind, part, bytes);
      rest -= part;
    } while (rest > 0);
  }
  return bytes;
}

}  // namespace

std::optional<std::string> KwsBytes(const core::RTTTLMelody& melody, std::string& warnings) {
  if (LiesTooLow(melody.Notes)) {
    return std::nullopt;
  }
  const std::string entries = EntryBytes(MergedEntries(melody, warnings));
  const auto inverted = ~static_cast<std::uint32_t>(kHeaderSize + entries.size());
  std::string bytes;
  AppendWord(inverted, bytes);
  AppendWord(inverted >> 16, bytes);
  AppendWord(entries.size() / kEntrySize, bytes);
  return bytes + entries;
}

}  // namespace tonadex::formats
