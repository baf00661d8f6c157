// What becomes of a melody that a request brings along.

#include <array>
#include <nlohmann/json.hpp>
#include <optional>

#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "formats/kws.h"
#include "json/catalogue.h"
#include "json/conversion.h"
#include "json/melody.h"
#include "json/steps.h"
#include "midi/mMidiLibOut.h"
#include "phones/rtttl_repair.h"
#include "server/api/call.h"

namespace tonadex::server {
namespace {

using namespace core::literals;
using Json = nlohmann::ordered_json;

// A file of a melody: a text that a phone's conversion gives, or bytes.
struct FileFormat {
  std::string_view id;  // and extension
  const char* name;
  std::string_view type;
  std::string_view model;  // of the catalogue, whose result is the file's text; else
  std::string (*bytes)(const core::RTTTLMelody& melody);
};

std::string KwsFile(const core::RTTTLMelody& melody) {
  std::string unread;
  const auto bytes = formats::KwsBytes(melody, unread);
  if (!bytes) {
    throw ApiProblem{
        422,
        std::string(u8"Un KWS no admite notas por debajo de la octava 4: súbela de octava."_w)};
  }
  return *bytes;
}

constexpr std::string_view kTextFile = "text/plain; charset=utf-8";
constexpr FileFormat kFileFormats[] = {
    {"rtttl", "RTTTL", kTextFile, " RTTTL (cable)", nullptr},
    {"mid",
     "MIDI",
     "audio/midi",
     {},
     [](const core::RTTTLMelody& m) { return midi::MidiFileBytes(m); }},
    {"imy", "iMelody", kTextFile, " IMelody", nullptr},
    {"emy", "EMelody", kTextFile, " EMelody", nullptr},
    {"kws", "Kyocera KWS", "application/octet-stream", {}, KwsFile},
    {"mdy", "Mitsubishi Trium MDY", kTextFile, "MDY (cable)", nullptr},
};

std::string FileText(const FileFormat& format, std::string_view line) {
  core::RTTTLMelody melody;
  json::LoadMelody(melody, line);
  const auto conversion =
      json::ConvertLoaded(melody, format.model, line.substr(0, line.find(':')), std::nullopt);
  if (!conversion.page || conversion.page->result.empty()) {
    throw ApiProblem{422, conversion.messages.empty() ? "" : conversion.messages.front().text};
  }
  return core::ToUtf8(conversion.page->result);
}

std::string FileBytes(const FileFormat& format, std::string_view line) {
  core::RecordingMessages messages;
  const core::ScopedMessageSink scope(messages);
  core::RTTTLMelody melody;
  json::LoadMelody(melody, line);
  try {
    if (core::ParseOrReport(melody)) {
      return format.bytes(melody);
    }
  } catch (const core::RunTimeError& error) {
    throw ApiProblem{422, error.what()};
  }
  throw ApiProblem{422, messages.messages.empty() ? "" : messages.messages.front().text};
}

}  // namespace

Reply Models(const Call&) {
  static const std::string catalogue = json::CatalogueJson();  // converts an example for each row
  return JsonReply(catalogue);
}

Reply Convert(const Call& call) {
  const std::string model = call.Model(), row = call.parameters["fila"];
  std::string json;
  json::LineConverter(model, row, call.parameters["pasos"] == "1").Append(json, call.Melody());
  return JsonReply(std::move(json));
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

// The whole text: a line end within it is a fault.
Reply Check(const Call& call) {
  const std::string_view body = call.request.body;
  const std::string text = core::FromOutside(body.substr(0, body.find_last_not_of("\r\n") + 1));
  return JsonReply(json::CheckJson(core::UndoSharpEscape(text)));
}

Reply Repair(const Call& call) {
  return JsonReply(json::RepairsJson(phones::RepairRtttl(phones::FromPasted(call.request.body))));
}

Reply Import(const Call& call) {
  const auto melodies = phones::RepairRtttl(phones::FromPasted(call.request.body));
  if (melodies.empty()) {
    throw ApiProblem{422, std::string(u8"En el fichero no hay ninguna melodía que se entienda."_w)};
  }
  return JsonReply(json::RepairsJson(melodies));
}

Reply FileFormats(const Call&) {
  Json formats = Json::array();
  for (const FileFormat& format : kFileFormats) {
    formats.push_back({{"formato", format.id}, {"nombre", format.name}, {"tipo", format.type}});
  }
  return JsonReply(Json{{"formatos", std::move(formats)}}.dump());
}

Reply MelodyFile(const Call& call) {
  const std::string wanted = call.parameters["formato"], line = call.Melody();
  for (const FileFormat& format : kFileFormats) {
    if (format.id == wanted) {
      Reply reply = TextReply(
          200, format.bytes == nullptr ? FileText(format, line) : FileBytes(format, line));
      reply.contentType = format.type;
      const std::string name = core::ToUtf8(line.substr(0, line.find(':')));
      reply.fields = "Content-Disposition: attachment; filename*=UTF-8''" + PercentEncoded(name) +
                     "." + std::string(format.id) + "\r\n";
      return reply;
    }
  }
  throw ApiProblem{400, std::string(u8"«formato» es uno de /api/v1/formatos."_w)};
}

}  // namespace tonadex::server
