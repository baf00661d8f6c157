#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/ems.h"
#include "formats/kws.h"
#include "formats/motorola_keys.h"
#include "formats/motorola_sms.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/octave_range.h"
#include "formats/samsung_keys.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "fuzz/require.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"

// Any bytes as a melody, through every writer and the conversion for every phone. The first byte
// selects the base octave, the rest is the RTTTL text.
namespace {

using namespace tonadex;

struct Writer {
  std::string (*write)(core::RTTTLMelody&, std::string&, std::int16_t);
  bool oneBlankPerNote;
};

constexpr std::array kWriters = {
    Writer{formats::NokiaComposerText, true},   Writer{formats::NokiaKeyPresses, true},
    Writer{formats::MotorolaKeyPresses, true},  Writer{formats::SamsungKeyPresses2, true},
    Writer{formats::SamsungKeyPresses1, false}, Writer{formats::EMelodyText, false},
    Writer{formats::IMelodyText, false},        Writer{formats::MotorolaSmsText, false},
    Writer{formats::MotorolaIMelodyKeys, false}};

std::size_t Count(std::string_view text, char wanted) {
  std::size_t count = 0;
  for (const char c : text) {
    count += c == wanted ? 1 : 0;
  }
  return count;
}

bool EndsLinesInCrLf(std::string_view text) {
  std::size_t ends = 0;
  for (std::size_t at = text.find("\r\n"); at != std::string_view::npos;
       at = text.find("\r\n", at + 2)) {
    ++ends;
  }
  return ends == Count(text, '\r') && ends == Count(text, '\n');
}

std::uint32_t BigEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (const char byte : bytes) {
    value = (value << 8) | static_cast<unsigned char>(byte);
  }
  return value;
}

core::RTTTLMelody Fresh(std::string_view text) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "");
  melody.Text = text;
  return melody;
}

// Items of the usual form are parsed by other code than ParseRTTTLNote; both must agree.
void CheckNotes(const core::RTTTLMelody& melody) {
  const std::string_view section = std::string_view(melody.Text).substr(melody.Text.rfind(':') + 1);
  std::size_t index = 0;
  for (const std::string_view part : core::SplitText(section, ',')) {
    std::string item = core::ToLower(part);
    Require(melody.Notes[index++] == core::ParseRTTTLNote(item, melody), "another note");
  }
  Require(melody.Notes.size() == index, "another number of notes");
}

void CheckWriters(std::string_view text, std::int16_t baseOctave) {
  for (const Writer& writer : kWriters) {
    core::RTTTLMelody melody = Fresh(text);
    std::string warnings;
    core::SkipErrors([&] {
      const std::string result = writer.write(melody, warnings, baseOctave);
      const bool blanks = melody.DefaultDuration.find(' ') != std::string::npos;
      if (writer.oneBlankPerNote && !result.empty() && !blanks) {
        Require(Count(result, ' ') == melody.Notes.size(), "not one blank for each note");
      }
      Require(text.find_first_of("\r\n") != std::string::npos || EndsLinesInCrLf(warnings),
              "a notice that does not end in CR LF");
    });
  }
}

void CheckTempo125(std::string_view text) {
  core::RTTTLMelody melody = Fresh(text);
  core::SkipErrors([&] {
    const std::string result = formats::RtttlAtTempo125(melody);
    if (result.empty()) {
      return;
    }
    Require(result.ends_with(','), "no comma behind the last note");
    const std::string_view notes = std::string_view(result).substr(result.rfind(':') + 1);
    Require(Count(notes, ',') == melody.Notes.size(), "another number of notes");
  });
}

void CheckMdy(std::string_view text) {
  core::RTTTLMelody melody = Fresh(text);
  std::string warnings;
  core::SkipErrors([&] {
    const std::string result = formats::TriumMdyText(melody, warnings);
    Require(result.empty() || (result.starts_with("NAME=") && result.ends_with("\r\n")),
            "an MDY text without its frame");
  });
}

void CheckKws(const core::RTTTLMelody& melody) {
  std::string warnings;
  core::SkipErrors([&] {
    const auto bytes = formats::KwsBytes(melody, warnings);
    if (!bytes) {
      return;
    }
    const std::string& b = *bytes;
    const std::uint32_t inverted = BigEndian(std::string{b[3], b[2], b[1], b[0]});
    Require(~inverted == b.size(), "a KWS length that is not the file's");
    Require(BigEndian(std::string{b[5], b[4]}) * 4 + 6 == b.size(), "a KWS count");
  });
}

void CheckMidi(const core::RTTTLMelody& melody) {
  core::SkipErrors([&] {
    const std::string bytes = midi::MidiFileBytes(melody);
    constexpr std::size_t kHeaders = 22;
    Require(BigEndian(std::string_view(bytes).substr(18, 4)) == bytes.size() - kHeaders,
            "a track length that is not the track's");
    const std::string events = midi::MidiNoteEvents(melody);
    Require(events.size() % 8 == 0, "note events that are no pairs");
    for (std::size_t at = 0; at < events.size(); at += 4) {
      Require(static_cast<unsigned char>(events[at]) < 128, "a delta above 127");
    }
  });
}

class NullFile : public phones::SaveFileQuestion {
 public:
  std::optional<std::string> AskSaveFile(const phones::SaveRequest&) override {
    return "/dev/null";
  }
};

// A conversion must not throw, so SkipErrors is deliberately not used.
void CheckConversions(std::string_view text) {
  NullFile file;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    core::RTTTLMelody melody = Fresh(text);
    const auto [outcome, page, messages] =
        phones::ConvertSelectedMelody(melody, row.model, "x", file);
    Require(page || !messages.empty(), "neither a page nor a message");
    Require(page.has_value() == (outcome <= phones::Outcome::kIncomplete), "a page too many");
    Require(!page || (page->title.starts_with("Melodia x ") && !page->notices.empty()),
            "a page without title or notices");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const std::string text(data + 1, data + size);
  const auto baseOctave = static_cast<std::int16_t>(data[0] % 12);
  CheckWriters(text, baseOctave);
  CheckTempo125(text);
  CheckMdy(text);
  core::RTTTLMelody melody = Fresh(text);
  const std::int16_t code = core::ParseRTTTL(melody);
  if (code < core::kSectionsError) {
    CheckNotes(melody);
  }
  if (code == core::kParsed) {
    CheckKws(melody);
    CheckMidi(melody);
  }
  CheckConversions(text);
  core::SkipErrors([&] { formats::AutoOctave(melody, 2); });
  return 0;
}
