#include "server/api/api.h"

#include <algorithm>

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/phone_finder.h"
#include "server/api/call.h"
#include "server/delivery.h"
#include "server/limits.h"
#include "server/web_files.h"

namespace tonadex::server {
namespace {

using namespace core::literals;

enum class Body { kNone, kText, kAny };

Reply Contract(const Call&) {
  static const FixedBody contract = EmbeddedBody("openapi.json");
  return FixedReply(contract, kJsonType);
}

// One row per path and method, as in openapi.json. A path that ends in "/" is a prefix: the rest of
// the target is an argument.
struct Endpoint {
  std::string_view path;
  Body body;  // kNone for GET
  Reply (*answer)(const Call& call);
  bool conversion = false;  // subject to the rate limit for conversions
};
constexpr Endpoint kEndpoints[] = {
    {"/openapi.json", Body::kNone, Contract},       {"/modelos", Body::kNone, Models},
    {"/formatos", Body::kNone, FileFormats},        {"/buscar", Body::kNone, FindMelodies},
    {"/azar", Body::kNone, RandomMelodies},         {"/melodias", Body::kText, StoreMelody},
    {"/melodias/", Body::kNone, OneMelody},         {"/convertir", Body::kText, Convert, true},
    {"/pasos", Body::kText, Steps, true},           {"/notas", Body::kText, Notes, true},
    {"/comprobar", Body::kText, Check, true},       {"/arreglar", Body::kText, Repair, true},
    {"/transportar", Body::kText, Transpose, true}, {"/importar", Body::kAny, Import, true},
    {"/fichero", Body::kText, MelodyFile, true},    {"/qr", Body::kNone, QrCode},
};

// Null when no row answers the path.
const Endpoint* FindEndpoint(std::string_view path) {
  const auto found = std::ranges::find_if(kEndpoints, [path](const Endpoint& endpoint) {
    return endpoint.path.ends_with('/') ? path.starts_with(endpoint.path) : path == endpoint.path;
  });
  return found == std::end(kEndpoints) ? nullptr : found;
}

void CheckMethod(const Endpoint& endpoint, const Request& request) {
  if (request.post != (endpoint.body != Body::kNone)) {
    throw ApiProblem{405, {}};
  }
  if (endpoint.body == Body::kText && !request.contentType.empty() &&
      !core::ToLower(request.contentType).starts_with("text/plain")) {
    throw ApiProblem{415, {}};
  }
}

// A sound has far more bytes than the melody that it is made from.
std::size_t WorkOf(const Call& call) {
  return 1 + call.request.body.size() / kConversionBytes +
         (call.parameters["formato"] == "wav" ? kSoundConversions : 0);
}

void CheckLimit(const Call& call, RateLimit& conversions) {
  const auto work = static_cast<double>(WorkOf(call));
  if (!conversions.Allow(call.request.client, call.request.now, work)) {
    throw ApiProblem{429,
                     std::string(u8"Demasiadas conversiones en poco tiempo. Espera un minuto."_w)};
  }
}

Reply Answer(const Endpoint& endpoint, const Request& request, std::string_view path,
             std::string_view query, Store& store, RateLimit* conversions) {
  try {
    CheckMethod(endpoint, request);
    const Call call{request, Parameters(query), path.substr(endpoint.path.size()), store};
    if (endpoint.conversion && conversions != nullptr) {
      CheckLimit(call, *conversions);
    }
    return endpoint.answer(call);
  } catch (const ApiProblem& problem) {
    Reply reply = ProblemReply(problem.status, problem.detail);
    if (problem.status == 405) {
      reply.fields = AllowField(path);
    }
    return reply;
  } catch (const StoreAway&) {
    return ProblemReply(503, kStoreAwayWords);
  }
}

std::string NoSuchModel(const std::string& name, const std::vector<phones::CatalogueRow>& found) {
  std::string words;
  if (found.empty()) {
    words.append(u8"Ningún móvil del catálogo cuadra con «"_w).append(name);
    return words.append(u8"»: elige uno de /api/v1/modelos."_w);
  }
  words.append(u8"«"_w).append(name).append(u8"» puede ser:"_w);
  for (const phones::CatalogueRow& row : found) {
    words.append(words.ends_with(':') ? " " : "; ").append(row.brand).append(row.model);
  }
  return words;
}

}  // namespace

Parameters::Parameters(std::string_view query) {
  while (!query.empty()) {
    std::string part(query.substr(0, query.find('&')));
    query.remove_prefix(std::min(part.size() + 1, query.size()));
    core::ReplaceAll(part, "+", " ");
    const std::size_t equals = part.find('=');
    values_.emplace_back(
        part.substr(0, equals),
        equals == part.npos
            ? ""
            : core::FromOutside(UndoEscapes(std::string_view(part).substr(equals + 1))));
  }
}

std::string Parameters::operator[](std::string_view name) const {
  const auto found = std::ranges::find(values_, name, &std::pair<std::string, std::string>::first);
  return found == values_.end() ? "" : found->second;
}

std::string Call::Melody() const {
  return core::UndoSharpEscape(
      core::FromOutside(request.body.substr(0, request.body.find_first_of("\r\n"))));
}

std::string Call::Model() const {
  std::string name = parameters["modelo"];
  if (phones::FindModel(name) != nullptr) {
    return name;
  }
  const std::vector<phones::CatalogueRow> found = phones::FindPhones(name);
  if (found.size() != 1) {
    throw ApiProblem{400, NoSuchModel(name, found)};
  }
  return std::string(found.front().model);
}

Reply JsonReply(std::string_view utf8, int status) {
  Reply reply = TextReply(status, utf8);
  reply.contentType = kJsonType;
  return reply;
}

Reply AnswerApi(const Request& request, std::string_view path, std::string_view query, Store& store,
                RateLimit* conversions) {
  const Endpoint* endpoint = FindEndpoint(path);
  Reply reply = endpoint == nullptr ? ProblemReply(404)
                                    : Answer(*endpoint, request, path, query, store, conversions);
  reply.fields += request.post ? "" : "Access-Control-Allow-Origin: *\r\n";
  return Delivered(std::move(reply), request);
}

std::string AllowField(std::string_view path) {
  const Endpoint* endpoint = FindEndpoint(path);
  const bool posted = endpoint != nullptr && endpoint->body != Body::kNone;
  return posted ? "Allow: POST\r\n" : "Allow: GET, HEAD\r\n";
}

std::string_view ApiRoute(std::string_view path) {
  const Endpoint* endpoint = FindEndpoint(path);
  return endpoint == nullptr ? "" : endpoint->path;
}

}  // namespace tonadex::server
