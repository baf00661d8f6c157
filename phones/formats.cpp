#include "phones/formats.h"

#include <algorithm>
#include <array>

#include "core/windows1252.h"
#include "formats/ems.h"
#include "formats/motorola_keys.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/samsung_keys.h"
#include "phones/catalogue.h"
#include "phones/outputs.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::string_view kSendRtttl =
    u8"Este es el fichero RTTTL que puedes enviar a tu Nokia mediante cable o SMS."_w;
constexpr std::string_view kSendFile = u8"Utiliza un cable para envíar el fichero a tu móvil."_w;

constexpr Octaves kThreeAround = {OctaveRange::kAround, 0, 3};

// In the order of the catalogue's codes. Labels are as the sheets have always had them, capital
// letters and missing full stops included.
constexpr auto kFormats = std::to_array<Format>({
    {.code = "NRTLNOMOD",
     .output = AsLoaded,
     .titleSuffix = " para Nokia en formato RTTTL.",
     .instruction = kSendRtttl,
     .gets = u8"La melodía en RTTTL tal como está"_w,
     .limits = ", para enviar por cable o SMS",
     .extension = "rtttl",
     .sheetLabel = "Nokia>RTTTL."},
    {.code = "NRTL",
     .output = AtTempo125,
     .titleSuffix = " para Nokia en formato RTTTL con tempo 125.",
     .instruction = kSendRtttl,
     .gets = u8"La melodía en RTTTL pasada a tempo 125"_w,
     .limits = ", para enviar por cable o SMS",
     .extension = "rtttl",
     .sheetLabel = "Nokia>RTTTL, tempo 125."},
    {.code = "NCOM",
     .output = InRange<formats::NokiaComposerText>,
     .titleSuffix = " para Nokia en formato de compositor.",
     .instruction = u8"Esto es lo que debería aparecer en el compositor de tu Nokia al introducir "
                    u8"correctamente esta melodía. Recuerda que no son las teclas que tienes que "
                    u8"pulsar, sino lo que aparece al pulsarlas."_w,
     .gets = "Lo que aparece en el compositor",
     .extension = "txt",
     .sheetLabel = "Nokia>Compositor.",
     .octaves = kThreeAround,
     .noteLimit = kComposerNotes},
    {.code = "NKEY",
     .output = InRange<formats::NokiaKeyPresses>,
     .titleSuffix = " para Nokia para introducir mediante pulsaciones.",
     .instruction = u8"En el compositor de tu Nokia debes pulsar las teclas que se indican para "
                    u8"poder introducir la melodía en tu móvil"_w,
     .gets = "Pulsaciones para el compositor",
     .extension = "txt",
     .sheetLabel = "Nokia>Pulsaciones.",
     .octaves = kThreeAround,
     .noteLimit = kComposerNotes,
     .keyPresses = true},
    {.code = "EMSE",
     .output = InRange<formats::EMelodyText>,
     .titleSuffix = " en formato Emelody.",
     .instruction =
         u8"Este es el formato de las melodías Emelody. Puedes introducirlas mediante cable, o "
         u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que "
         u8"teclas pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en "
         u8"Ericsson."_w,
     .gets = "Texto EMelody, para introducir por cable o a mano",
     .extension = "emy",
     .sheetLabel = "Emelody",
     .octaves = {OctaveRange::kAround, 0, 2}},
    {.code = "EMSI",
     .output = InRange<formats::IMelodyText>,
     .titleSuffix = " formato Imelody.",
     .instruction =
         u8"Este es el formato de las melodías Imelody. Puedes introducirlas mediante cable, o "
         u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que "
         u8"teclas pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en "
         u8"Ericsson."_w,
     .gets = "Texto iMelody, para introducir por cable o a mano",
     .extension = "imy",
     .sheetLabel = "Imelody.",
     .octaves = {OctaveRange::kAround, 0, 4}},
    {.code = "KKWS",
     .output = SavedKws,
     .titleSuffix = " para Kyocera (No puede ser mostrada)",
     .instruction = kSendFile,
     .gets = "Un fichero KWS para enviar por cable",
     .extension = "kws",
     .sheetLabel = "KWS.",
     .octaves = {OctaveRange::kFrom, 4, 0},
     .savesFile = true},
    {.code = "SAM1",
     .output = InRange<formats::SamsungKeyPresses1>,
     .titleSuffix = " para Samsung en formato de pulsaciones 1.",
     .instruction = "Para introducir la melodia, ves al compositor de tu Samsung y pulsa las "
                    "teclas indicadas",
     .gets = "Pulsaciones de tipo 1 para el compositor",
     .extension = "txt",
     .sheetLabel = "Samsung>Pulsaciones tipo 1.",
     .octaves = kThreeAround,
     .keyPresses = true},
    {.code = "SAM2",
     .output = InRange<formats::SamsungKeyPresses2>,
     .titleSuffix = " para Samsung para introducir mediante pulsaciones 2.",
     .instruction = u8"Para introducir esta melodía en el compositor de tu Samsung, teclea las "
                    u8"teclas indicadas."_w,
     .gets = "Pulsaciones de tipo 2 para el compositor",
     .extension = "txt",
     .sheetLabel = "Samsung>Pulsaciones tipo 2.",
     .octaves = kThreeAround,
     .keyPresses = true},
    {.code = "MOTS",
     .output = MotorolaSms,
     .titleSuffix = " para Motorola en formato SMS",
     .instruction = u8"Envia esta melodia mandando el texto indicado a tu móvil mediante un SMS, o "
                    u8"mediante un cable de datos. "_w,
     .gets = "Un texto para enviar por SMS",
     .limits = ", sin puntillos",
     .extension = "txt",
     .sheetLabel = "Motorola>SMS",
     .octaves = {OctaveRange::kBetween, 5, 3}},
    {.code = "MOTK",
     .output = InRange<formats::MotorolaKeyPresses>,
     .titleSuffix = " para Motorola en formato pulsaciones",
     .instruction = "Introduce esta melodia en tu movil pulsando las teclas que se indican. ",
     .gets = "Pulsaciones de tipo 1 para el compositor",
     .limits = ", sin puntillos",
     .extension = "txt",
     .sheetLabel = "Motorola>Pulsaciones Tipo 1",
     .octaves = kThreeAround,
     .keyPresses = true},
    {.code = "MOTI",
     .output = InRange<formats::MotorolaIMelodyKeys>,
     .titleSuffix = " para Motorola en formato Imelody",
     .instruction = "Introduce esta melodia mediante cable en tu motorola.",
     .gets = "Notas iMelody para el compositor",
     .extension = "txt",
     .sheetLabel = "Motorola>Imelody",
     .octaves = kThreeAround},
    {.code = "mdy",
     .output = TriumMdy,
     .titleSuffix = " para Mitsubishi trium en formato MDY.",
     .instruction =
         u8"Este es el contenido del fichero mdy que debes enviar a tu Mitsubishi Trium mediante "
         u8"un cable para introducir así la melodía.La mayoría de los móviles Trium carece de "
         u8"compositor y de posibilidades de recibir melodías mediante SMS, por lo que ésta es la "
         u8"única forma de cambiar las melodías por defecto."_w,
     .gets = "Un texto MDY para enviar por cable",
     .limits = ", tempo 100",
     .extension = "mdy",
     .sheetLabel = "MItsubushi Trium>MDY.",
     .octaves = {OctaveRange::kBetween, 5, 2}},
    {.code = "midi",
     .output = SavedMidi,
     .titleSuffix = " para Siemens en formato midi (No puede ser mostrada)",
     .instruction = kSendFile,
     .gets = "Un fichero MIDI para enviar por cable",
     .extension = "mid",
     .savesFile = true},
});

// Models whose label the sheets have always looked for under another text, or have none ("").
struct LabelText {
  std::string_view model, text;
};
constexpr std::array kLabelTexts = std::to_array<LabelText>({
    {" EMelody", " Emelody"},
    {" IMelody", " Imelody"},
    {"120e,120t,T720", ""},
    {"C300,C331,C332,C333", ""},
    {"v60i, v60t, v120t", ""},
});

const Format* FormatOf(const CatalogueRow& phone) {
  const auto found = std::ranges::find(kFormats, phone.code, &Format::code);
  return found == kFormats.end() ? nullptr : &*found;
}

// The text that finds a model's label.
std::string_view LabelTextOf(const CatalogueRow& phone) {
  const auto found = std::ranges::find(kLabelTexts, phone.model, &LabelText::model);
  return found == kLabelTexts.end() ? phone.model : found->text;
}

}  // namespace

const Format* FindFormat(std::string_view model) {
  const CatalogueRow* phone = FindModel(model);
  return phone == nullptr ? nullptr : FormatOf(*phone);
}

bool SavesFile(std::string_view model) {
  const Format* format = FindFormat(model);
  return format != nullptr && format->savesFile;
}

std::string_view FormatLabel(std::string_view model) {
  const auto phones = CatalogueRows();
  const auto phone = std::ranges::find(phones, model, LabelTextOf);
  return model.empty() || phone == phones.end() ? std::string_view() : FormatOf(*phone)->sheetLabel;
}

}  // namespace tonadex::phones
