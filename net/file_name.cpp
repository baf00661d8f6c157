#include "net/file_name.h"

#include <algorithm>
#include <array>
#include <string>
#include <system_error>

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/write.h"

namespace tonadex::net {
namespace {

using namespace core::literals;

constexpr std::string_view kForbidden = "/\\:*?\"<>|";

// Names that open a device on Windows, whatever extension follows.
constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                      "NUL", "CONIN$", "CONOUT$"};
// Device names with one more digit; Windows counts superscript digits too.
constexpr std::array<std::string_view, 2> kNumberedDevices = {"COM", "LPT"};
constexpr std::string_view kDeviceDigits = u8"0123456789¹²³"_w;

bool IsControl(char c) {
  const char32_t character = core::ToUnicode(core::Code(c));
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool IsDeviceName(std::string_view name) {
  const std::string base = core::ToUpper(core::Trim(name.substr(0, name.find('.'))));
  const auto numbered = [&base](std::string_view device) {
    return base.size() == device.size() + 1 && base.starts_with(device) &&
           kDeviceDigits.find(base.back()) != std::string_view::npos;
  };
  return std::ranges::find(kDevices, base) != kDevices.end() ||
         std::ranges::any_of(kNumberedDevices, numbered);
}

}  // namespace

bool IsSafeFileName(std::string_view name) {
  return !name.empty() && core::ToUtf8(name).size() <= kMaxFileNameBytes &&
         name.find_first_of(kForbidden) == std::string_view::npos && !core::Contains(name, "..") &&
         std::ranges::none_of(name, IsControl) && name.back() != '.' && name.back() != ' ' &&
         !IsDeviceName(name);
}

std::filesystem::path SafePath(const std::filesystem::path& folder, std::string_view name) {
  if (!IsSafeFileName(name)) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument,
                             std::string(u8"el nombre «"_w) + std::string(name) +
                                 std::string(u8"» no puede ser el de un fichero"_w));
  }
  return folder / files::PathFromText(name);
}

void StoreFile(const std::filesystem::path& folder, std::string_view name, std::string_view bytes) {
  const std::filesystem::path file = SafePath(folder, name);
  std::error_code unknown;
  if (const auto before = std::filesystem::status(file, unknown);
      exists(before) && !is_regular_file(before)) {  // writing to a pipe would block
    throw core::RunTimeError(
        core::ErrorNumber::kDeviceFailure,
        std::string(u8"no es un fichero corriente «"_w) + std::string(name) + std::string(u8"»"_w));
  }
  files::WriteBytes(file, bytes);
}

}  // namespace tonadex::net
