#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "nokia3210/cnotes.h"

namespace tonadex::nokia3210 {

// Converts the phone's composer notation to RTTTL notes and back. An object can be used repeatedly;
// objects share no state. Strings are Windows-1252.
//
//   converter.Clear();
//   converter.SetOriginalText("8.#c2 4-");
//   converter.ShowType = NoteKind::kRTTTL;
//   converter.Convert();                 // ConvertedNotes() is "8c#.6,p", NoteCount() is 2
class CNokia {
 public:
  // The notation that Convert writes: kRTTTL converts composer notation to RTTTL notes, kComposer
  // converts RTTTL (notes or a whole melody) to composer notation.
  NoteKind ShowType = NoteKind::kRTTTL;
  // Stored for the caller; not used by the conversion.
  std::string RingToneName;
  std::int16_t Tempo = 0;  // quarter notes per minute
  std::string Folder;

  // The header values for the converted notes, initially "4" and "5"; Convert does not change them.
  nokia3210::Defaults Defaults;

  // Clears the text, the notes and the log; the fields above keep their values.
  void Clear();
  void SetOriginalText(std::string_view text) { originalText_ = text; }
  const std::string& OriginalText() const { return originalText_; }
  // Converts OriginalText; earlier notes and log entries are dropped. Throws nothing but bad_alloc.
  void Convert();

  // Number of notes and pauses read.
  std::size_t NoteCount() const { return notes_.Count(); }
  const CNotes& Notes() const { return notes_; }
  // The notes as text, "" before Convert. RTTTL: no header, no "," at the end.
  const std::string& ConvertedNotes() const { return converted_; }
  // The log of what could not be read: "[CNokia.Convert] Posición 4: no se entiende «4x2»", a bare
  // CR between entries; "" when everything was read.
  const std::string& ConversionErrors() const { return log_.Text(); }
  void AddError(std::string_view source, std::string_view message) {
    log_.AddError(source, message);
  }

 private:
  std::string originalText_;
  CNotes notes_;
  std::string converted_;
  ErrorLog log_;
};

}  // namespace tonadex::nokia3210
