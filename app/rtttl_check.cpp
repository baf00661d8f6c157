#include "app/rtttl_check.h"

#include <array>

#include "core/number.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/pitch.h"
#include "net/upload.h"
#include "nokia3210/cnokia.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kBlanks = " \t\r\n";

constexpr std::string_view kInvitation =
    u8"Escribe o pega una melodía en RTTTL, por ejemplo «Vals:d=4,o=5,b=120:c,8e,g,p»."_w;
constexpr std::string_view kNoSections =
    u8"Faltan los «:» que separan el nombre, la cabecera y las notas."_w;
constexpr std::string_view kNoName = u8"Falta el nombre de la melodía delante del primer «:»."_w;
constexpr std::string_view kNoTempo = u8"El tempo, detrás de «b=», tiene que ser un número."_w;
constexpr std::string_view kBadCharacters =
    u8"No se podrá subir: no puede contener «/», «\\», «?», «'» ni «&»."_w;
constexpr std::string_view kSeveralLines =
    u8"La melodía tiene que ocupar una sola línea, sin saltos de línea."_w;
constexpr std::string_view kStopInName =
    u8"No se podrá subir: el nombre no puede contener puntos."_w;

// What an RTTTL header holds, and how to name it.
struct Setting {
  std::string_view part, sentence;
};
constexpr std::array<Setting, 3> kSettings = {{
    {":d=", u8"Falta la duración: «d=4» justo detrás del primer «:»."_w},
    {",o=", u8"Falta la octava: «,o=5» en la cabecera."_w},
    {",b=", u8"Falta el tempo: «,b=120» en la cabecera."_w},
}};

std::string Quoted(std::string_view text) {
  return std::string(u8"«"_w) + std::string(text) + std::string(u8"»"_w);
}

// What is wrong with a note, "" when nothing is.
std::string NoteFault(const core::RTTTLNote& note) {
  bool knownDuration = false;
  core::SkipErrors(
      [&] { knownDuration = formats::IsPhoneDuration(core::ToNumber(note.Duration)); });
  if (!knownDuration) {
    return std::string(u8"la duración "_w) + Quoted(note.Duration) +
           std::string(u8" no es 1, 2, 4, 8, 16 ni 32"_w);
  }
  if (!core::IsPause(note) && !formats::Semitone(note.Note)) {
    return Quoted(note.Note) + " no es ninguna nota";
  }
  return {};
}

// What keeps the notes from being played, "" when nothing does.
std::string NotesFault(const core::RTTTLMelody& melody, std::int16_t code) {
  std::size_t number = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    ++number;
    if (note.Note.empty()) {
      continue;  // its number is the parser's code
    }
    if (const std::string fault = NoteFault(note); !fault.empty()) {
      return "Nota " + std::to_string(number) + ": " + fault + ".";
    }
  }
  return code == core::kParsed ? std::string()
                               : "Nota " + std::to_string(code) + ": no se entiende.";
}

std::string HeaderFault(std::string_view text, const core::RTTTLMelody& melody) {
  for (const Setting& setting : kSettings) {
    if (!core::Contains(text, setting.part)) {
      return std::string(setting.sentence);
    }
  }
  double tempo = 0;
  core::SkipErrors([&] { tempo = formats::ToTempo(melody.Beats); });
  return std::string(tempo > 0 ? std::string_view() : kNoTempo);
}

std::string UploadFault(std::string_view text, const core::RTTTLMelody& melody) {
  if (!net::IsUploadable(text, net::UploadKey(melody.Name, text))) {
    return std::string(kBadCharacters);
  }
  return std::string(net::HasStopInName(text) ? kStopInName : std::string_view());
}

// The first thing that is wrong, "" when nothing is.
std::string Fault(std::string_view text, core::RTTTLMelody& melody) {
  if (text.find_first_of("\r\n") != std::string_view::npos) {
    return std::string(kSeveralLines);
  }
  melody.Text = text;
  const std::int16_t code = core::ParseRTTTL(melody);
  if (code == core::kSectionsError) {
    return std::string(core::Contains(text, ":") ? kNoName : kNoSections);
  }
  if (code == core::kParseFailure) {
    return std::string(kNoSections);
  }
  for (const std::string& fault :
       {HeaderFault(text, melody), NotesFault(melody, code), UploadFault(text, melody)}) {
    if (!fault.empty()) {
      return fault;
    }
  }
  return {};
}

// The first entry of the converter's log without its source.
std::string FirstError(std::string_view log) {
  log = log.substr(0, log.find('\r'));
  const std::size_t source = log.find("] ");
  return std::string(source == std::string_view::npos ? log : log.substr(source + 2));
}

}  // namespace

Check RtttlCheck(std::string_view text) {
  if (text.find_first_not_of(kBlanks) == std::string_view::npos) {
    return {Verdict::kNothing, std::string(kInvitation)};
  }
  core::RTTTLMelody melody;
  if (const std::string fault = Fault(text, melody); !fault.empty()) {
    return {Verdict::kBad, fault};
  }
  const std::size_t count = melody.Notes.size();
  return {Verdict::kGood, std::to_string(count) +
                              std::string(count == 1 ? " nota" : " notas y pausas") +
                              ": se puede escuchar y subir."};
}

Check ComposerCheck(std::string_view composerText) {
  nokia3210::CNokia converter;
  converter.SetOriginalText(composerText);
  converter.Convert();
  const std::size_t count = converter.NoteCount();
  const std::string limit = std::to_string(phones::kComposerNotes);
  if (!core::Trim(converter.ConversionErrors()).empty()) {
    return {Verdict::kBad, FirstError(converter.ConversionErrors()) + "."};
  }
  if (count > phones::kComposerNotes) {
    return {Verdict::kBad,
            std::to_string(count) + std::string(u8" notas: el móvil admite "_w) + limit + "."};
  }
  return {count == 0 ? Verdict::kNothing : Verdict::kGood,
          std::to_string(count) + " de " + limit + " notas"};
}

}  // namespace tonadex::app
