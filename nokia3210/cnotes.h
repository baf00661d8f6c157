#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "nokia3210/cnote.h"
#include "nokia3210/error_log.h"

namespace tonadex::nokia3210 {

// Characters that separate typed notes.
inline constexpr std::string_view kNoteSeparators = " \t\r\n,;";

// The notes of a melody, numbered from 1.
class CNotes {
 public:
  void Add(const cNote& note) { notes_.push_back(note); }
  std::size_t Count() const { return notes_.size(); }
  // Errors of both: subscript for a number outside 1 to Count().
  const cNote& Item(std::size_t number) const;
  void Delete(std::size_t number);
  void Clear() { notes_.clear(); }
  auto begin() const { return notes_.begin(); }
  auto end() const { return notes_.end(); }

  // Parses notes and appends them. Accepts any bytes, in linear time. Unreadable text is skipped up
  // to the next separator and logged once, with the source "CNokia.Convert": "Posición n: no se
  // entiende «text»", where n is the 1-based position in `text`.
  //
  // kComposer, as typed: [duration] then a note with its marks "." and "#" before or after the
  // letter and an octave 1 to 3, or a pause "-" or "p". Separators between notes (kNoteSeparators)
  // may be missing; "(4c2)" and "(hold 4c2)" are dotted notes; a tempo at the start ("Tempo=120:",
  // "120 ") is skipped. Upper case counts as lower case and h as b. A missing duration is the
  // default one, a missing octave is "1".
  //
  // kRTTTL: the notes section, or a whole melody, whose header then replaces the defaults.
  void GetNotes(std::string_view text, NoteKind kind, const Defaults& defaults, ErrorLog& log);

 private:
  std::vector<cNote> notes_;
};

}  // namespace tonadex::nokia3210
