#pragma once

#include "core/rtttl.h"
#include "midi/sequencer.h"

// Melodies on the system's MIDI sequencer, under the alias "mR2M", at most one at a time.
namespace tonadex::midi {

// Parses melody.Text (errors are reported, and the notes parsed before them are played), writes
// TempFolder + "rtlTmpFile.mid" and plays it while the message box "Reproduciendo melodia: …" is
// shown; closing the box stops the sound. The file is not removed. When it cannot be written, a box
// says so and melody.FileName keeps its path; otherwise FileName is restored.
void PlayMelody(core::RTTTLMelody& melody, Sequencer& sequencer);

// Sends open and play for melody.FileName; results are ignored.
void MciOpenAndPlay(const core::RTTTLMelody& melody, Sequencer& sequencer);

// Sends close; returns the sequencer's result.
int MciClose(Sequencer& sequencer);

}  // namespace tonadex::midi
