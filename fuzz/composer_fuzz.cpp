#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "core/text.h"
#include "nokia3210/cnokia.h"

// Reads any bytes as composer notation and as RTTTL: the converted notes convert back to the same
// notes.
namespace {

using tonadex::nokia3210::CNokia;
using tonadex::nokia3210::NoteKind;

void Require(bool holds, std::string_view what) {
  if (!holds) {
    std::cerr << "composer_fuzz: " << what << '\n';
    std::abort();
  }
}

CNokia Converted(std::string_view text, NoteKind showType) {
  CNokia converter;
  converter.SetOriginalText(text);
  converter.ShowType = showType;
  converter.Convert();
  Require((converter.NoteCount() == 0) == converter.ConvertedNotes().empty(),
          "a count without notes");
  return converter;
}

void RequireParses(const CNokia& converter) {
  if (converter.NoteCount() == 0 || converter.NoteCount() > tonadex::core::kMaxParts) {
    return;
  }
  tonadex::core::RTTTLMelody melody;
  melody.Text = "x:d=4,o=5,b=100:" + converter.ConvertedNotes();
  Require(tonadex::core::ParseRTTTL(melody) == tonadex::core::kParsed, "unreadable RTTTL");
  Require(melody.Notes.size() == converter.NoteCount(), "another number of notes");
  for (std::size_t i = 0; i < melody.Notes.size(); ++i) {
    const auto& note = converter.Notes().Item(i + 1);
    const auto parsed = melody.Notes[i];
    Require(parsed.Duration == std::to_string(note.Duration) && parsed.Dotted == note.Dotted &&
                parsed.Note.front() == note.Letter && parsed.Note.ends_with('#') == note.Sharp &&
                (note.IsPause() || parsed.Octave.front() == note.Octave + 4),
            "another note");
  }
}

void RequireReadsBack(const CNokia& converter) {
  const bool rtttl = converter.ShowType == NoteKind::kRTTTL;
  const CNokia back =
      Converted(converter.ConvertedNotes(), rtttl ? NoteKind::kComposer : NoteKind::kRTTTL);
  Require(back.ConversionErrors().empty(), "errors in our own notation");
  Require(std::string_view(back.ConvertedNotes()) ==
              tonadex::nokia3210::cNote::NoteBatch(converter.Notes(), back.ShowType, {}),
          "another text after reading back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const CNokia fromComposer = Converted(text, NoteKind::kRTTTL);
  RequireParses(fromComposer);
  RequireReadsBack(fromComposer);
  const CNokia fromRTTTL = Converted(text, NoteKind::kComposer);
  if (fromRTTTL.ConversionErrors().empty()) {  // octaves 4 and 8 are logged and do not convert back
    RequireReadsBack(fromRTTTL);
  }
  return 0;
}
