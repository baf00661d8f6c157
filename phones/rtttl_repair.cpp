#include "phones/rtttl_repair.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>

#include "core/melody_file.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_item.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::size_t kLongestName = 100;
constexpr std::size_t kQuoted = 60;     // maximum characters of a quoted header or name
constexpr std::size_t kMostKinds = 20;  // maximum kinds of note changes that are listed
constexpr std::string_view kSignsChanged =
    u8"Los signos tipográficos, de HTML o de fichero pasan a los de RTTTL."_w;
constexpr std::string_view kNamelessMelody = "Melodia";
constexpr std::string_view kBlanks = " \t\n";
constexpr std::string_view kSeparators = ",;|:";  // of notes

bool IsAlphanumeric(char c) {
  return core::IsDigit(c) || core::ToLower(c) != core::ToUpper(c);
}

std::string_view Strip(std::string_view text, std::string_view characters = kBlanks) {
  const std::size_t first = text.find_first_not_of(characters);
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string Becomes(std::string_view from, std::string_view to) {
  return Quoted(from, kQuoted) + " pasa a " + Quoted(to, kQuoted);
}

// The changes of the notes: each kind once, with its count.
class NoteChanges {
 public:
  void Changed(std::string_view from, std::string_view to) { Count(Becomes(from, to)); }
  void Dropped(std::string_view item) {
    Count("se quita " + Quoted(item, kQuoted) + ", que no es ninguna nota");
  }
  void Sentences(std::vector<std::string>& changes) const {
    for (const auto& [words, count] : kinds_) {
      changes.push_back(Capital(words) +
                        (count > 1 ? " (" + std::to_string(count) + " veces)." : "."));
    }
    if (others_ > 0) {
      changes.push_back("Y otros " + std::to_string(others_) + " cambios en las notas.");
    }
  }

 private:
  static std::string Capital(std::string words) {
    words.front() = core::ToUpper(words.front());
    return words;
  }
  void Count(std::string words) {
    const auto known =
        std::ranges::find(kinds_, words, &std::pair<std::string, std::size_t>::first);
    if (known != kinds_.end()) {
      ++known->second;
    } else if (kinds_.size() < kMostKinds) {
      kinds_.emplace_back(std::move(words), 1);
    } else {
      ++others_;
    }
  }

  std::vector<std::pair<std::string, std::size_t>> kinds_;
  std::size_t others_ = 0;
};

// One "key=value" of a header.
struct Field {
  std::size_t start = 0, end = 0;  // offsets in the text
  char key = 0;                    // d, o, b, or the letter of an extension
  std::string_view value;
};

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

bool IsSetting(const Field& field) {
  return field.key == 'd' || field.key == 'o' || field.key == 'b';
}

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

// The parts of a melody as views of the pasted text.
struct Source {
  std::string_view name;  // before the header
  std::string_view header;
  std::vector<Field> fields;
  std::vector<std::string_view> lines;  // with notes
  std::string_view whole;               // from the name to the last note
};

bool IsNote(std::string_view item) {
  return !NotesMeant(CleanItem(item)).empty();
}

// Calls `use` with every piece, even an empty one, between characters of `separators`.
template <typename Use>
void ForEachPiece(std::string_view text, std::string_view separators, Use use) {
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
    use(text.substr(start, end - start));
    start = end + 1;
  }
}

// Whether a line continues the notes of the previous one: it has no more words than notes.
bool GoesOn(std::string_view line) {
  std::ptrdiff_t notes = 0;
  std::ptrdiff_t words = 0;
  ForEachPiece(line, ",;| \t", [&](std::string_view piece) {
    if (IsNote(piece)) {
      ++notes;
    } else if (piece.find_first_not_of("0123456789#.") != piece.npos) {
      ++words;  // a broken note is not a word
    }
  });
  return notes > 0 && notes >= words;
}

// Sets the lines with notes: the first line always, then all that continue it.
void SetNotes(Source& source, std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t\n,;:|."), text.size());
  text.remove_prefix(first);
  bool goesOn = true;
  ForEachPiece(text, "\n", [&](std::string_view line) {
    goesOn = goesOn && (source.lines.empty() || Strip(line).empty() || GoesOn(line));
    if (goesOn && !Strip(line).empty()) {
      source.lines.push_back(Strip(line));
    }
  });
}

// Sets `whole`, from the name to the end of the notes.
void SetWhole(Source& source, std::string_view text, std::size_t start) {
  const std::string_view last = source.lines.empty() ? source.header : source.lines.back();
  const char* const end = last.data() + last.size();
  source.whole = Strip(text.substr(start, static_cast<std::size_t>(end - text.data()) - start));
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

std::vector<Source> SourcesByHeader(std::string_view text, const std::vector<Header>& headers) {
  std::vector<Source> sources;
  std::size_t nameStart = text.substr(0, headers.front().start).find_last_not_of(" \t\n:,;|") + 1;
  nameStart = text.substr(0, nameStart).rfind('\n') + 1;
  for (std::size_t i = 0; i < headers.size(); ++i) {
    const Header& header = headers[i];
    Source source;
    source.name = text.substr(nameStart, header.start - nameStart);
    source.header = text.substr(header.start, header.end - header.start);
    source.fields = header.fields;
    std::string_view notes = text.substr(header.end);
    if (i + 1 < headers.size()) {
      notes = notes.substr(0, headers[i + 1].start - header.end);
      const std::size_t next = NameStart(notes);
      nameStart = header.end + next;
      notes = notes.substr(0, next);
    }
    const std::size_t start = static_cast<std::size_t>(source.name.data() - text.data());
    SetNotes(source, notes);
    SetWhole(source, text, start);
    sources.push_back(std::move(source));
  }
  return sources;
}

// Settings without equals signs ("d4,o5,b100") in a section between two colons that has no notes.
std::vector<Field> BareFields(std::string_view section) {
  std::vector<Field> fields;
  ForEachPiece(section, ",;| \t", [&](std::string_view piece) {
    if (piece.size() > 1 && std::string_view("dobDOB").find(piece[0]) != piece.npos) {
      fields.push_back({0, 0, core::ToLower(piece[0]), piece.substr(1)});
    }
  });
  return fields;
}

// For a text without a header: each line with a colon begins a melody.
std::vector<Source> SourcesByLine(std::string_view text) {
  std::vector<Source> sources;
  ForEachPiece(text, "\n", [&](std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon != line.npos) {
      const std::size_t last = line.rfind(':');
      Source source;
      source.name = line.substr(0, colon);
      source.header = last == colon ? "" : line.substr(colon + 1, last - colon - 1);
      source.fields = BareFields(source.header);
      SetNotes(source, line.substr(last + 1));
      source.whole = line;
      sources.push_back(std::move(source));
    } else if (GoesOn(line)) {
      if (sources.empty()) {
        sources.emplace_back();
      }
      sources.back().lines.push_back(Strip(line));
    }
  });
  return sources;
}

// Removes the "1. ", "2) ", "- " or "> " of lists and quoted mail.
std::string_view WithoutBullet(std::string_view name) {
  const std::size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
  if (digits > 0 && digits + 1 < name.size() && (name[digits] == '.' || name[digits] == ')') &&
      name[digits + 1] == ' ') {
    return name.substr(digits + 2);
  }
  return digits == 0 ? name.substr(std::min(name.find_first_not_of("-*>` \t"), name.size())) : name;
}

// Removes an address and what precedes it, unless nothing follows.
std::string_view WithoutAddress(std::string_view name) {
  const std::size_t address = name.rfind("://");
  const std::size_t end = address == name.npos ? address : name.find(' ', address);
  return end == name.npos ? name : name.substr(end + 1);
}

// Makes a name that is valid in RTTTL, in a URL and as a file name.
std::string CleanName(std::string_view raw) {
  constexpr std::string_view kJoining = "/\\=";
  constexpr std::string_view kDropped = "?'.\"<>*|`";
  constexpr std::string_view kEnds = " \t\n:,;|\"'-";
  raw = Strip(raw, kEnds);
  raw = raw.substr(raw.find_last_of("\"\n") + 1);  // after the code before a string literal
  std::string name;
  for (const char c : WithoutBullet(WithoutAddress(raw))) {
    const bool blank = c == ' ' || c == '\t' || core::Code(c) < ' ';
    if (blank && (name.empty() || name.back() == ' ')) {
      continue;
    }
    if (c == ':') {
      name += name.ends_with(' ') ? "-" : " -";
    } else if (c == '&') {
      name += 'y';
    } else if (kJoining.find(c) != kJoining.npos) {
      name += '-';
    } else if (kDropped.find(c) == kDropped.npos) {
      name += blank ? ' ' : c;
    }
  }
  name = Strip(std::string_view(name).substr(0, kLongestName), kEnds);
  return name.empty() ? std::string(kNamelessMelody) : name;
}

// The last non-empty value of a setting, "" when there is none.
std::string_view ValueOf(const Source& source, char key) {
  std::string_view value;
  for (const Field& field : source.fields) {
    if (field.key == key && !field.value.empty()) {
      value = field.value;
    }
  }
  return value;
}

// The number at the beginning of a value.
std::optional<double> NumberIn(std::string_view value) {
  std::optional<double> number;
  const std::size_t end = std::min(value.find_first_not_of("0123456789."), value.size());
  if (end > 0) {
    core::SkipErrors([&] { number = core::ToNumber(value.substr(0, end)); });
  }
  return number;
}

struct Settings {
  int duration = 4, octave = 6;  // defaults of RTTTL
  std::string tempo = "63";
  std::string others;  // extensions of phones: ",s=n"
};

Settings SettingsOf(const Source& source, std::vector<std::string>& changes) {
  Settings settings;
  constexpr double kMost = 9999;
  if (const auto number = NumberIn(ValueOf(source, 'd'))) {
    settings.duration = NearestDuration(static_cast<int>(std::min(*number, kMost)));
  } else {
    changes.emplace_back(u8"Falta la duración: se toma «d=4»."_w);
  }
  if (const auto number = NumberIn(ValueOf(source, 'o'))) {
    settings.octave = NearestOctave(static_cast<int>(std::min(*number, kMost)));
  } else {
    changes.emplace_back(u8"Falta la octava: se toma «o=6»."_w);
  }
  const std::string_view tempo = ValueOf(source, 'b');
  if (const auto number = NumberIn(tempo); number && *number > 0) {
    settings.tempo =
        tempo.substr(0, std::min(tempo.find_first_not_of("0123456789."), tempo.size()));
  } else if (number) {
    settings.tempo = std::to_string(kSlowestTempo);
  } else {
    changes.emplace_back(u8"Falta el tempo: se toma «b=63»."_w);
  }
  for (const Field& field : source.fields) {
    if (!IsSetting(field) && !field.value.empty()) {
      settings.others.append(",").append(1, field.key).append("=").append(field.value);
    }
  }
  return settings;
}

std::string HeaderText(const Settings& settings) {
  return "d=" + std::to_string(settings.duration) + ",o=" + std::to_string(settings.octave) +
         ",b=" + settings.tempo + settings.others;
}

// Whether a number after a note is the duration of the next note: the note already has an octave,
// or the number is not an octave that phones play.
bool BeginsNote(std::string_view note, std::string_view word) {
  return word.find_first_not_of("0123456789") == word.npos &&
         (core::IsDigit(note.back()) || word.size() > 1 || word < "4" || word > "7");
}

// Assembles the notes section of one melody.
class NoteWriter {
 public:
  explicit NoteWriter(int octave) : octave_(octave) {}

  // Adds a piece between two commas. Blanks and line breaks in it can separate notes or interrupt
  // one.
  void AddPiece(std::string_view piece) {
    std::string item;
    bool empty = true;
    ForEachPiece(piece, kBlanks, [&](std::string_view word) {
      if (word.empty()) {
        return;
      }
      empty = false;
      if (IsNote(item) && (IsNote(word) || BeginsNote(item, word))) {
        AddItem(std::exchange(item, {}));
        ++parted_;
      }
      // Text longer than any note cannot be one and is not stored completely.
      item += item.size() > kLongestItem ? std::string_view() : word;
    });
    if (empty) {
      ++gaps_;
    } else {
      AddItem(item);
    }
  }
  std::size_t count() const { return count_; }
  const std::string& text() const { return text_; }
  void Sentences(std::vector<std::string>& changes) const;

 private:
  static constexpr std::size_t kLongestItem = 100;

  void AddItem(const std::string& item) {
    std::string clean = CleanItem(item);
    std::vector<MeantNote> notes = NotesMeant(clean);
    if (notes.empty()) {  // "(8c)", "8c*"
      std::erase_if(clean, [](char c) { return !IsAlphanumeric(c) && c != '#' && c != '.'; });
      notes = NotesMeant(clean);
    }
    if (notes.empty()) {
      changes_.Dropped(item);
      return;
    }
    if (count_ + notes.size() > core::kMaxParts) {
      ++beyond_;
      return;
    }
    count_ += notes.size();
    // A note that the parser reads as meant is unchanged, except that h becomes b.
    if (!ItemFault(clean).empty() || clean.find('h') != clean.npos) {
      clean.clear();
      for (const MeantNote& note : notes) {
        clean.append(clean.empty() ? "" : ",").append(MendedItem(note, octave_));
      }
    }
    if (clean != item) {
      changes_.Changed(item, clean);
    }
    text_.append(text_.empty() ? "" : ",").append(clean);
  }

  int octave_;
  std::string text_;
  std::size_t count_ = 0, gaps_ = 0, parted_ = 0, beyond_ = 0;
  NoteChanges changes_;
};

// The sentence for the count, which replaces "%".
std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  std::string sentence(count == 1 ? one : many);
  return core::ReplaceAll(sentence, "%", std::to_string(count));
}

void NoteWriter::Sentences(std::vector<std::string>& changes) const {
  if (parted_ > 0) {
    changes.push_back(
        Counted(parted_, "Se pone % coma entre notas.", "Se ponen % comas entre notas."));
  }
  if (gaps_ > 0) {
    changes.push_back(
        Counted(gaps_, "Se quita % hueco entre comas.", "Se quitan % huecos entre comas."));
  }
  changes_.Sentences(changes);
  if (beyond_ > 0) {
    changes.push_back("Se quitan las notas a partir de la " + std::to_string(core::kMaxParts) +
                      ", que no caben.");
  }
}

// The usual tempo nearest to one at which long or short notes cannot be converted.
std::string UsualTempo(std::string_view tempo) {
  const double number = NumberIn(tempo).value_or(0);
  return std::to_string(number < kSlowestTempo ? kSlowestTempo : kFastestTempo);
}

std::optional<RepairedMelody> Build(const Source& source) {
  RepairedMelody melody{CleanName(source.name), {}, {}};
  Settings settings = SettingsOf(source, melody.changes);
  NoteWriter notes(settings.octave);
  std::string joined;
  for (const std::string_view line : source.lines) {
    joined.append(joined.empty() ? "" : "\n").append(line);
  }
  ForEachPiece(joined, kSeparators, [&](std::string_view piece) { notes.AddPiece(piece); });
  if (notes.count() == 0) {
    return std::nullopt;
  }
  std::size_t lines = 0;
  ForEachPiece(source.whole, "\n",
               [&](std::string_view line) { lines += Strip(line).empty() ? 0u : 1u; });
  if (lines > 1) {
    melody.changes.push_back("Se unen " + std::to_string(lines) + std::string(u8" líneas."_w));
  }
  if (const std::string_view name = Strip(source.name, " \t\n:"); name != melody.name) {
    melody.changes.push_back("El nombre pasa a " + Quoted(melody.name, kQuoted) + ".");
  }
  const auto write = [&] {
    melody.text = melody.name + ":" + HeaderText(settings) + ":" + notes.text();
  };
  write();
  if (CheckRtttl(melody.text).verdict != Verdict::kGood) {
    settings.tempo = UsualTempo(settings.tempo);
    write();
  }
  if (const std::string header = HeaderText(settings); header != source.header) {
    melody.changes.push_back("La cabecera queda " + Quoted(header, kQuoted) + ".");
  }
  notes.Sentences(melody.changes);
  if (melody.changes.empty()) {
    melody.changes.emplace_back("Se ponen en orden comas y espacios.");
  }
  return melody;
}

// The lines of a paste, to find which of them needed no replaced characters.
class LineSet {
 public:
  LineSet(std::string_view pasted, std::string_view text) : all_(SameButLineEnds(pasted, text)) {
    ForEachPiece(pasted, "\r\n", [&](std::string_view line) { lines_.insert(Strip(line)); });
  }
  bool Holds(std::string_view text) const {
    bool all = true;
    if (all_) {
      return true;
    }
    ForEachPiece(text, "\n",
                 [&](std::string_view line) { all = all && lines_.contains(Strip(line)); });
    return all;
  }

 private:
  static bool SameButLineEnds(std::string_view pasted, std::string_view text) {
    std::string lines(pasted);
    core::ReplaceAll(lines, core::kCrLf, "\n");
    return lines == text;
  }

  bool all_;
  std::unordered_set<std::string_view> lines_;
};

bool IsFine(std::string_view text) {
  const MelodyCheck check = CheckRtttl(text);
  const std::string_view name = text.substr(0, text.find(':'));
  return check.verdict == Verdict::kGood && CleanName(name) == name &&
         text.substr(name.size()).starts_with(":d=");
}

}  // namespace

std::vector<RepairedMelody> RepairRtttl(std::string_view pasted) {
  const auto unchanged = [](std::string_view text) {
    return RepairedMelody{std::string(text.substr(0, text.find(':'))), std::string(text), {}};
  };
  if (IsFine(pasted)) {
    return {unchanged(pasted)};
  }
  const std::string text = PlainSigns(pasted);
  const LineSet given(pasted, text);
  const std::vector<Header> headers = FindHeaders(text);
  std::vector<RepairedMelody> melodies;
  for (const Source& source :
       headers.empty() ? SourcesByLine(text) : SourcesByHeader(text, headers)) {
    std::optional<RepairedMelody> melody =
        IsFine(source.whole) ? unchanged(source.whole) : Build(source);
    if (melody && !given.Holds(source.whole)) {
      melody->changes.emplace(melody->changes.begin(), kSignsChanged);
    }
    if (melody) {
      melodies.push_back(*std::move(melody));
    }
  }
  return melodies;
}

}  // namespace tonadex::phones
