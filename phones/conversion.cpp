#include "phones/conversion.h"

#include <algorithm>

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/formats.h"
#include "phones/outputs.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;
using core::Icon;

constexpr std::string_view kNoModel =
    u8"Selecciona el modelo de tu móvil en el apartado de opciones para poder usar el programa"_w;
constexpr std::string_view kCannotConvert = u8"No se puede convertir la melodía: "_w;

// The tempo in the melody's header, "" when it has none.
std::string HeaderTempo(std::string_view text) {
  core::RTTTLMelody copy;
  copy.Text = text;
  core::SkipErrors([&copy] { core::ParseRTTTLHeader(copy); });
  return copy.Beats;
}

ConversionPage Page(const Format& format, std::string_view row, Job& job) {
  ConversionPage page;
  page.title = core::Joined({"Melodia ", row, format.titleSuffix});
  page.result = std::move(job.result);
  if (format.output == AsLoaded) {  // no writer: no warnings, and the melody is not parsed
    page.notices = format.instruction;
    page.tempo = HeaderTempo(job.melody.Text);
  } else {
    page.notices = core::Joined({format.instruction, core::kCrLf, job.notices});
    page.tempo = job.melody.Beats;
  }
  return page;
}

Outcome RunOutput(const Format& format, Job& job) {
  try {
    return format.output(job);
  } catch (const core::RunTimeError& error) {
    core::MsgBox(std::string(kCannotConvert) + error.what(), Icon::kExclamation);
    return Outcome::kCannotConvert;
  }
}

}  // namespace

Conversion ConvertSelectedMelody(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, SaveFileQuestion& ask) {
  const Format* format = FindFormat(model);
  if (format == nullptr) {
    ConversionPage page;
    page.notices = kNoModel;
    return {Outcome::kNoModel, std::move(page), {}};
  }
  core::ScopedRecording messages;
  Job job{melody, ask, "", ""};
  Conversion conversion;
  conversion.outcome = RunOutput(*format, job);
  conversion.messages = std::move(messages.messages);
  if (conversion.outcome == Outcome::kConverted) {
    conversion.page = Page(*format, row, job);
    if (!std::ranges::all_of(conversion.messages, [](const core::Message& message) {
          return message.icon == Icon::kInformation;
        })) {
      conversion.outcome = Outcome::kIncomplete;
    }
  }
  return conversion;
}

std::optional<ConversionPage> ConvertQuietly(core::RTTTLMelody& melody, std::string_view rtttl,
                                             std::string_view model) {
  core::RecordingMessages unread;
  const core::ScopedMessageSink sink(unread);
  core::InitMelody(melody, {});
  melody.Text = rtttl;
  NoSaveFile none;
  return ConvertSelectedMelody(melody, model, "", none).page;
}

}  // namespace tonadex::phones
