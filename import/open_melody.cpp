#include "import/open_melody.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/melody_file.h"
#include "core/rtttl_writer.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/readers.h"
#include "formats/smart_messaging.h"
#include "midi/smf_melody.h"
#include "nokia3210/cnokia.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_repair.h"

namespace tonadex::import {
namespace {

using namespace core::literals;
using formats::Reading;
using formats::RefuseFile;

constexpr int kLowestOctave = 4;                             // the composer's octave 1 is RTTTL's 5
constexpr std::string_view kNoteText = "[CNokia.Convert] ";  // before each entry of its log

// Reads composer notation, with or without a tempo before it.
Reading ReadComposer(std::string_view text) {
  nokia3210::CNokia converter;
  converter.SetOriginalText(text);
  converter.Convert();
  std::string_view faults = converter.ConversionErrors();
  if (!faults.empty()) {
    faults = faults.substr(0, faults.find('\r'));
    faults.remove_prefix(faults.starts_with(kNoteText) ? kNoteText.size() : 0);
    RefuseFile({faults});
  }
  if (converter.NoteCount() > formats::kMostNotes) {
    formats::RefuseTooLong();
  }
  Reading reading;
  formats::Scanner in(text);
  const bool hasTempo = in.TakeWord("tempo=");
  const std::optional<int> tempo = in.Number();
  reading.SetTempo(tempo && (hasTempo || *tempo > 99) ? std::to_string(*tempo) : "",
                   formats::kAssumedTempo);
  for (const nokia3210::cNote& note : converter.Notes()) {
    core::PlainNote plain = formats::kPause;
    if (!note.IsPause()) {
      plain = formats::Pitch(*formats::SemitoneOfLetter(note.Letter) + (note.Sharp ? 1 : 0),
                             kLowestOctave + (note.Octave - '0'), reading);
    }
    plain.length = note.Duration;
    plain.dotted = note.Dotted;
    reading.melody.notes.push_back(plain);
  }
  return reading;
}

// Converts the voice that is probably the tune, whole and not transposed.
Reading ReadMidi(std::string_view bytes) {
  const midi::SmfFile file = midi::ReadSmf(bytes);
  const std::vector<midi::SmfVoice> voices = midi::VoicesOf(file);
  const auto tune = std::ranges::find(voices, true, &midi::SmfVoice::tune);
  if (tune == voices.end()) {
    RefuseFile({midi::WhyNoTune(voices)});
  }
  midi::SmfMelody melody = midi::MelodyOf(file, *tune, {});
  Reading reading = {std::move(melody.melody), std::move(melody.remarks)};
  if (voices.size() > 1) {
    reading.Remark(core::Joined({"De ", std::to_string(voices.size()),
                                 " voces se ha tomado esta: ", midi::VoiceText(*tune), "."}));
  }
  return reading;
}

struct Maker {
  std::string_view name;
  Reading (*read)(std::string_view);
};
constexpr auto kMakers = std::to_array<Maker>({
    {"Nokia", formats::ReadNokiaKeys},
    {"Samsung de tipo 1", formats::ReadSamsungKeys1},
    {"Samsung de tipo 2", formats::ReadSamsungKeys2},
    {"Motorola", formats::ReadMotorolaKeys},
});

// Refuses key presses that different makes read as different melodies.
Reading ReadKeys(std::string_view text) {
  std::optional<Reading> found;
  std::string makers, fault;
  for (const Maker& maker : kMakers) {
    try {
      Reading reading = maker.read(text);
      if (found && found->melody.notes == reading.melody.notes) {
        continue;
      }
      makers += (makers.empty() ? "" : " o ") + std::string(maker.name);
      found = std::move(reading);
    } catch (const core::RunTimeError& error) {
      fault = fault.empty() ? error.what() : fault;
    }
  }
  if (!found) {
    RefuseFile({fault});
  }
  if (core::Contains(makers, " o ")) {
    RefuseFile({u8"no se sabe de qué móvil son las teclas: pueden ser de "_w, makers});
  }
  found->Remark(core::Joined({"Las teclas son de ", makers, "."}));
  return *found;
}

struct Reader {
  FileKind kind;
  Reading (*read)(std::string_view);
  bool ofBytes = false;
};
constexpr auto kReaders = std::to_array<Reader>({
    {FileKind::kComposer, ReadComposer},
    {FileKind::kEMelody, formats::ReadEMelody},
    {FileKind::kIMelody, formats::ReadIMelody},
    {FileKind::kIMelodyKeys, formats::ReadIMelodyKeys},
    {FileKind::kMotorolaSms, formats::ReadMotorolaSms},
    {FileKind::kTriumMdy, formats::ReadTriumMdy},
    {FileKind::kKws, formats::ReadKws, true},
    {FileKind::kOtt, formats::ReadOtt, true},
    {FileKind::kSckl, formats::ReadSckl},
    {FileKind::kKeys, ReadKeys},
    {FileKind::kMidi, ReadMidi, true},
});

// The melody's name: the file's name without its extension.
std::string NameOf(std::string_view fileName) {
  const std::string name(core::Trim(fileName.substr(0, fileName.rfind('.'))));
  return name.empty() ? "melodia" : name;
}

OpenedMelody Read(const Reader& reader, std::string_view bytes, std::string_view fileName) {
  Reading reading;
  try {
    reading = reader.read(reader.ofBytes ? bytes : core::FromOutside(bytes));
  } catch (const core::RunTimeError& error) {
    RefuseFile({KindName(reader.kind), ", ", error.what()});
  }
  if (std::ranges::all_of(reading.melody.notes,
                          [](const core::PlainNote& note) { return note.semitone < 0; })) {
    RefuseFile({KindName(reader.kind), ", no tiene ninguna nota"});
  }
  if (core::Trim(reading.melody.name).empty()) {
    reading.melody.name = NameOf(fileName);
  }
  return {core::RtttlText(reading.melody), std::move(reading.remarks)};
}

}  // namespace

OpenedFile OpenMelodyFile(std::string_view bytes, std::string_view fileName) {
  if (bytes.size() > kMostBytes) {
    RefuseFile({"pasa de 16 MiB"});
  }
  OpenedFile opened = {RecogniseFile(bytes), {}};
  const auto reader = std::ranges::find(kReaders, opened.kind, &Reader::kind);
  if (reader != kReaders.end()) {
    opened.melodies.push_back(Read(*reader, bytes, fileName));
  } else if (opened.kind == FileKind::kRtttl) {
    // Stored files escape "#"; to undo that is no repair.
    const std::string text = core::UndoSharpEscape(phones::FromPasted(bytes));
    for (phones::RepairedMelody& melody : phones::RepairRtttl(text)) {
      opened.melodies.push_back({std::move(melody.text), std::move(melody.changes)});
    }
  }
  if (opened.melodies.empty()) {
    RefuseFile({u8"no se reconoce ninguna melodía"_w});
  }
  return opened;
}

}  // namespace tonadex::import
