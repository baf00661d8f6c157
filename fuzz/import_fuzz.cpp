#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "core/rtttl_writer.h"
#include "core/runtime_error.h"
#include "formats/readers.h"
#include "formats/smart_messaging.h"
#include "fuzz/require.h"
#include "import/open_melody.h"
#include "phones/rtttl_check.h"

// Reads any bytes as a melody file: the first byte selects a reader, or recognition by content.
// Each melody that is read parses to as many notes; otherwise there is a sentence that says why.
namespace {

using namespace tonadex;

constexpr std::array kReaders = {
    formats::ReadEMelody,      formats::ReadIMelody,      formats::ReadIMelodyKeys,
    formats::ReadMotorolaSms,  formats::ReadTriumMdy,     formats::ReadKws,
    formats::ReadNokiaKeys,    formats::ReadSamsungKeys1, formats::ReadSamsungKeys2,
    formats::ReadMotorolaKeys, formats::ReadOtt,          formats::ReadSckl};

void CheckReading(const formats::Reading& reading) {
  Require(reading.melody.notes.size() <= formats::kMostNotes, "more notes than RTTTL holds");
  if (reading.melody.notes.empty()) {
    return;
  }
  core::RTTTLMelody melody;
  core::PlainMelody named = reading.melody;
  named.name = "x";
  melody.Text = core::RtttlText(named);
  Require(core::ParseRTTTL(melody) == core::kParsed, "a melody that cannot be read");
  Require(melody.Notes.size() == named.notes.size(), "another number of notes");
}

void CheckFile(std::string_view bytes) {
  const import::OpenedFile opened = import::OpenMelodyFile(bytes, "x.y");
  Require(!opened.melodies.empty(), "a file without melodies");
  for (const import::OpenedMelody& melody : opened.melodies) {
    Require(phones::CheckRtttl(melody.text).verdict == phones::Verdict::kGood ||
                opened.kind != import::FileKind::kRtttl,
            "a melody with faults");
    Require(std::ranges::count(melody.text, '\n') == 0, "more than one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const std::string bytes(data + 1, data + size);
  try {
    if (data[0] % (kReaders.size() + 1) == kReaders.size()) {
      CheckFile(bytes);
    } else {
      CheckReading(kReaders[data[0] % (kReaders.size() + 1)](bytes));
    }
  } catch (const core::RunTimeError& error) {
    Require(std::string_view(error.what()).size() > 4, "a refusal without words");
  }
  return 0;
}
