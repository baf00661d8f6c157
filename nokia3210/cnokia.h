#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "nokia3210/cnotes.h"

namespace tonadex::nokia3210 {

// Converts the phone's composer notation to RTTTL notes and back. An object can be used again; two
// objects share nothing. Texts are Windows-1252.
//
//   converter.Clear();
//   converter.SetOriginalText("8.#c2 4-");
//   converter.ShowType = NoteKind::kRTTTL;
//   converter.Convert();                 // ConvertedNotes() is "8c#.6,p", NoteCount() is 2
class CNokia {
 public:
  // What Convert gives: kRTTTL reads composer notation and gives RTTTL notes, kComposer reads RTTTL
  // (notes or a whole melody) and gives composer notation.
  NoteKind ShowType = NoteKind::kRTTTL;
  // Stored for the caller; the conversion does not use them.
  std::string RingToneName;
  std::int16_t Tempo = 0;  // quarter notes per minute
  std::string Folder;

  // The header values for the converted notes: "4" and "5" at start; Convert leaves them alone.
  nokia3210::Defaults Defaults;

  // Empties the text, the notes and the log; the properties above stay.
  void Clear();
  void SetOriginalText(std::string_view text) { originalText_ = text; }
  const std::string& OriginalText() const { return originalText_; }
  // Converts OriginalText; earlier notes and log entries are dropped. Throws nothing but bad_alloc.
  void Convert();

  // Notes and pauses read.
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
