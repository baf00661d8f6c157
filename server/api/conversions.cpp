// The functions that work on the melody in a request, and on the catalogue.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "core/melody_file.h"
#include "core/number.h"
#include "core/rtttl_writer.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "import/open_melody.h"
#include "json/catalogue.h"
#include "json/conversion.h"
#include "json/melody.h"
#include "json/steps.h"
#include "json/text.h"
#include "midi/smf_melody.h"
#include "phones/file_formats.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_repair.h"
#include "phones/smf_choice.h"
#include "phones/transpose.h"
#include "server/api/call.h"
#include "server/delivery.h"
#include "server/limits.h"

namespace tonadex::server {
namespace {

using namespace core::literals;
using Json = nlohmann::ordered_json;

// Content types of the files that are not text, by extension.
struct FileType {
  std::string_view extension, type;
};
constexpr FileType kFileTypes[] = {
    {"mid", "audio/midi"},
    {"wav", "audio/wav"},
    {"kws", "application/octet-stream"},
    {"ott", "application/octet-stream"},
};

std::string_view TypeOf(std::string_view extension) {
  const auto found = std::ranges::find(kFileTypes, extension, &FileType::extension);
  return found == std::end(kFileTypes) ? kTextType : found->type;
}

// Returns the result of `work`; a RunTimeError becomes a 422 with its sentence after `before`.
template <typename Work>
auto OrProblem(std::string_view before, Work work) {
  try {
    return work();
  } catch (const core::RunTimeError& error) {
    throw ApiProblem{422, std::string(before) + error.what() + "."};
  }
}

phones::RepairedMelody Named(std::string rtttl, std::vector<std::string> changes) {
  std::string name = rtttl.substr(0, rtttl.find(':'));
  return {std::move(name), std::move(rtttl), std::move(changes)};
}

// Appends an object for each voice of a MIDI file: its description and the melody made of it.
void AppendVoices(std::string& json, std::string_view midi, const midi::SmfChoice& choice) {
  const midi::SmfFile file = midi::ReadSmf(midi);
  std::vector<midi::SmfVoice> voices = midi::VoicesOf(file);
  voices.resize(std::min(voices.size(), kMostVoices));
  for (const midi::SmfVoice& voice : voices) {
    midi::SmfMelody made = midi::MelodyOf(file, voice, choice);
    json::AppendJson(json += json.ends_with('[') ? R"({"voz":)" : R"(,{"voz":)",
                     midi::VoiceText(voice));
    json.append(R"(,"melodia":)").append(voice.tune ? "true," : "false,");
    json::AppendRepair(json, Named(core::RtttlText(made.melody), std::move(made.remarks)));
    json += '}';
  }
}

}  // namespace

Reply Models(const Call&) {
  // Slow: converts all examples.
  static const FixedBody catalogue = MakeFixedBody(json::CatalogueJson());
  return FixedReply(catalogue, kJsonType);
}

Reply Convert(const Call& call) {
  const std::string model = call.Model(), row = call.parameters["fila"];
  std::string json;
  json::LineConverter(model, row, call.parameters["pasos"] == "1").Append(json, call.Melody());
  return JsonReply(json);
}

Reply Steps(const Call& call) {
  const std::string model = call.Model();
  const std::string keypad = json::KeypadJson(model);
  if (keypad.empty()) {
    throw ApiProblem{
        400, std::string(
                 u8"Para ese móvil no se teclea: elige en /api/v1/modelos uno con «teclado»."_w)};
  }
  core::RTTTLMelody melody;
  json::LoadMelody(melody, call.Melody());
  const auto conversion = json::ConvertLoaded(melody, model, {}, std::nullopt);
  std::string json = R"({"teclado":)" + keypad;
  json::AppendStepsJson(json, json::StepsOf(conversion, model, melody));
  return JsonReply(json += '}');
}

Reply Notes(const Call& call) {
  const std::string model = call.parameters["modelo"].empty() ? "" : call.Model();
  return JsonReply(json::NotesJson(call.Melody(), model));
}

// Checks the whole text, not only its first line: a line end within it is a fault.
Reply Check(const Call& call) {
  const std::string_view body = call.request.body;
  const std::string text = core::FromOutside(body.substr(0, body.find_last_not_of("\r\n") + 1));
  return JsonReply(json::CheckJson(core::UndoSharpEscape(text)));
}

Reply Repair(const Call& call) {
  return JsonReply(json::RepairsJson(phones::RepairRtttl(phones::FromPasted(call.request.body))));
}

Reply Transpose(const Call& call) {
  const auto semitones = core::FindInt32(call.parameters["semitonos"]);
  if (!semitones) {
    throw ApiProblem{400, std::string(u8"«semitonos» es un número de -36 a 36."_w)};
  }
  const phones::RepairedMelody moved =
      Named(OrProblem(u8"La melodía no se puede transportar: "_w,
                      [&] { return phones::Transposed(call.Melody(), *semitones); }),
            {});
  return JsonReply(json::RepairsJson({&moved, 1}));
}

// For a MIDI file the reply also lists its voices, each as a melody.
Reply Import(const Call& call) {
  const std::string fileName = call.parameters["fichero"];
  const std::string model = call.parameters["modelo"].empty() ? "" : call.Model();
  auto opened = OrProblem("El fichero no se puede abrir: ",
                          [&] { return import::OpenMelodyFile(call.request.body, fileName); });
  std::vector<phones::RepairedMelody> melodies;
  for (import::OpenedMelody& melody : opened.melodies) {
    melodies.push_back(Named(std::move(melody.text), std::move(melody.remarks)));
  }
  std::string json = json::RepairsJson(melodies);
  if (opened.kind == import::FileKind::kMidi) {
    json.pop_back();
    AppendVoices(json += R"(,"voces":[)", call.request.body,
                 phones::ChoiceFor(model, melodies.front().name));
    json += "]}";
  }
  return JsonReply(json);
}

Reply FileFormats(const Call&) {
  Json formats = Json::array();
  for (const phones::FileFormat& format : phones::FileFormats()) {
    formats.push_back({{"formato", format.name},
                       {"nombre", core::ToUtf8(format.label)},
                       {"extension", format.extension},
                       {"limites", core::ToUtf8(format.limits)}});
  }
  return JsonReply(Json{{"formatos", std::move(formats)}}.dump());
}

Reply MelodyFile(const Call& call) {
  const phones::FileFormat* format = phones::FindFileFormat(call.parameters["formato"]);
  if (format == nullptr) {
    throw ApiProblem{400, std::string(u8"«formato» es uno de /api/v1/formatos."_w)};
  }
  const std::string line = call.Melody();
  Reply reply = TextReply(200, OrProblem("No se puede hacer el fichero: ", [&] {
                            return phones::WriteMelodyFile(*format, line).bytes;
                          }));
  reply.contentType = TypeOf(format->extension);
  const std::string name =
      core::ToUtf8(line.substr(0, std::min(line.find(':'), kMaxDescriptionBytes)));
  reply.fields = "Content-Disposition: attachment; filename*=UTF-8''" + PercentEncoded(name) + "." +
                 std::string(format->extension) + "\r\n";
  return reply;
}

}  // namespace tonadex::server
