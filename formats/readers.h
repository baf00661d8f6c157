#pragma once

#include <string_view>

#include "formats/reading.h"

// One reader for each writer of this folder; they also read files of other programs in the same
// formats. All throw core::RunTimeError with a Spanish sentence (lower case, without a full stop):
// for damage it says where, and a melody can have too many notes. A format without names leaves the
// name empty; one without tempos gets kAssumedTempo.
// Texts are Windows-1252.
namespace tonadex::formats {

// "BEGIN:EMELODY": octave 5 and, with "+", the next ones; an upper-case letter is a quarter, a
// lower-case one an eighth.
Reading ReadEMelody(std::string_view text);

// "BEGIN:IMELODY" of version 1.2: octave 4 is RTTTL's 5. Volume, lights and vibration are skipped;
// a passage repeated for ever is read once.
Reading ReadIMelody(std::string_view text);

// The iMelody notes that Motorola phones take as keys, "*3c3*4#d2r4"; octave 3 is RTTTL's 5.
Reading ReadIMelodyKeys(std::string_view text);

// "L35&2 C4D#+3R2&&5:"; the octave without a sign is 6.
Reading ReadMotorolaSms(std::string_view text);

// "NAME=x", "TEMPO=100", "MC#4.".
Reading ReadTriumMdy(std::string_view text);

// A KWS file, see KwsBytes. It has lengths in ms: the tempo is the one that explains them best.
Reading ReadKws(std::string_view bytes);

// Key presses, with the lowest octave of the composer as octave 5, of Samsung phones 4. Motorola
// keys have three lengths: half note, quarter and sixteenth.
Reading ReadNokiaKeys(std::string_view text);
Reading ReadSamsungKeys1(std::string_view text);
Reading ReadSamsungKeys2(std::string_view text);
Reading ReadMotorolaKeys(std::string_view text);

}  // namespace tonadex::formats
