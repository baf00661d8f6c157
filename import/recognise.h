#pragma once

#include <string_view>

namespace tonadex::import {

enum class FileKind {
  kUnknown,
  kRtttl,  // any text in which melodies can be found
  kComposer,
  kEMelody,
  kIMelody,
  kIMelodyKeys,
  kMotorolaSms,
  kTriumMdy,
  kKws,
  kOtt,
  kSckl,
  kKeys,  // key presses of one of several makes
  kMidi,
};

// Recognises the format from the content alone. kUnknown for an empty file, and for bytes that are
// neither text nor a known format. Text may be UTF-8 or Windows-1252. Never throws.
FileKind RecogniseFile(std::string_view bytes);

// Whether its files are bytes, which no other format can be mixed with.
bool IsBinary(FileKind kind);

// The format's Spanish name, as in "texto del compositor de Nokia". Windows-1252; "" for kUnknown.
std::string_view KindName(FileKind kind);

}  // namespace tonadex::import
