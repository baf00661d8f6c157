#include "cli/import_midi.h"

#include <algorithm>

#include "core/rtttl_writer.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "phones/smf_choice.h"

namespace tonadex::cli {
namespace {

// "2: Solo, parece la melodía (Flauta), canal 1, 64 notas, de do 5 a sol 6"
void ListVoices(Context& context, const std::vector<midi::SmfVoice>& voices) {
  for (std::size_t i = 0; i < voices.size(); ++i) {
    context.out << i + 1 << ": " << ForTerminal(midi::VoiceText(voices[i])) << '\n';
  }
}

const midi::SmfVoice& ChosenVoice(const std::vector<midi::SmfVoice>& voices,
                                  const std::string& file, std::size_t number) {
  if (number > voices.size()) {
    throw Failure{ExitCode::kNotConverted, file + ": no hay voz " + std::to_string(number) +
                                               ", las hay de 1 a " + std::to_string(voices.size())};
  }
  return number > 0 ? voices[number - 1] : *std::ranges::find(voices, true, &midi::SmfVoice::tune);
}

}  // namespace

std::vector<import::OpenedMelody> OpenMidi(Context& context, const Arguments& arguments,
                                           const std::string& file, const std::string& bytes) {
  midi::SmfFile smf;
  FailOnError(ExitCode::kNotConverted, file + ": ", [&] { smf = midi::ReadSmf(bytes); });
  const std::vector<midi::SmfVoice> voices = midi::VoicesOf(smf);
  const std::string fault = core::ToUtf8(midi::WhyNoTune(voices));
  if (voices.empty() || (!fault.empty() && !arguments.voices && arguments.voice == 0)) {
    throw Failure{ExitCode::kNotConverted, file + ": el fichero MIDI " + fault};
  }
  if (arguments.voices) {
    ListVoices(context, voices);
    return {};
  }
  midi::SmfChoice choice =
      phones::ChoiceFor(arguments.HasOnePhone() ? ChosenModel(arguments) : "",
                        file == "-" ? "" : files::TextFromPath(ArgumentPath(file).stem()));
  choice.firstBar = arguments.firstBar;
  choice.mostNotes = arguments.mostNotes > 0 ? arguments.mostNotes : choice.mostNotes;
  midi::SmfMelody made = midi::MelodyOf(smf, ChosenVoice(voices, file, arguments.voice), choice);
  if (made.melody.notes.empty()) {
    throw Failure{ExitCode::kNotConverted,
                  file + ": la voz acaba en el compás " + std::to_string(made.bars)};
  }
  return {{core::RtttlText(made.melody), std::move(made.remarks)}};
}

}  // namespace tonadex::cli
