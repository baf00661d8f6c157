#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"
#include "phones/conversion.h"

// The output step of each format: converts a loaded melody to the result page's text, or writes a
// file. Each function sets `result` and returns kConverted, or returns why it could not. Errors:
// those of the writers.
namespace tonadex::phones {

struct Job {
  core::RTTTLMelody& melody;
  SaveFileQuestion& ask;
  std::string result;
  std::string notices;  // the writer's warnings
};

// For formats with an octave range: computes the base octave, then calls the writer.
using RangeWriter = std::string (*)(core::RTTTLMelody&, std::string&, std::int16_t);
Outcome WriteInRange(Job& job, RangeWriter writer);
template <RangeWriter kWriter>
Outcome InRange(Job& job) {
  return WriteInRange(job, kWriter);
}

Outcome AsLoaded(Job& job);
Outcome AtTempo125(Job& job);
Outcome MotorolaSms(Job& job);
Outcome TriumMdy(Job& job);
Outcome SavedKws(Job& job);
Outcome SavedMidi(Job& job);

}  // namespace tonadex::phones
