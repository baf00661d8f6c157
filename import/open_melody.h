#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/recognise.h"

// Converts any melody file to RTTTL. Texts are Windows-1252.
namespace tonadex::import {

// Maximum size. RTTTL collections of thousands of melodies are far shorter.
inline constexpr std::size_t kMostBytes = std::size_t{16} << 20;

struct OpenedMelody {
  std::string text;                  // one line of RTTTL, sharps as "#"
  std::vector<std::string> remarks;  // Spanish sentences: what was assumed, repaired or left out
};

struct OpenedFile {
  FileKind kind = FileKind::kUnknown;
  std::vector<OpenedMelody> melodies;  // of a MIDI file only the voice that is probably the tune
};

// Returns one or more melodies; `fileName` (Windows-1252) names those without a name. Throws
// core::RunTimeError with a Spanish sentence (lower case, without a full stop) that says what is
// wrong and where: damaged, unknown, without notes, too long.
OpenedFile OpenMelodyFile(std::string_view bytes, std::string_view fileName);

}  // namespace tonadex::import
