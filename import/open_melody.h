#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/recognise.h"

// Opens any melody file as RTTTL. Texts are Windows-1252.
namespace tonadex::import {

// Longer files are refused: RTTTL collections of thousands of melodies are far shorter.
inline constexpr std::size_t kMostBytes = std::size_t{16} << 20;

struct OpenedMelody {
  std::string text;                  // one line of RTTTL, sharps as "#"
  std::vector<std::string> remarks;  // Spanish sentences: what was assumed, mended or left out
};

struct OpenedFile {
  FileKind kind = FileKind::kUnknown;
  std::vector<OpenedMelody> melodies;  // of MIDI the voice that is probably the tune
};

// The melodies of a file, one or more; `fileName` names those without a name. Errors:
// core::RunTimeError with a Spanish sentence (lower case, without a full stop) that says what is
// wrong and where: damaged, unknown, without notes, too long.
OpenedFile OpenMelodyFile(std::string_view bytes, std::string_view fileName);

}  // namespace tonadex::import
