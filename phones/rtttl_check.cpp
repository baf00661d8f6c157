#include "phones/rtttl_check.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/message_box.h"
#include "core/number.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/kws.h"
#include "formats/note_length.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"
#include "phones/rtttl_item.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::size_t kMostFaults = 200;
constexpr std::string_view kBlanks = " \t\r\n\xA0";

constexpr std::string_view kInvitation =
    u8"Escribe o pega una melodía en RTTTL, por ejemplo «Vals:d=4,o=5,b=120:c,8e,g,p»."_w;
constexpr std::string_view kNoSections =
    u8"Faltan los «:» que separan el nombre, la cabecera y las notas."_w;
constexpr std::string_view kNoName = u8"Falta el nombre de la melodía delante del primer «:»."_w;
constexpr std::string_view kSeveralLines =
    u8"El nombre y la cabecera tienen que ocupar una sola línea con las notas."_w;
constexpr std::string_view kThirdColon =
    u8"Sobra un «:»: las notas van detrás del segundo y lo que hay en medio no se lee."_w;
constexpr std::string_view kNoNotes = u8"Faltan las notas detrás del último «:»."_w;
constexpr std::string_view kTooLong =
    u8"La melodía es demasiado larga: caben 5001 notas y 32767 letras entre dos comas."_w;
constexpr std::string_view kUnfitTempo =
    u8"El tempo es demasiado lento o rápido para tocar y convertir la melodía."_w;

// The settings of a header, and the Spanish sentences for their faults.
struct Setting {
  char key;
  bool (*valid)(std::string_view value);
  std::string_view missing, unread, invalid;
};

bool IsDuration(std::string_view value) {
  return std::ranges::find(formats::kDurationTexts, value) != formats::kDurationTexts.end();
}

bool IsOctave(std::string_view value) {
  const double octave = core::FindNumber(value).value_or(0);
  return octave == std::floor(octave) && octave >= kLowestOctave && octave <= kHighestOctave &&
         value.size() <= 8;
}

bool IsTempo(std::string_view value) {
  return core::FindNumber(value).value_or(0) > 0;
}

constexpr std::array<Setting, 3> kSettings = {{
    {'d', IsDuration, u8"Falta la duración: «d=4» justo detrás del primer «:»."_w,
     u8"La duración no se lee: «d=» va en minúscula y sin espacios delante."_w,
     u8"La duración, detrás de «d=», tiene que ser 1, 2, 4, 8, 16 o 32."_w},
    {'o', IsOctave, u8"Falta la octava: «,o=5» en la cabecera."_w,
     u8"La octava no se lee: «o=» va en minúscula y sin espacios delante."_w,
     u8"La octava, detrás de «o=», tiene que ser de 1 a 8."_w},
    {'b', IsTempo, u8"Falta el tempo: «,b=120» en la cabecera."_w,
     u8"El tempo no se lee: «b=» va en minúscula y sin espacios delante."_w,
     u8"El tempo, detrás de «b=», tiene que ser un número mayor que 0."_w},
}};

// A setting as found in the text.
struct Found {
  core::TextRange where;
  std::string_view value;
  bool read = false;  // the parser recognises it
};

class Checker {
 public:
  explicit Checker(std::string_view text) : text_(text) {}

  MelodyCheck Run();

 private:
  void Add(core::TextRange where, std::string sentence, std::size_t note = 0) {
    if (check_.faults.size() < kMostFaults) {
      check_.faults.push_back({where, note, std::move(sentence)});
    }
  }
  void CheckSections();
  void CheckHeader(core::TextRange header);
  void CheckNotes(std::size_t start);
  void CheckItem(core::TextRange where, std::size_t number);
  void CheckConversions();
  Found Find(char key, core::TextRange header) const;
  std::string_view In(core::TextRange range) const {
    return text_.substr(range.start, range.length);
  }

  std::string_view text_;
  MelodyCheck check_;
  core::TextRange tempoAt_;
  int duration_ = 0;  // the header's; 0 when it has none
};

std::string WithoutBlanks(std::string_view text) {
  std::string rest(text);
  std::erase_if(rest, [](char c) { return kBlanks.find(c) != kBlanks.npos; });
  return rest;
}

// Calls `use` with the range of every item between commas, including an empty last one.
template <typename Use>
void ForEachItem(std::string_view text, core::TextRange range, Use use) {
  const std::size_t end = range.start + range.length;
  for (std::size_t start = range.start; start <= end;) {
    const std::size_t comma = std::min(text.find(',', start), end);
    use(core::TextRange{start, comma - start});
    start = comma + 1;
  }
}

// The last item that the parser recognises as the setting, else the last one that a person would.
Found Checker::Find(char key, core::TextRange header) const {
  Found found;
  ForEachItem(text_, header, [&](core::TextRange where) {
    const std::string_view item = In(where);
    const std::string clean = core::ToLower(WithoutBlanks(item));
    const bool read = item.size() > 1 && item[0] == key && item[1] == '=';
    const bool meant = clean.size() > 1 && clean[0] == key && clean[1] == '=';
    if (read || (meant && !found.read)) {
      found = {where, item.substr(item.find('=') + 1), read};
    }
  });
  return found;
}

void Checker::CheckHeader(core::TextRange header) {
  for (const Setting& setting : kSettings) {
    const Found found = Find(setting.key, header);
    if (found.value.empty()) {
      Add({header.start, 0}, std::string(setting.missing));
    } else if (!found.read) {
      Add(found.where, std::string(setting.unread));
    } else if (!setting.valid(found.value)) {
      Add(found.where, std::string(setting.invalid));
    } else if (setting.key == 'd') {
      duration_ = core::ToInt16(core::ToNumber(found.value));
    } else if (setting.key == 'b') {
      check_.tempo = core::ToNumber(found.value);
      tempoAt_ = found.where;
    }
  }
}

void Checker::CheckItem(core::TextRange where, std::size_t number) {
  const std::string item = CleanItem(In(where));
  if (const std::string fault = ItemFault(item); !fault.empty()) {
    // An empty item cannot be highlighted; the comma before it can.
    Add(where.length == 0 && number > 1 ? core::TextRange{where.start - 1, 1} : where,
        "Nota " + std::to_string(number) + ": " + fault + ".", number);
    return;
  }
  const MeantNote note = NotesMeant(item).front();
  (note.letter == 'p' ? check_.pauses : check_.notes) += 1;
  const int duration = note.duration.value_or(duration_);
  if (duration > 0 && check_.tempo > 0) {
    check_.seconds += formats::ExactNoteLengthMs(duration, check_.tempo, note.dotted) / 1000;
  }
}

void Checker::CheckNotes(std::size_t start) {
  core::TextRange section{start, text_.size() - start};
  if (section.length > 0 && text_.ends_with(',')) {
    --section.length;  // the parser accepts one comma at the end
  }
  if (CleanItem(In(section)).empty()) {
    Add(section, std::string(kNoNotes));
    return;
  }
  std::size_t number = 0;
  ForEachItem(text_, section, [&](core::TextRange where) { CheckItem(where, ++number); });
}

void Checker::CheckSections() {
  const std::size_t first = text_.find(':');
  const std::size_t second = first == text_.npos ? first : text_.find(':', first + 1);
  if (second == text_.npos) {
    Add({text_.size(), 0}, std::string(kNoSections));
    return;
  }
  const std::size_t last = text_.rfind(':');
  check_.title = core::Trim(text_.substr(0, first));
  if (check_.title.empty()) {
    Add({0, first}, std::string(kNoName));
  }
  if (const std::size_t at = text_.find_first_of(core::kCrLf); at < last) {
    Add({at, 1}, std::string(kSeveralLines));
  }
  CheckHeader({first + 1, second - first - 1});
  if (last != second) {
    Add({second, last - second + 1}, std::string(kThirdColon));
  }
  CheckNotes(last + 1);
}

// Whether a text without faults can be played and converted by every phone's writer.
bool Converts(std::string_view text) {
  core::RecordingMessages unread;
  const core::ScopedMessageSink sink(unread);
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  const auto fresh = [&] { melody.Text = text; };
  NoSaveFile noFile;
  const Format* before = nullptr;
  for (const CatalogueRow& row : CatalogueRows()) {
    const Format* format = FindFormat(row.model);
    if (format == before || format->kind == Kind::kFile) {
      continue;
    }
    before = format;
    fresh();
    if (ConvertSelectedMelody(melody, row.model, "x", noFile).outcome != Outcome::kConverted) {
      return false;
    }
  }
  fresh();
  std::string notices;
  return core::ParseRTTTL(melody) == core::kParsed && core::SkipErrors([&] {
           midi::MidiFileBytes(melody);
           formats::KwsBytes(melody, notices);
         });
}

void Checker::CheckConversions() {
  core::RTTTLMelody melody;
  melody.Text = text_;
  const bool usual = check_.tempo >= kSlowestTempo && check_.tempo <= kFastestTempo;
  if (core::ParseRTTTL(melody) != core::kParsed) {
    Add({text_.size(), 0}, std::string(kTooLong));
  } else if (!usual && !Converts(text_)) {  // at a usual tempo no length overflows
    Add(tempoAt_, std::string(kUnfitTempo));
  }
}

std::string CountsOf(const MelodyCheck& check) {
  const auto seconds = static_cast<std::size_t>(std::lround(check.seconds));
  return core::Counted(check.notes + check.pauses, "nota", "notas y pausas") + ", " +
         core::Counted(seconds, "segundo", "segundos");
}

MelodyCheck Checker::Run() {
  if (text_.find_first_not_of(kBlanks) == text_.npos) {
    check_.sentence = kInvitation;
    return std::move(check_);
  }
  CheckSections();
  if (check_.faults.empty()) {
    CheckConversions();
  }
  const bool good = check_.faults.empty();
  check_.verdict = good ? Verdict::kGood : Verdict::kBad;
  check_.sentence = good ? CountsOf(check_) : check_.faults.front().sentence;
  return std::move(check_);
}

}  // namespace

MelodyCheck CheckRtttl(std::string_view text) {
  return Checker(text).Run();
}

}  // namespace tonadex::phones
