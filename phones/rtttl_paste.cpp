#include "phones/rtttl_paste.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/text.h"
#include "phones/rtttl_item.h"

namespace tonadex::phones {
namespace {

constexpr std::string_view kBlanks = " \t\n";

// Accepted names of the settings.
constexpr std::array<std::pair<std::string_view, char>, 12> kKeys = {{{"d", 'd'},
                                                                      {"dur", 'd'},
                                                                      {"duration", 'd'},
                                                                      {"duracion", 'd'},
                                                                      {"o", 'o'},
                                                                      {"oct", 'o'},
                                                                      {"octave", 'o'},
                                                                      {"octava", 'o'},
                                                                      {"b", 'b'},
                                                                      {"bpm", 'b'},
                                                                      {"beat", 'b'},
                                                                      {"tempo", 'b'}}};

// The setting around an equals sign; its key is 0 when there is none.
Field FieldAt(std::string_view text, std::size_t equals) {
  constexpr std::size_t kLongestKey = 12;
  std::size_t keyEnd = equals;
  while (keyEnd > 0 && (text[keyEnd - 1] == ' ' || text[keyEnd - 1] == '\t')) {
    --keyEnd;
  }
  std::size_t start = keyEnd;
  while (start > 0 && IsAlphanumeric(text[start - 1]) && keyEnd - start < kLongestKey) {
    --start;
  }
  const std::string word = core::Fold(text.substr(start, keyEnd - start));
  Field field{start, equals + 1, 0, {}};
  const auto known = std::ranges::find(kKeys, word, [](const auto& key) { return key.first; });
  if (known != kKeys.end()) {
    field.key = known->second;
  } else if (word.size() == 1 && !core::IsDigit(word[0])) {
    field.key = word[0];
  }
  while (field.end < text.size() && (text[field.end] == ' ' || text[field.end] == '\t')) {
    ++field.end;
  }
  const std::size_t valueStart = field.end;
  while (field.end < text.size() && (IsAlphanumeric(text[field.end]) || text[field.end] == '-')) {
    ++field.end;
  }
  if (field.end + 1 < text.size() && text[field.end] == '.' && core::IsDigit(text[field.end + 1])) {
    for (++field.end; field.end < text.size() && core::IsDigit(text[field.end]);) {
      ++field.end;
    }
  }
  field.value = text.substr(valueStart, field.end - valueStart);
  return field;
}

// A header: a run of settings with only separators between them.
struct Header {
  std::size_t start = 0, end = 0;
  std::vector<Field> fields;
};

std::vector<Header> FindHeaders(std::string_view text) {
  std::vector<Header> headers;
  for (std::size_t at = text.find('='); at != text.npos; at = text.find('=', at + 1)) {
    const Field field = FieldAt(text, at);
    const std::size_t before = headers.empty() ? 0 : headers.back().end;
    if (field.start < before) {
      continue;  // its key is part of the previous value
    }
    const bool goesOn =
        !headers.empty() && field.key != 0 &&
        text.substr(before, field.start - before).find_first_not_of(" \t\n,;:|.") == text.npos;
    if (goesOn) {
      headers.back().fields.push_back(field);
      headers.back().end = field.end;
    } else if (IsSetting(field)) {
      headers.push_back({field.start, field.end, {field}});
    }
  }
  return headers;
}

// Whether a line continues the notes of the previous one: it has no more words than notes.
bool GoesOn(std::string_view line) {
  std::ptrdiff_t notes = 0;
  std::ptrdiff_t words = 0;
  core::ForEachPiece(line, ",;| \t\"'", [&](std::string_view piece) {
    if (IsNote(piece)) {
      ++notes;
    } else if (piece.find_first_not_of("0123456789#.") != piece.npos) {
      ++words;  // a broken note is not a word
    }
  });
  return notes > 0 && notes >= words;
}

// Sets the lines with notes: the first line always, then all that continue it.
void SetNotes(PastedMelody& melody, std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t\n,;:|."), text.size());
  text.remove_prefix(first);
  bool goesOn = true;
  core::ForEachPiece(text, "\n", [&](std::string_view line) {
    goesOn = goesOn && (melody.lines.empty() || core::Trim(line, kBlanks).empty() || GoesOn(line));
    if (goesOn && !core::Trim(line, kBlanks).empty()) {
      melody.lines.push_back(core::Trim(line, kBlanks));
    }
  });
}

// Sets `whole`, from the name to the end of the notes.
void SetWhole(PastedMelody& melody, std::string_view text, std::size_t start) {
  const std::string_view last = melody.lines.empty() ? melody.header : melody.lines.back();
  const char* const end = last.data() + last.size();
  melody.whole =
      core::Trim(text.substr(start, static_cast<std::size_t>(end - text.data()) - start));
}

// Offset of the next melody's name in the text between two headers.
std::size_t NameStart(std::string_view between) {
  const std::string_view text = between.substr(0, between.find_last_not_of(" \t\n:,;|") + 1);
  const std::size_t line = text.rfind('\n') + 1;  // npos + 1 is 0
  const bool ownLine =
      text.size() < between.size() && between.find('\n', text.size()) != between.npos;
  if (ownLine && GoesOn(text.substr(line))) {
    return between.size();  // the header follows the notes: no name
  }
  if (line > 0) {
    return line;
  }
  // All on one line: the name follows the last note.
  const std::size_t item = text.find_last_of(",;|:") + 1;
  const std::size_t word = std::min(text.find_first_not_of(kBlanks, item), text.size());
  const std::size_t end = std::min(text.find_first_of(kBlanks, word), text.size());
  const bool named = end == text.size() && between.substr(end).starts_with(':');
  return IsNote(text.substr(word, end - word)) && !named ? end : word;
}

std::vector<PastedMelody> MelodiesByHeader(std::string_view text,
                                           const std::vector<Header>& headers) {
  std::vector<PastedMelody> melodies;
  std::size_t nameStart = text.substr(0, headers.front().start).find_last_not_of(" \t\n:,;|") + 1;
  nameStart = text.substr(0, nameStart).rfind('\n') + 1;
  for (std::size_t i = 0; i < headers.size(); ++i) {
    const Header& header = headers[i];
    PastedMelody melody;
    melody.name = text.substr(nameStart, header.start - nameStart);
    melody.header = text.substr(header.start, header.end - header.start);
    melody.fields = header.fields;
    std::string_view notes = text.substr(header.end);
    if (i + 1 < headers.size()) {
      notes = notes.substr(0, headers[i + 1].start - header.end);
      const std::size_t next = NameStart(notes);
      nameStart = header.end + next;
      notes = notes.substr(0, next);
    }
    const std::size_t start = static_cast<std::size_t>(melody.name.data() - text.data());
    SetNotes(melody, notes);
    SetWhole(melody, text, start);
    melodies.push_back(std::move(melody));
  }
  return melodies;
}

// Settings without equals signs ("d4,o5,b100") in a section between two colons that has no notes.
std::vector<Field> BareFields(std::string_view section) {
  std::vector<Field> fields;
  core::ForEachPiece(section, ",;| \t", [&](std::string_view piece) {
    if (piece.size() > 1 && std::string_view("dobDOB").find(piece[0]) != piece.npos) {
      fields.push_back({0, 0, core::ToLower(piece[0]), piece.substr(1)});
    }
  });
  return fields;
}

// For a text without a header: each line with a colon begins a melody.
std::vector<PastedMelody> MelodiesByLine(std::string_view text) {
  std::vector<PastedMelody> melodies;
  core::ForEachPiece(text, "\n", [&](std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon != line.npos) {
      const std::size_t last = line.rfind(':');
      PastedMelody melody;
      melody.name = line.substr(0, colon);
      melody.header = last == colon ? "" : line.substr(colon + 1, last - colon - 1);
      melody.fields = BareFields(melody.header);
      SetNotes(melody, line.substr(last + 1));
      melody.whole = line;
      melodies.push_back(std::move(melody));
    } else if (GoesOn(line)) {
      if (melodies.empty()) {
        melodies.emplace_back();
      }
      melodies.back().lines.push_back(core::Trim(line, kBlanks));
    }
  });
  return melodies;
}

}  // namespace

bool IsAlphanumeric(char c) {
  return core::IsDigit(c) || core::ToLower(c) != core::ToUpper(c);
}

bool IsSetting(const Field& field) {
  return field.key == 'd' || field.key == 'o' || field.key == 'b';
}

bool IsNote(std::string_view item) {
  return !NotesMeant(CleanItem(item)).empty();
}

std::vector<PastedMelody> FindMelodies(std::string_view text) {
  const std::vector<Header> headers = FindHeaders(text);
  return headers.empty() ? MelodiesByLine(text) : MelodiesByHeader(text, headers);
}

}  // namespace tonadex::phones
