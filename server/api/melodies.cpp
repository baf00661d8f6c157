// buscar, azar and melodias.

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "net/listing.h"
#include "net/upload.h"
#include "server/api/call.h"
#include "server/melody_folder.h"

namespace tonadex::server {
namespace {

using namespace core::literals;
using Json = nlohmann::ordered_json;
using core::ToUtf8;

constexpr int kMelodyMaxAgeSeconds = 24 * 60 * 60;  // a melody never changes
constexpr std::size_t kUsualRecords = 50;

// A description contains no parenthesis, so the first one starts the file name.
Reply ListReply(std::string_view listing) {
  Json melodies = Json::array();
  while (!listing.empty()) {
    const std::string_view record = listing.substr(0, listing.find(net::kRecordEnd));
    listing.remove_prefix(std::min(record.size() + net::kRecordEnd.size(), listing.size()));
    const std::size_t name = record.find(" (");
    melodies.push_back(
        {{"fichero", ToUtf8(record.substr(name + 2))}, {"nombre", ToUtf8(record.substr(0, name))}});
  }
  return JsonReply(Json{{"melodias", std::move(melodies)}}.dump());
}

std::size_t MostRecords(const std::string& text) {
  std::size_t most = kUsualRecords;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), most);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size() || most == 0 ||
                        most > kMaxSearchRecords)) {
    throw ApiProblem{400, std::string(u8"«maximo» es un número de 1 a 500."_w)};
  }
  return most;
}

}  // namespace

Reply FindMelodies(const Call& call) {
  const auto& abandoned = call.request.abandoned;
  const std::size_t most = MostRecords(call.parameters["maximo"]);
  const std::string listing = call.store.Search(call.parameters["texto"], abandoned, most);
  if (abandoned && abandoned()) {
    throw ApiProblem{503, {}};
  }
  return ListReply(listing);
}

Reply RandomMelodies(const Call& call) {
  return ListReply(call.store.Random(call.request.random));
}

Reply OneMelody(const Call& call) {
  const std::string name = core::FromOutside(UndoEscapes(call.rest));
  const auto melody = call.store.Melody(name);
  if (!melody) {
    throw ApiProblem{404, std::string(u8"No hay ninguna melodía con ese nombre: búscala antes."_w)};
  }
  const std::string line = core::FromOutside(melody->substr(0, melody->find_first_of("\r\n")));
  Reply reply = JsonReply(Json{{"fichero", ToUtf8(name)},
                               {"nombre", ToUtf8(DescriptionOf(*melody, name))},
                               {"rtttl", ToUtf8(core::UndoSharpEscape(line))}}
                              .dump());
  reply.maxAgeSeconds = kMelodyMaxAgeSeconds;
  return reply;
}

Reply StoreMelody(const Call& call) {
  std::string melody = call.Melody();
  const std::string name = melody.substr(0, melody.find(':'));
  const std::string file = net::UploadKey(name, melody);
  core::ReplaceAll(melody, "#", core::kSharpEscape);
  const auto [status, words] =
      UploadWords(call.store.Upload(file, melody, call.request.client, call.request.now));
  if (status != 200) {
    throw ApiProblem{status, std::string(words)};
  }
  Reply reply = JsonReply(Json{{"fichero", ToUtf8(file)}}.dump(), 201);
  reply.fields =
      "Location: " + std::string(kApiPath) + "/melodias/" + PercentEncoded(ToUtf8(file)) + "\r\n";
  return reply;
}

}  // namespace tonadex::server
