#include "server/api/problem.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "core/windows1252.h"
#include "server/api/api.h"

namespace tonadex::server {
namespace {

using namespace core::literals;

// Title of the problem, and the advice when no detail is known. UTF-8.
struct Status {
  int status;
  const char *title, *advice;
};
constexpr Status kStatuses[] = {
    {400, "La petición no se entiende", "Revisa la dirección y los campos de la petición."},
    {403, "No está permitido", "Este servidor solo atiende a los programas de su equipo."},
    {404, "No existe", "Mira en /api/v1/openapi.json lo que hay."},
    {405, "Así no se pide", "Usa el método que dice Allow."},
    {409, "Ya existe", "Cambia el nombre de la melodía: nada se sustituye."},
    {411, "Falta la longitud", "Envía el cuerpo con Content-Length, sin Transfer-Encoding."},
    {413, "Demasiado grande", "Envía como mucho 256 KiB de una vez."},
    {414, "Demasiado larga", "Acorta la dirección: caben 64 KiB."},
    {415, "Tipo de contenido desconocido", "Envía la melodía con Content-Type: text/plain."},
    {422, "De aquí no sale nada", "Prueba con otro fichero u otra melodía."},
    {429, "Demasiadas peticiones", "Espera un minuto."},
    {431, "Demasiados campos", "Envía menos campos de cabecera: caben 16 KiB."},
    {500, "El servidor ha fallado", "Repite la petición más tarde."},
    {503, "El servidor está ocupado", "Prueba dentro de un momento."},
};

}  // namespace

Reply ProblemReply(int status, std::string_view detail) {
  const auto known = std::ranges::find(kStatuses, status, &Status::status);
  const bool found = known != std::end(kStatuses);
  const nlohmann::ordered_json problem = {
      {"type", "about:blank"},
      {"title", found ? known->title : "Error"},
      {"status", status},
      {"detail", detail.empty() && found ? known->advice : core::ToUtf8(detail)}};
  Reply reply = TextReply(status, problem.dump());
  reply.contentType = kProblemType;
  reply.fields = status == 429 ? "Retry-After: 60\r\n" : "";
  return reply;
}

Reply RefusalReply(int status, std::string_view target) {
  constexpr std::string_view kBusy = u8"El servidor está ocupado. Prueba dentro de un momento."_w;
  constexpr std::string_view kForeign =
      u8"Este servidor solo atiende a los programas de su equipo."_w;
  constexpr std::string_view kBad = u8"La petición no se entiende."_w;
  Reply reply = target.starts_with(kApiPath) ? ProblemReply(status)
                                             : TextReply(status, status == 503   ? kBusy
                                                                 : status == 403 ? kForeign
                                                                                 : kBad);
  if (status == 405) {
    target.remove_prefix(target.starts_with(kApiPath) ? kApiPath.size() : 0);
    reply.fields = AllowField(target.substr(0, target.find('?')));
  }
  return reply;
}

}  // namespace tonadex::server
