#include "app/composer_keys.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "core/windows1252.h"
#include "nokia3210/cnote.h"
#include "nokia3210/cnotes.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using nokia3210::cNote;
using nokia3210::kNeverSharp;
using nokia3210::kNoteSeparators;

constexpr std::array<ComposerKey, kKeyCount> kKeys = {{
    {"1", "do", u8"Do; mantenla pulsada para una nota con puntillo"_w},
    {"2", "re", u8"Re; mantenla pulsada para una nota con puntillo"_w},
    {"3", "mi", u8"Mi; mantenla pulsada para una nota con puntillo"_w},
    {"4", "fa", u8"Fa; mantenla pulsada para una nota con puntillo"_w},
    {"5", "sol", u8"Sol; mantenla pulsada para una nota con puntillo"_w},
    {"6", "la", u8"La; mantenla pulsada para una nota con puntillo"_w},
    {"7", "si", u8"Si; mantenla pulsada para una nota con puntillo"_w},
    {"0", "pausa", "Pausa"},
    {"8", u8"más corta"_w, u8"Acorta la nota a la mitad"_w},
    {"9", u8"más larga"_w, u8"Alarga la nota al doble"_w},
    {"*", "octava", u8"Pasa la nota a la octava siguiente: 1, 2, 3 y otra vez 1"_w},
    {"#", "sostenido", "Pone o quita el sostenido de la nota"},
}};

constexpr std::string_view kNoteKeys = "1234567";
constexpr std::string_view kLetters = "cdefgab";  // of the note keys
constexpr std::uint8_t kLongest = 1, kShortest = 32;

// The end of the word that begins at `from`: the next separator, or a closing parenthesis.
std::size_t WordEnd(std::string_view text, std::size_t from) {
  const std::size_t end = std::min(text.find_first_of(kNoteSeparators, from), text.size());
  const std::size_t close = text.find(')', from);
  return text[from] == '(' && close != std::string_view::npos ? std::max(end, close + 1) : end;
}

struct Word {
  std::size_t from = 0, to = 0;
};

// The last word that begins before the cursor.
std::optional<Word> WordAt(std::string_view text, std::size_t cursor) {
  std::optional<Word> word;
  std::size_t at = text.find_first_not_of(kNoteSeparators);
  while (at != std::string_view::npos && at < cursor) {
    word = Word{at, WordEnd(text, at)};
    at = text.find_first_not_of(kNoteSeparators, word->to);
  }
  return word;
}

// The notes of a text; unreadable parts are left out and reported in `log`.
std::vector<cNote> ReadNotes(std::string_view text, nokia3210::ErrorLog& log) {
  nokia3210::CNotes notes;
  notes.GetNotes(text, nokia3210::NoteKind::kComposer, {}, log);
  return {notes.begin(), notes.end()};
}

// Inserts a note after the word at the cursor.
ComposerText Insert(const ComposerText& before, cNote note) {
  const auto word = WordAt(before.text, before.cursor);
  const std::size_t at = word ? word->to : 0;
  nokia3210::ErrorLog unread;
  const std::vector<cNote> earlier = ReadNotes(std::string_view(before.text).substr(0, at), unread);
  // The phone keeps the duration of the last note; pauses do not change it.
  const auto last = std::find_if(earlier.rbegin(), earlier.rend(),
                                 [](const cNote& each) { return !each.IsPause(); });
  if (last != earlier.rend()) {
    note.Duration = last->Duration;
    note.Octave = last->Octave;
  }
  ComposerText after = before;
  std::string inserted = (at == 0 ? "" : " ") + note.Full_ComposerNote();
  after.cursor = at + inserted.size();
  if (at < before.text.size() && kNoteSeparators.find(before.text[at]) == std::string_view::npos) {
    inserted += ' ';
  }
  after.text.insert(at, inserted);
  return after;
}

void ChangeNote(cNote& note, char key) {
  if (key == '8' && note.Duration < kShortest) {
    note.Duration = static_cast<std::uint8_t>(note.Duration * 2);
  } else if (key == '9' && note.Duration > kLongest) {
    note.Duration = static_cast<std::uint8_t>(note.Duration / 2);
  } else if (key == '*' && !note.IsPause()) {
    note.Octave = note.Octave == '3' ? '1' : static_cast<char>(note.Octave + 1);
  } else if (key == '#' && !note.IsPause() &&
             kNeverSharp.find(note.Letter) == std::string_view::npos) {
    note.Sharp = !note.Sharp;
  }
}

// Changes the last note of the word at the cursor; an unreadable word stays as it is.
ComposerText Change(const ComposerText& before, char key) {
  const auto word = WordAt(before.text, before.cursor);
  if (!word) {
    return before;
  }
  nokia3210::ErrorLog log;
  std::vector<cNote> notes = ReadNotes(before.text.substr(word->from, word->to - word->from), log);
  if (notes.empty() || !log.Text().empty()) {
    return before;
  }
  ChangeNote(notes.back(), key);
  const std::string changed =
      cNote::NoteBatch(notes, nokia3210::NoteKind::kComposer, nokia3210::Defaults{});
  ComposerText after = before;
  after.text.replace(word->from, word->to - word->from, changed);
  after.cursor = word->from + changed.size();
  return after;
}

}  // namespace

const std::array<ComposerKey, kKeyCount>& ComposerKeys() {
  return kKeys;
}

ComposerText PressKey(const ComposerText& before, std::string_view key, bool held) {
  ComposerText now = before;
  now.cursor = std::min(now.cursor, now.text.size());
  if (std::ranges::find(kKeys, key, &ComposerKey::label) == kKeys.end()) {
    return now;
  }
  const std::size_t noteKey = kNoteKeys.find(key);
  if (noteKey != std::string_view::npos) {
    return Insert(now, {.Letter = kLetters[noteKey], .Dotted = held});
  }
  return key == "0" ? Insert(now, {.Letter = 'p'}) : Change(now, key.front());
}

}  // namespace tonadex::app
