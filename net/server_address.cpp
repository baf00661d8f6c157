#include "net/server_address.h"

#include <algorithm>
#include <cstdlib>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/read.h"

namespace tonadex::net {
namespace {

constexpr const char* kVariable = "TONADEX_SERVIDOR";
constexpr std::string_view kFileName = "servidor.txt";

std::string FromFile(const std::filesystem::path& programFolder) {
  std::string line;
  core::SkipErrors(
      [&] { line = files::ReadFirstLine(programFolder / kFileName, core::kMaxLineBytes); });
  return core::FromOutside(line);  // some editors write a byte order mark
}

std::string Cleaned(std::string_view address) {
  address.remove_prefix(std::min(address.find_first_not_of(' '), address.size()));
  while (address.ends_with('/') || address.ends_with(' ')) {
    address.remove_suffix(1);
  }
  return std::string(address);
}

}  // namespace

std::string ConfiguredServer(const std::string& argument,
                             const std::filesystem::path& programFolder) {
  const char* variable = std::getenv(kVariable);
  for (const std::string& address :
       {Cleaned(argument), Cleaned(variable == nullptr ? "" : variable)}) {
    if (!address.empty()) {
      return address;
    }
  }
  return Cleaned(FromFile(programFolder));
}

}  // namespace tonadex::net
