#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/rtttl.h"
#include "core/text.h"
#include "fuzz/require.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"

// Any bytes as a paste: the result of the check is true, and the repaired melodies have no faults
// and are not changed by another repair.
namespace {

using namespace tonadex;

core::RTTTLMelody Fresh(std::string_view text) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "");
  melody.Text = text;
  return melody;
}

// Texts without faults can be parsed, played and converted for every phone.
void CheckGood(std::string_view text, const phones::MelodyCheck& check) {
  core::RTTTLMelody melody = Fresh(text);
  Require(core::ParseRTTTL(melody) == core::kParsed, "praise for what cannot be read");
  Require(melody.Notes.size() == check.notes + check.pauses, "another number of notes");
  midi::MidiFileBytes(melody);
  phones::NoSaveFile noFile;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    core::RTTTLMelody copy = Fresh(text);
    const phones::Outcome outcome =
        phones::ConvertSelectedMelody(copy, row.model, "x", noFile).outcome;
    Require(outcome == phones::Outcome::kConverted || outcome == phones::Outcome::kCancelled,
            "praise for what cannot be converted");
  }
}

void CheckAny(std::string_view text) {
  const phones::MelodyCheck check = phones::CheckRtttl(text);
  Require(check.faults.empty() == (check.verdict != phones::Verdict::kBad), "a verdict unfounded");
  for (const phones::RtttlFault& fault : check.faults) {
    Require(fault.where.start + fault.where.length <= text.size(), "a fault outside the text");
    Require(!fault.sentence.empty(), "a fault without words");
  }
  if (check.verdict == phones::Verdict::kGood) {
    CheckGood(text, check);
  }
}

void CheckRepair(std::string_view text) {
  const std::vector<phones::RepairedMelody> melodies = phones::RepairRtttl(text);
  for (const phones::RepairedMelody& melody : melodies) {
    const phones::MelodyCheck check = phones::CheckRtttl(melody.text);
    Require(check.verdict == phones::Verdict::kGood, "a repair that is not good");
    const auto again = phones::RepairRtttl(melody.text);
    Require(again.size() == 1 && again[0].text == melody.text && again[0].changes.empty(),
            "a repair that changes again");
  }
  if (melodies.size() == 1 && melodies[0].changes.empty()) {
    Require(core::Contains(text, melodies[0].text), "a change that is not told");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = phones::FromPasted(std::string(data, data + size));
  CheckAny(text);
  CheckRepair(text);
  return 0;
}
