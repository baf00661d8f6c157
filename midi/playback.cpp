#include "midi/playback.h"

#include "midi/mMidiLibOut.h"
#include "platform/message_box.h"

namespace tonadex::midi {
namespace {

constexpr std::string_view kTempFile = "rtlTmpFile.mid";

}  // namespace

void PlayMelody(core::RTTTLMelody& melody, platform::Sequencer& sequencer) {
  core::ShowRTTTLError(core::ParseRTTTL(melody));  // what was parsed plays all the same
  const std::string fileName = melody.FileName;
  melody.FileName = melody.TempFolder + std::string(kTempFile);
  if (WriteMidiFile(melody) == kMidiFailed) {
    // FileName keeps the temporary path here: deliberate.
    platform::MsgBox(
        "No se pudo crear el archivo temporal.\r\n"
        "Por favor, borra el siguiente fichero y vuelve a intentarlo:\r\n" +
        melody.FileName);
    return;
  }
  MciClose(sequencer);
  MciOpenAndPlay(melody, sequencer);
  melody.FileName = fileName;
  platform::MsgBox("Reproduciendo melodia: " + melody.Name, platform::Icon::kInformation,
                   "Reproduciendo");
  MciClose(sequencer);
}

void MciOpenAndPlay(const core::RTTTLMelody& melody, platform::Sequencer& sequencer) {
  sequencer.SendString("open " + melody.FileName + " type sequencer alias mR2M");
  sequencer.SendString("play mR2M notify");
}

int MciClose(platform::Sequencer& sequencer) {
  return sequencer.SendString("close mR2M");
}

}  // namespace tonadex::midi
