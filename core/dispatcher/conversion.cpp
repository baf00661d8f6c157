#include "core/dispatcher/conversion.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/write.h"
#include "formats/ems.h"
#include "formats/kws.h"
#include "formats/motorola_keys.h"
#include "formats/motorola_sms.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/samsung_keys.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "midi/mMidiLibOut.h"
#include "nokia3210/octave_range.h"
#include "platform/message_box.h"

namespace tonadex::core {
namespace {

using platform::Icon;
using platform::MsgBox;

constexpr std::string_view kNoModel =
    u8"Selecciona el modelo de tu móvil en el apartado de opciones para poder usar el programa"_w;
constexpr std::string_view kCannotConvert = u8"No se puede convertir la melodía: "_w;

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

// One conversion under way.
struct Job {
  RTTTLMelody& melody;
  SaveFileQuestion& ask;
  std::string notices;  // of the writer
};

// What to show as the result; none to leave the page as it was.
using Produce = std::optional<std::string> (*)(Job& job);

std::int16_t BaseOctave(Job& job) {
  return nokia3210::frmOctave{job.melody}.mGetOctaveRange(job.melody.DefaultOctave,
                                                          nokia3210::kRangeSpan);
}

// The writers of phones with an octave range, which is computed just before.
template <std::string (*kWriter)(RTTTLMelody&, std::string&, std::int16_t)>
std::optional<std::string> InRange(Job& job) {
  const std::int16_t baseOctave = BaseOctave(job);
  return kWriter(job.melody, job.notices, baseOctave);
}

std::optional<std::string> AsLoaded(Job& job) {
  return job.melody.Text;
}

std::optional<std::string> AtTempo125(Job& job) {
  return formats::RtttlAtTempo125(job.melody);
}

std::optional<std::string> MotorolaSms(Job& job) {
  return formats::MotorolaSmsText(job.melody, job.notices, 0);
}

std::optional<std::string> Mdy(Job& job) {
  return formats::TriumMdyText(job.melody, job.notices);
}

std::optional<std::string> SavedKws(Job& job) {
  MsgBox(kKwsIntroduction, Icon::kInformation, kKwsTitle);
  const auto file = job.ask.AskSaveFile({.DefaultExt = "",
                                         .DialogTitle = std::string(u8"Grabar Melodía kws"_w),
                                         .Filter = " (*.kws)|*.kws|"});
  if (!file) {
    return std::nullopt;
  }
  BaseOctave(job);
  if (!ParseOrReport(job.melody)) {
    return std::nullopt;
  }
  const std::optional<std::string> bytes = formats::KwsBytes(job.melody, job.notices);
  if (!bytes) {
    MsgBox(kKwsTooLow, Icon::kExclamation);
    return std::nullopt;
  }
  if (!SkipErrors([&] { files::WriteBytes(files::PathFromText(*file), *bytes); })) {
    MsgBox(std::string(kKwsFailed) + *file, Icon::kExclamation);
    return std::nullopt;
  }
  MsgBox(std::string(kKwsWritten) + *file, Icon::kInformation);
  return std::string(kKwsShown);
}

std::optional<std::string> SavedMidi(Job& job) {
  const auto file = job.ask.AskSaveFile(
      {.DefaultExt = "", .DialogTitle = "Grabar MIDI", .Filter = " (*.mid)|*.mid|"});
  if (!file || !ParseOrReport(job.melody)) {
    return std::nullopt;
  }
  job.melody.FileName = *file;
  if (midi::WriteMidiFile(job.melody) != midi::kMidiWritten) {
    MsgBox(kMidiFailed, Icon::kExclamation);
    return std::nullopt;
  }
  MsgBox(std::string(kMidiWritten) + *file, Icon::kInformation);
  return std::string(kMidiShown);
}

struct Output {
  Produce produce;
  std::string_view titleSuffix;
  std::string_view instruction;
  bool savesFile = false;
};

constexpr std::string_view kSendRtttl =
    u8"Este es el fichero RTTTL que puedes enviar a tu Nokia mediante cable o SMS."_w;
constexpr std::string_view kSendFile = u8"Utiliza un cable para envíar el fichero a tu móvil."_w;

constexpr Output kPlainRtttl = {AsLoaded, " para Nokia en formato RTTTL.", kSendRtttl};
constexpr Output kTempo125 = {AtTempo125, " para Nokia en formato RTTTL con tempo 125.",
                              kSendRtttl};
constexpr Output kComposer = {
    InRange<formats::NokiaComposerText>, " para Nokia en formato de compositor.",
    u8"Esto es lo que debería aparecer en el compositor de tu Nokia al introducir correctamente "
    u8"esta melodía. Recuerda que no son las teclas que tienes que pulsar, sino lo que aparece al "
    u8"pulsarlas."_w};
constexpr Output kNokiaKeys = {
    InRange<formats::NokiaKeyPresses>, " para Nokia para introducir mediante pulsaciones.",
    u8"En el compositor de tu Nokia debes pulsar las teclas que se indican para poder introducir "
    u8"la melodía en tu móvil"_w};
constexpr Output kEMelody = {
    InRange<formats::EMelodyText>, " en formato Emelody.",
    u8"Este es el formato de las melodías Emelody. Puedes introducirlas mediante cable, o "
    u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que teclas "
    u8"pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en Ericsson."_w};
constexpr Output kIMelody = {
    InRange<formats::IMelodyText>, " formato Imelody.",
    u8"Este es el formato de las melodías Imelody. Puedes introducirlas mediante cable, o "
    u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que teclas "
    u8"pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en Ericsson."_w};
constexpr Output kKws = {SavedKws, " para Kyocera (No puede ser mostrada)", kSendFile, true};
constexpr Output kSamsung1 = {
    InRange<formats::SamsungKeyPresses1>, " para Samsung en formato de pulsaciones 1.",
    "Para introducir la melodia, ves al compositor de tu Samsung y pulsa las teclas indicadas"};
constexpr Output kSamsung2 = {
    InRange<formats::SamsungKeyPresses2>, " para Samsung para introducir mediante pulsaciones 2.",
    u8"Para introducir esta melodía en el compositor de tu Samsung, teclea las teclas "
    u8"indicadas."_w};
constexpr Output kMdy = {
    Mdy, " para Mitsubishi trium en formato MDY.",
    u8"Este es el contenido del fichero mdy que debes enviar a tu Mitsubishi Trium mediante un "
    u8"cable para introducir así la melodía.La mayoría de los móviles Trium carece de compositor y "
    u8"de posibilidades de recibir melodías mediante SMS, por lo que ésta es la única forma de "
    u8"cambiar las melodías por defecto."_w};
constexpr Output kMidi = {SavedMidi, " para Siemens en formato midi (No puede ser mostrada)",
                          kSendFile, true};
constexpr Output kMotorolaSms = {
    MotorolaSms, " para Motorola en formato SMS",
    u8"Envia esta melodia mandando el texto indicado a tu móvil mediante un SMS, o mediante un "
    u8"cable de datos. "_w};
constexpr Output kMotorolaKeys = {
    InRange<formats::MotorolaKeyPresses>, " para Motorola en formato pulsaciones",
    "Introduce esta melodia en tu movil pulsando las teclas que se indican. "};
constexpr Output kMotorolaIMelody = {InRange<formats::MotorolaIMelodyKeys>,
                                     " para Motorola en formato Imelody",
                                     "Introduce esta melodia mediante cable en tu motorola."};

struct ModelOutput {
  std::string_view model;
  const Output* output;
};

// Every model text of the catalogue; compared exactly.
constexpr std::array kModelOutputs = std::to_array<ModelOutput>({
    {" RTTTL (cable)", &kPlainRtttl},
    {" RTTTL (cable-Tempo125)", &kTempo125},
    {" Compositor", &kComposer},
    {"3210,3310,3330,3390,8250", &kComposer},
    {" Pulsaciones", &kNokiaKeys},
    {" EMelody", &kEMelody},
    {"R520,R600", &kEMelody},
    {"T20e,T29,T39,T66,T68m", &kEMelody},
    {" IMelody", &kIMelody},
    {"T65,T68u,T68i,T300", &kIMelody},
    {"2119,2135,2255,2235,3035", &kKws},
    {" KWS", &kKws},
    {" Pulsaciones tipo 1", &kSamsung1},
    {"R220,R225,N105,N400", &kSamsung1},
    {"A200,A288,Q300", &kSamsung1},
    {"S100,T100,V100", &kSamsung1},
    {" Pulsaciones tipo 2", &kSamsung2},
    {"A300,A308,A400,A408", &kSamsung2},
    {"Q100,Q105,Q200", &kSamsung2},
    {"MDY (cable)", &kMdy},
    {"MIDI (cable)", &kMidi},
    {" Motorola por SMS", &kMotorolaSms},
    {"v100,v50,T193,T191", &kMotorolaSms},
    {" Motorola Pulsaciones Tipo 1", &kMotorolaKeys},
    {"p280,v60,v66,v120c", &kMotorolaKeys},
    {" Motorola iMelody", &kMotorolaIMelody},
    {"120e,120t,T720", &kMotorolaIMelody},
    {"C300,C331,C332,C333", &kMotorolaIMelody},
    {"v60i, v60t, v120t", &kMotorolaIMelody},
});

const Output* FindOutput(std::string_view model) {
  const auto found = std::ranges::find(kModelOutputs, model, &ModelOutput::model);
  return found == kModelOutputs.end() ? nullptr : found->output;
}

// The tempo in the melody's own header, "" when there is none. The melody itself stays as it is.
std::string HeaderTempo(std::string_view text) {
  RTTTLMelody copy;
  copy.Text = text;
  ParseRTTTL(copy);
  return copy.Beats;
}

ConversionPage Page(const Output& output, std::string_view row, std::string result,
                    const Job& job) {
  ConversionPage page;
  page.title.append("Melodia ").append(row).append(output.titleSuffix);
  page.result = std::move(result);
  page.notices = output.instruction;
  if (&output == &kPlainRtttl) {  // no writer, so no findings and nothing parsed yet
    page.tempo = HeaderTempo(job.melody.Text);
  } else {
    page.notices.append(kCrLf).append(job.notices);
    page.tempo = job.melody.Beats;
  }
  return page;
}

}  // namespace

std::optional<ConversionPage> ConvertSelectedMelody(RTTTLMelody& melody, std::string_view model,
                                                    std::string_view row, SaveFileQuestion& ask) {
  const Output* output = FindOutput(model);
  if (output == nullptr) {
    return ConversionPage{.title = "", .result = "", .notices = std::string(kNoModel), .tempo = ""};
  }
  Job job{melody, ask, ""};
  try {
    std::optional<std::string> result = output->produce(job);
    if (!result) {
      return std::nullopt;
    }
    return Page(*output, row, *std::move(result), job);
  } catch (const RunTimeError& error) {
    MsgBox(std::string(kCannotConvert) + error.what(), Icon::kExclamation);
    return std::nullopt;
  }
}

bool SavesFile(std::string_view model) {
  const Output* output = FindOutput(model);
  return output != nullptr && output->savesFile;
}

}  // namespace tonadex::core
