#include "phones/outputs.h"

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/write.h"
#include "formats/kws.h"
#include "formats/motorola_sms.h"
#include "formats/octave_range.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "midi/mMidiLibOut.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;
using core::Icon;
using core::MsgBox;

constexpr std::string_view kKwsTitle = "Tonadex-Kyocera";
constexpr std::string_view kKwsIntroduction =
    u8"Las melodías de Kyocera, debido a su formato, no pueden ser visualizadas. A continuación "
    u8"podrás elegir dónde deseas grabar la melodía, que podrás envíar posteriormente mediante un "
    u8"cable a tu teléfono."_w;
constexpr std::string_view kKwsFailed =
    "Ocurrio un error al escribir el fichero.\r\n"
    "Por favor borra el siguiente fichero e intentalo de nuevo:\r\n";
constexpr std::string_view kKwsTooLow =
    u8"La nota más baja que el formato KWS puede tocar es la octava 4.\r\n"
    u8"Parece que al menos una de las notas está por debajo del 4.\r\n"
    u8"No se ha grabado el fichero"_w;
constexpr std::string_view kKwsWritten = "KWS Grabado a:\r\n";
constexpr std::string_view kKwsShown =
    u8"Las melodías de Kyocera no pueden ser mostradas. Para introducirla a tu móvil, necesitarás "
    u8"envíar el fichero .kws que has grabado."_w;
constexpr std::string_view kMidiFailed = "Ocurrio un error al grabar la melodia";
constexpr std::string_view kMidiWritten = "MIDI Grabado a:\r\n";
constexpr std::string_view kMidiShown =
    u8"Las melodías MIDI no pueden ser mostradas. Para introducirla a tu móvil, necesitarás envíar "
    u8"el fichero .mid que has grabado."_w;

// Choosing the octave parses the melody. The writer would parse it again and repeat its messages;
// that is skipped when the second parse would have the same result.
std::int16_t BaseOctave(Job& job) {
  const std::int16_t octave =
      formats::frmOctave{job.melody}.mGetOctaveRange(job.melody.DefaultOctave, formats::kRangeSpan);
  job.melody.SkipParse = job.melody.ParsesAlike;
  return octave;
}

Outcome Converted(Job& job, std::string result) {
  job.result = std::move(result);
  return Outcome::kConverted;
}

}  // namespace

Outcome WriteInRange(Job& job, RangeWriter writer) {
  const std::int16_t baseOctave = BaseOctave(job);
  return Converted(job, writer(job.melody, job.notices, baseOctave));
}

Outcome AsLoaded(Job& job) {
  return Converted(job, job.melody.Text);
}

Outcome AtTempo125(Job& job) {
  return Converted(job, formats::RtttlAtTempo125(job.melody));
}

Outcome SavedKws(Job& job) {
  MsgBox(kKwsIntroduction, Icon::kInformation, kKwsTitle);
  const auto file = job.ask.AskSaveFile({.DefaultExt = "",
                                         .DialogTitle = std::string(u8"Grabar Melodía kws"_w),
                                         .Filter = " (*.kws)|*.kws|"});
  if (!file) {
    return Outcome::kCancelled;
  }
  BaseOctave(job);
  if (!core::ParseOrReport(job.melody)) {
    return Outcome::kCannotConvert;
  }
  const std::optional<std::string> bytes = formats::KwsBytes(job.melody, job.notices);
  if (!bytes) {
    MsgBox(kKwsTooLow, Icon::kExclamation);
    return Outcome::kRefused;
  }
  if (!core::SkipErrors([&] { files::WriteBytes(files::PathFromText(*file), *bytes); })) {
    MsgBox(std::string(kKwsFailed) + *file, Icon::kExclamation);
    return Outcome::kDiskFailure;
  }
  MsgBox(std::string(kKwsWritten) + *file, Icon::kInformation);
  return Converted(job, std::string(kKwsShown));
}

Outcome MotorolaSms(Job& job) {
  return Converted(job, formats::MotorolaSmsText(job.melody, job.notices, 0));
}

Outcome TriumMdy(Job& job) {
  return Converted(job, formats::TriumMdyText(job.melody, job.notices));
}

Outcome SavedMidi(Job& job) {
  const auto file = job.ask.AskSaveFile(
      {.DefaultExt = "", .DialogTitle = "Grabar MIDI", .Filter = " (*.mid)|*.mid|"});
  if (!file) {
    return Outcome::kCancelled;
  }
  if (!core::ParseOrReport(job.melody)) {
    return Outcome::kCannotConvert;
  }
  job.melody.FileName = *file;
  if (midi::WriteMidiFile(job.melody) != midi::kMidiWritten) {
    MsgBox(kMidiFailed, Icon::kExclamation);
    const bool hasBytes = core::SkipErrors([&job] { midi::MidiFileBytes(job.melody); });
    return hasBytes ? Outcome::kDiskFailure : Outcome::kCannotConvert;
  }
  MsgBox(std::string(kMidiWritten) + *file, Icon::kInformation);
  return Converted(job, std::string(kMidiShown));
}

}  // namespace tonadex::phones
