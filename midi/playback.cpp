#include "midi/playback.h"

#include "core/message_box.h"
#include "core/runtime_error.h"
#include "files/paths.h"
#include "files/write.h"
#include "midi/mMidiLibOut.h"

namespace tonadex::midi {
namespace {

constexpr std::string_view kTempFile = "rtlTmpFile.mid";
constexpr std::int16_t kSquareLead = 80;  // General MIDI's instrument 81

}  // namespace

std::string PlayedBytes(const core::RTTTLMelody& melody, Voice voice) {
  if (voice == Voice::kInstrument) {
    return MidiFileBytes(melody, Repeats::kApart);
  }
  core::RTTTLMelody beeped = melody;
  beeped.Instrument = kSquareLead;
  return MidiFileBytes(beeped, Repeats::kApart);
}

void PlayMelody(core::RTTTLMelody& melody, Sequencer& sequencer, Voice voice) {
  core::ShowRTTTLError(core::ParseRTTTL(melody));  // the notes parsed before an error are played
  if (!StartMelody(melody, sequencer, voice)) {
    // FileName is not restored here: deliberate.
    core::MsgBox(
        "No se pudo crear el archivo temporal.\r\n"
        "Por favor, borra el siguiente fichero y vuelve a intentarlo:\r\n" +
        melody.FileName);
    return;
  }
  core::MsgBox("Reproduciendo melodia: " + melody.Name, core::Icon::kInformation, kPlayingTitle);
  MciClose(sequencer);
}

bool StartMelody(core::RTTTLMelody& melody, Sequencer& sequencer, Voice voice) {
  const std::string fileName = melody.FileName;
  melody.FileName = melody.TempFolder + std::string(kTempFile);
  if (!core::SkipErrors([&] {
        files::WriteBytes(files::PathFromText(melody.FileName), PlayedBytes(melody, voice));
      })) {
    return false;
  }
  MciClose(sequencer);
  MciOpenAndPlay(melody, sequencer);
  melody.FileName = fileName;
  return true;
}

void MciOpenAndPlay(const core::RTTTLMelody& melody, Sequencer& sequencer) {
  sequencer.SendString("open " + melody.FileName + " type sequencer alias mR2M");
  sequencer.SendString("play mR2M notify");
}

int MciClose(Sequencer& sequencer) {
  return sequencer.SendString("close mR2M");
}

}  // namespace tonadex::midi
