#include "core/error_words.h"

#include <filesystem>
#include <new>
#include <stdexcept>
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
    {std::errc::network_down, "no hay red"},
    {std::errc::connection_refused, "nadie contesta en ese puerto"},
    {std::errc::connection_reset, u8"la otra parte ha cortado la conexión"_w},
    {std::errc::connection_aborted, u8"la otra parte ha cortado la conexión"_w},
    {std::errc::broken_pipe, "la otra parte ha dejado de leer"},
    {std::errc::timed_out, "se ha agotado el tiempo"},
    {std::errc::not_enough_memory, "falta memoria"},
    {std::errc::device_or_resource_busy, u8"está en uso"_w},
    {std::errc::text_file_busy, u8"está en uso"_w},
    {std::errc::cross_device_link, u8"está en otro disco"_w},
    {std::errc::directory_not_empty, u8"la carpeta no está vacía"_w},
    {std::errc::no_such_device, "el dispositivo no existe"},
    {std::errc::resource_unavailable_try_again, "ahora mismo no se puede"},
};

}  // namespace

std::string ErrorWords(const std::error_code& error) {
  for (const Words& known : kWords) {
    if (error == known.error) {
      return std::string(known.words);
    }
  }
  return "error " + std::to_string(error.value());
}

std::string ErrorWords(const std::exception& error) {
  if (dynamic_cast<const RunTimeError*>(&error) != nullptr) {
    return error.what();
  }
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
    return ErrorWords(std::make_error_code(std::errc::not_enough_memory));
  }
  if (dynamic_cast<const std::logic_error*>(&error) != nullptr) {
    return "fallo interno del programa";
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
