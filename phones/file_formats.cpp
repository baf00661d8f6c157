#include "phones/file_formats.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/message_box.h"
#include "core/windows1252.h"
#include "formats/beep_wav.h"
#include "formats/kws.h"
#include "formats/reading.h"
#include "formats/smart_messaging.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/outputs.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::string_view kUnreadable = u8"la melodía no se puede leer: "_w;

std::string Kws(const core::RTTTLMelody& melody, std::string& notices) {
  const std::optional<std::string> bytes = formats::KwsBytes(melody, notices);
  if (!bytes) {
    formats::RefuseFile({u8"tiene notas por debajo de la octava 4, la más baja de KWS"_w});
  }
  return *bytes;
}

std::string Midi(const core::RTTTLMelody& melody, std::string&) {
  return midi::MidiFileBytes(melody);
}

std::string Sckl(const core::RTTTLMelody& melody, std::string& notices) {
  return formats::ScklText(formats::OttBytes(melody, notices));
}

std::string Wav(const core::RTTTLMelody& melody, std::string&) {
  return formats::BeepWav(melody);
}

constexpr std::string_view kSmsLimits =
    u8"un título de 15 letras, 32 tempos, octavas 4 a 7 y unas mil notas"_w;

constexpr auto kFileFormats = std::to_array<FileFormat>({
    {"rtttl", "rtttl", "RTTTL", "NRTLNOMOD", nullptr, ""},
    {"rtttl125", "rtttl", "RTTTL con tempo 125", "NRTL", nullptr, ""},
    {"compositor", "txt", "Texto del compositor de Nokia", kComposerCode, nullptr,
     "tres octavas, sin tempo"},
    {"nokia", "txt", "Pulsaciones para Nokia", kKeysCode, nullptr, "tres octavas, sin tempo"},
    {"imy", "imy", "iMelody", "EMSI", nullptr, "cuatro octavas"},
    {"emy", "emy", "EMelody", "EMSE", nullptr, "dos octavas y dos duraciones, sin puntillos"},
    {"mid", "mid", "MIDI", "midi", Midi, ""},
    {"kws", "kws", "Kyocera KWS", "KKWS", Kws, "desde la octava 4, sin nombre"},
    {"mdy", "mdy", "Trium MDY", "mdy", nullptr, "dos octavas, tempo 100"},
    {"ott", "ott", "Nokia Smart Messaging", "", formats::OttBytes, kSmsLimits},
    {"sckl", "txt", "Mensajes SMS de Nokia", "", Sckl, kSmsLimits},
    {"samsung1", "txt", "Pulsaciones para Samsung, tipo 1", "SAM1", nullptr,
     "tres octavas, sin tempo"},
    {"samsung2", "txt", "Pulsaciones para Samsung, tipo 2", "SAM2", nullptr,
     "tres octavas, sin tempo ni puntillos"},
    {"motorola", "txt", "Mensaje de Motorola", "MOTS", nullptr,
     "35 notas y tres octavas, sin tempo ni puntillos"},
    {"motorola1", "txt", "Pulsaciones para Motorola", "MOTK", nullptr,
     "tres octavas y tres duraciones, sin tempo ni puntillos"},
    {"motorola-imelody", "txt", "Notas iMelody para Motorola", "MOTI", nullptr,
     "cuatro octavas, tempo 125"},
    {"wav", "wav", "Sonido", "", Wav, u8"diez minutos, con el pitido de un móvil"_w},
});

// Throws the text of the last message as the reason.
[[noreturn]] void RefuseMelody(const core::RecordingMessages& messages) {
  formats::RefuseFile({kUnreadable, messages.messages.empty()
                                        ? ""
                                        : std::string_view(messages.messages.back().text)});
}

}  // namespace

std::span<const FileFormat> FileFormats() {
  return kFileFormats;
}

const FileFormat* FindFileFormat(std::string_view name) {
  const auto found = std::ranges::find(kFileFormats, name, &FileFormat::name);
  return found == kFileFormats.end() ? nullptr : &*found;
}

const FileFormat* FileFormatOf(std::string_view model) {
  const CatalogueRow* phone = FindModel(model);
  const auto found = std::ranges::find(
      kFileFormats, phone == nullptr ? std::string_view("-") : phone->code, &FileFormat::code);
  return found == kFileFormats.end() ? nullptr : &*found;
}

std::vector<const FileFormat*> FormatsToSave(std::string_view model) {
  std::vector<const FileFormat*> formats;
  if (const FileFormat* phones = FileFormatOf(model)) {
    formats.push_back(phones);
  }
  for (const FileFormat& format : kFileFormats) {
    if (std::ranges::find(formats, format.extension, &FileFormat::extension) == formats.end()) {
      formats.push_back(&format);
    }
  }
  return formats;
}

MelodyFileBytes WriteMelodyFile(const FileFormat& format, std::string_view rtttl) {
  core::RecordingMessages messages;
  const core::ScopedMessageSink sink(messages);
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  melody.Text = rtttl;
  core::RTTTLMelody parsed = melody;
  if (!core::ParseOrReport(parsed)) {
    RefuseMelody(messages);
  }
  if (format.write != nullptr) {
    MelodyFileBytes file;
    file.bytes = format.write(parsed, file.notices);
    return file;
  }
  NoSaveFile none;
  Job job{melody, none, "", ""};
  const Outcome outcome = FormatOfCode(format.code)->output(job);
  if (outcome != Outcome::kConverted || job.result.empty()) {
    RefuseMelody(messages);
  }
  return {std::move(job.result), std::move(job.notices)};
}

}  // namespace tonadex::phones
