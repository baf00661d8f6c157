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

constexpr Octaves kEvery = {OctaveRange::kAny, 0, 0};
constexpr Octaves kTwoAround = {OctaveRange::kAround, 0, 2};
constexpr Octaves kThreeAround = {OctaveRange::kAround, 0, 3};
constexpr Octaves kThreeAround4 = {OctaveRange::kAround, 4, 3};
constexpr Octaves kThreeAround5 = {OctaveRange::kAround, 5, 3};
constexpr Octaves kFourAround = {OctaveRange::kAround, 0, 4};
constexpr Octaves kFourAround4 = {OctaveRange::kAround, 4, 4};
constexpr Octaves kFrom4 = {OctaveRange::kFrom, 4, 0};
constexpr Octaves k5And6 = {OctaveRange::kBetween, 5, 2};
constexpr Octaves k5To7 = {OctaveRange::kBetween, 5, 3};
constexpr Octaves k4To7 = {OctaveRange::kBetween, 4, 4};
constexpr Octaves k1To8 = {OctaveRange::kBetween, 1, 8};

// In the order of the catalogue's codes. The sheet labels keep their unusual capital letters and
// missing full stops, because printed sheets have always had them.
constexpr auto kFormats = std::to_array<Format>({
    {kRtttlCode, AsLoaded, Kind::kText, "rtttl", kEvery, kEvery, 0, "Nokia>RTTTL.",
     " para Nokia en formato RTTTL.", kSendRtttl, u8"La melodía en RTTTL tal como está"_w,
     ", para enviar por cable o SMS"},
    {"NRTL", AtTempo125, Kind::kText, "rtttl", kEvery, kEvery, 0, "Nokia>RTTTL, tempo 125.",
     " para Nokia en formato RTTTL con tempo 125.", kSendRtttl,
     u8"La melodía en RTTTL pasada a tempo 125"_w, ", para enviar por cable o SMS"},
    {kComposerCode, InRange<formats::NokiaComposerText>, Kind::kNotes, "txt", kThreeAround, kEvery,
     kComposerNotes, "Nokia>Compositor.", " para Nokia en formato de compositor.",
     u8"Esto es lo que debería aparecer en el compositor de tu Nokia al introducir "
     u8"correctamente esta melodía. Recuerda que no son las teclas que tienes que "
     u8"pulsar, sino lo que aparece al pulsarlas."_w,
     "Lo que aparece en el compositor", ""},
    {kKeysCode, InRange<formats::NokiaKeyPresses>, Kind::kKeys, "txt", kThreeAround, k4To7,
     kComposerNotes, "Nokia>Pulsaciones.", " para Nokia para introducir mediante pulsaciones.",
     u8"En el compositor de tu Nokia debes pulsar las teclas que se indican para "
     u8"poder introducir la melodía en tu móvil"_w,
     "Pulsaciones para el compositor", ""},
    {"EMSE", InRange<formats::EMelodyText>, Kind::kText, "emy", kTwoAround, k1To8, 0, "Emelody",
     " en formato Emelody.",
     u8"Este es el formato de las melodías Emelody. Puedes introducirlas mediante cable, o "
     u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que "
     u8"teclas pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en "
     u8"Ericsson."_w,
     "Texto EMelody, para introducir por cable o a mano", ""},
    {"EMSI", InRange<formats::IMelodyText>, Kind::kText, "imy", kFourAround, k1To8, 0, "Imelody.",
     " formato Imelody.",
     u8"Este es el formato de las melodías Imelody. Puedes introducirlas mediante cable, o "
     u8"introducirlas manualmente (en la ayuda se incluye una explicación de como saber que "
     u8"teclas pulsar). En un futuro podrás ver directamente las pulsaciones a introducir en "
     u8"Ericsson."_w,
     "Texto iMelody, para introducir por cable o a mano", ""},
    {"KKWS", SavedKws, Kind::kFile, "kws", kFrom4, kEvery, 0, "KWS.",
     " para Kyocera (No puede ser mostrada)", kSendFile, "Un fichero KWS para enviar por cable",
     ""},
    {"SAM1", InRange<formats::SamsungKeyPresses1>, Kind::kKeys, "txt", kThreeAround4, kFourAround4,
     100, "Samsung>Pulsaciones tipo 1.", " para Samsung en formato de pulsaciones 1.",
     "Para introducir la melodia, ves al compositor de tu Samsung y pulsa las "
     "teclas indicadas",
     "Pulsaciones de tipo 1 para el compositor", ""},
    {"SAM2", InRange<formats::SamsungKeyPresses2>, Kind::kKeys, "txt", kThreeAround4, kFourAround4,
     100, "Samsung>Pulsaciones tipo 2.", " para Samsung para introducir mediante pulsaciones 2.",
     u8"Para introducir esta melodía en el compositor de tu Samsung, teclea las "
     u8"teclas indicadas."_w,
     "Pulsaciones de tipo 2 para el compositor", ""},
    {"MOTS", MotorolaSms, Kind::kNotes, "txt", k5To7, kEvery, 35, "Motorola>SMS",
     " para Motorola en formato SMS",
     u8"Envia esta melodia mandando el texto indicado a tu móvil mediante un SMS, o "
     u8"mediante un cable de datos. "_w,
     "Un texto para enviar por SMS", ", sin puntillos"},
    {"MOTK", InRange<formats::MotorolaKeyPresses>, Kind::kKeys, "txt", kThreeAround5, kEvery, 0,
     "Motorola>Pulsaciones Tipo 1", " para Motorola en formato pulsaciones",
     "Introduce esta melodia en tu movil pulsando las teclas que se indican. ",
     "Pulsaciones de tipo 1 para el compositor", ", sin puntillos"},
    {"MOTI", InRange<formats::MotorolaIMelodyKeys>, Kind::kNotes, "txt", kThreeAround5, kEvery, 0,
     "Motorola>Imelody", " para Motorola en formato Imelody",
     "Introduce esta melodia mediante cable en tu motorola.", "Notas iMelody para el compositor",
     ""},
    {"mdy", TriumMdy, Kind::kText, "mdy", k5And6, kEvery, 0, "MItsubushi Trium>MDY.",
     " para Mitsubishi trium en formato MDY.",
     u8"Este es el contenido del fichero mdy que debes enviar a tu Mitsubishi Trium mediante "
     u8"un cable para introducir así la melodía.La mayoría de los móviles Trium carece de "
     u8"compositor y de posibilidades de recibir melodías mediante SMS, por lo que ésta es la "
     u8"única forma de cambiar las melodías por defecto."_w,
     "Un texto MDY para enviar por cable", ", tempo 100"},
    {"midi", SavedMidi, Kind::kFile, "mid", kEvery, kEvery, 0, "",
     " para Siemens en formato midi (No puede ser mostrada)", kSendFile,
     "Un fichero MIDI para enviar por cable", ""},
});

// Models whose label is looked up with another text, or that have no label (""): kept, because
// printed sheets have always been so.
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

// The text with which a model's label is looked up.
std::string_view LabelTextOf(const CatalogueRow& phone) {
  const auto found = std::ranges::find(kLabelTexts, phone.model, &LabelText::model);
  return found == kLabelTexts.end() ? phone.model : found->text;
}

}  // namespace

const Format* FormatOfCode(std::string_view code) {
  const auto found = std::ranges::find(kFormats, code, &Format::code);
  return found == kFormats.end() ? nullptr : &*found;
}

const Format* FindFormat(std::string_view model) {
  const CatalogueRow* phone = FindModel(model);
  return phone == nullptr ? nullptr : FormatOfCode(phone->code);
}

bool SavesFile(std::string_view model) {
  const Format* format = FindFormat(model);
  return format != nullptr && format->kind == Kind::kFile;
}

std::string_view FormatLabel(std::string_view model) {
  const auto phones = CatalogueRows();
  const auto phone = std::ranges::find(phones, model, LabelTextOf);
  return model.empty() || phone == phones.end() ? std::string_view()
                                                : FormatOfCode(phone->code)->sheetLabel;
}

}  // namespace tonadex::phones
