#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "server/api/problem.h"
#include "server/handler.h"

namespace tonadex::server {

inline constexpr std::string_view kJsonType = "application/json";

// The decoded query parameters: "%XX" is undone, "+" is a blank. Windows-1252.
class Parameters {
 public:
  explicit Parameters(std::string_view query);
  std::string operator[](std::string_view name) const;  // "" when it is missing

 private:
  std::vector<std::pair<std::string, std::string>> values_;
};

// One request to the JSON interface.
struct Call {
  const Request& request;
  const Parameters parameters;
  const std::string_view rest;  // of the path, for rows whose path ends in "/"
  Store& store;

  // The body's first line, Windows-1252 with sharps as "#".
  std::string Melody() const;
  // The catalogue's model text for the parameter "modelo", which may be any name that matches
  // exactly one model. Windows-1252. Throws ApiProblem.
  std::string Model() const;
};

Reply JsonReply(std::string_view utf8, int status = 200);

// The functions of the interface; they throw ApiProblem. Those that read or write the store:
Reply FindMelodies(const Call& call);
Reply RandomMelodies(const Call& call);
Reply OneMelody(const Call& call);
Reply StoreMelody(const Call& call);
// Those that work on the request's own melody or on the catalogue:
Reply Models(const Call& call);
Reply Convert(const Call& call);
Reply Steps(const Call& call);
Reply Notes(const Call& call);
Reply Check(const Call& call);
Reply Repair(const Call& call);
Reply Transpose(const Call& call);
Reply Import(const Call& call);
Reply FileFormats(const Call& call);
Reply MelodyFile(const Call& call);
Reply QrCode(const Call& call);

}  // namespace tonadex::server
