#pragma once

#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "midi/sequencer.h"

// Plays melodies on the MIDI sequencer under the alias "mR2M", at most one at a time.
namespace tonadex::midi {

// The sound: the melody's instrument, or a square wave like that of a phone's beeper.
enum class Voice { kInstrument, kBeep };

// The MIDI file that is played: like the one for a phone, with the chosen voice, and with a gap
// between equal neighbours. Throws core::RunTimeError.
std::string PlayedBytes(const core::RTTTLMelody& melody, Voice voice);

// Title of the message box that is shown while a melody plays.
inline constexpr std::string_view kPlayingTitle = "Reproduciendo";

// Parses melody.Text (errors are reported, and the notes parsed before them are played), writes
// TempFolder + "rtlTmpFile.mid" and plays it while the message box "Reproduciendo melodia: …" is
// shown; closing the box stops the sound. The file is not removed. When it cannot be written, a box
// says so and melody.FileName keeps its path; otherwise FileName is restored.
void PlayMelody(core::RTTTLMelody& melody, Sequencer& sequencer, Voice voice = Voice::kInstrument);

// Writes that file for a parsed melody and starts it in place of what plays; it sounds until
// MciClose or to its end. Shows nothing. False when the file cannot be written: melody.FileName
// then keeps its path, otherwise it is restored.
bool StartMelody(core::RTTTLMelody& melody, Sequencer& sequencer, Voice voice);

// Sends "open" and "play" for melody.FileName; ignores the results.
void MciOpenAndPlay(const core::RTTTLMelody& melody, Sequencer& sequencer);

// Sends "close"; returns the sequencer's result.
int MciClose(Sequencer& sequencer);

}  // namespace tonadex::midi
