#include "core/error_words.h"

#include <filesystem>
#include <string_view>

#include "core/runtime_error.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

struct Words {
  std::errc error;
  std::string_view words;
};

constexpr Words kWords[] = {
    {std::errc::no_space_on_device, u8"el disco está lleno"_w},
    {std::errc::file_too_large, u8"el fichero sería demasiado grande"_w},
    {std::errc::permission_denied, "no hay permiso"},
    {std::errc::operation_not_permitted, "no hay permiso"},
    {std::errc::read_only_file_system, "el disco es de solo lectura"},
    {std::errc::no_such_file_or_directory, "no existe"},
    {std::errc::not_a_directory, "no es una carpeta"},
    {std::errc::is_a_directory, "es una carpeta"},
    {std::errc::file_exists, "ya existe"},
    {std::errc::too_many_symbolic_link_levels, u8"los enlaces simbólicos dan vueltas"_w},
    {std::errc::filename_too_long, "el nombre es demasiado largo"},
    {std::errc::too_many_files_open, "hay demasiados ficheros abiertos"},
    {std::errc::invalid_argument, u8"el valor no es válido"_w},
    {std::errc::io_error, "el disco falla"},
    {std::errc::address_in_use, "otro programa usa ya ese puerto"},
    {std::errc::address_not_available, u8"esta máquina no tiene esa dirección"_w},
    {std::errc::network_unreachable, "no hay red"},
    {std::errc::host_unreachable, u8"no hay camino hasta esa máquina"_w},
};

}  // namespace

std::string ErrorWords(const std::error_code& error) {
  for (const Words& known : kWords) {
    if (error == known.error) {
      return std::string(known.words);
    }
  }
  return FromOutside(error.message());
}

std::string ErrorWords(const std::exception& error) {
  if (dynamic_cast<const RunTimeError*>(&error) != nullptr) {
    return error.what();
  }
  const auto* system = dynamic_cast<const std::system_error*>(&error);
  if (system == nullptr) {
    return FromOutside(error.what());
  }
  const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&error);
  const std::string where =
      file == nullptr
          ? ""
          : std::string(u8"«"_w) + FromNative(file->path1().native()) + std::string(u8"»: "_w);
  return where + ErrorWords(system->code());
}

}  // namespace tonadex::core
