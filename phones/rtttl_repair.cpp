#include "phones/rtttl_repair.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_item.h"
#include "phones/rtttl_paste.h"

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

std::string Becomes(std::string_view from, std::string_view to) {
  return Quoted(from, kQuoted) + " pasa a " + Quoted(to, kQuoted);
}

// Counts the changes of the notes by kind, so that each kind is listed once.
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
  raw = core::Trim(raw, kEnds);
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
  name = core::Trim(std::string_view(name).substr(0, kLongestName), kEnds);
  return name.empty() ? std::string(kNamelessMelody) : name;
}

// The last non-empty value of a setting, "" when there is none.
std::string_view ValueOf(const PastedMelody& source, char key) {
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
  value = value.substr(0, value.find_first_not_of("0123456789."));
  return value.empty() ? std::nullopt : core::FindNumber(value);
}

struct Settings {
  int duration = 4, octave = 6;  // defaults of RTTTL
  std::string tempo = "63";
  std::string others;  // extensions of phones: ",s=n"
};

Settings SettingsOf(const PastedMelody& source, std::vector<std::string>& changes) {
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
    settings.tempo = tempo.substr(0, tempo.find_first_not_of("0123456789."));
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

// Replaces by blanks the dashes that only separate notes ("8c - 8d"). One after a duration ("8-"),
// or alone between commas, is a pause.
std::string WithoutSeparatingDashes(std::string_view piece) {
  std::string text(piece);
  for (std::size_t at = piece.find('-'); at != piece.npos; at = piece.find('-', at + 1)) {
    const std::size_t start = piece.substr(0, at).find_last_not_of("0123456789.") + 1;
    const bool pause = start < at && (start == 0 || !IsAlphanumeric(piece[start - 1]));
    text[at] = pause ? '-' : ' ';
  }
  return core::Trim(piece, kBlanks) == "-" ? "-" : text;
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
    core::ForEachPiece(WithoutSeparatingDashes(piece), kBlanks, [&](std::string_view word) {
      if (word.empty()) {
        return;
      }
      empty = false;
      if (IsNote(item) && (IsNote(core::Trim(word, "\"'")) || BeginsNote(item, word))) {
        AddItem(std::exchange(item, {}));
        ++parted_;
      } else if (IsNote(item) && NotesMeant(CleanItem(item + std::string(word))).empty()) {
        AddItem(std::exchange(item, {}));  // words behind the last note
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

void NoteWriter::Sentences(std::vector<std::string>& changes) const {
  if (parted_ > 0) {
    changes.push_back((parted_ == 1 ? "Se pone " : "Se ponen ") +
                      core::Counted(parted_, "coma entre notas.", "comas entre notas."));
  }
  if (gaps_ > 0) {
    changes.push_back((gaps_ == 1 ? "Se quita " : "Se quitan ") +
                      core::Counted(gaps_, "hueco entre comas.", "huecos entre comas."));
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

std::optional<RepairedMelody> Build(const PastedMelody& source) {
  RepairedMelody melody{CleanName(source.name), {}, {}};
  Settings settings = SettingsOf(source, melody.changes);
  NoteWriter notes(settings.octave);
  std::string joined;
  for (const std::string_view line : source.lines) {
    joined.append(joined.empty() ? "" : "\n").append(line);
  }
  core::ForEachPiece(joined, kSeparators, [&](std::string_view piece) { notes.AddPiece(piece); });
  if (notes.count() == 0) {
    return std::nullopt;
  }
  std::size_t lines = 0;
  core::ForEachPiece(source.whole, "\n", [&](std::string_view line) {
    lines += core::Trim(line, kBlanks).empty() ? 0u : 1u;
  });
  if (lines > 1) {
    melody.changes.push_back("Se unen " + std::to_string(lines) + std::string(u8" líneas."_w));
  }
  if (const std::string_view name = core::Trim(source.name, " \t\n:"); name != melody.name) {
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
    core::ForEachPiece(pasted, "\r\n",
                       [&](std::string_view line) { lines_.insert(core::Trim(line, kBlanks)); });
  }
  bool Holds(std::string_view text) const {
    bool all = true;
    if (all_) {
      return true;
    }
    core::ForEachPiece(text, "\n", [&](std::string_view line) {
      all = all && lines_.contains(core::Trim(line, kBlanks));
    });
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
  std::vector<RepairedMelody> melodies;
  for (const PastedMelody& source : FindMelodies(text)) {
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
