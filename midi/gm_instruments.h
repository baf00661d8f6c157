#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "core/windows1252.h"

namespace tonadex::midi {

using namespace core::literals;

inline constexpr std::string_view kInstrumentList =
    u8"Piano de cola|Piano brillante|Piano de cola eléctrico|Piano de cantina|Piano eléctrico 1|"
    u8"Piano eléctrico 2|Clavicémbalo|Clavinete|Celesta|Carillón|Caja de música|Vibráfono|"
    u8"Marimba|Xilófono|Campanas tubulares|Salterio|Órgano Hammond|Órgano percusivo|"
    u8"Órgano de rock|Órgano de iglesia|Armonio|Acordeón|Armónica|Bandoneón|Guitarra de nailon|"
    u8"Guitarra acústica|Guitarra de jazz|Guitarra eléctrica|Guitarra eléctrica apagada|"
    u8"Guitarra saturada|Guitarra distorsionada|Armónicos de guitarra|Contrabajo pulsado|"
    u8"Bajo eléctrico con dedos|Bajo eléctrico con púa|Bajo sin trastes|Bajo golpeado 1|"
    u8"Bajo golpeado 2|Bajo sintetizado 1|Bajo sintetizado 2|Violín|Viola|Violonchelo|Contrabajo|"
    u8"Cuerdas en trémolo|Cuerdas en pizzicato|Arpa|Timbales|Conjunto de cuerda 1|"
    u8"Conjunto de cuerda 2|Cuerda sintetizada 1|Cuerda sintetizada 2|Coro de aes|Coro de oes|"
    u8"Voz sintetizada|Golpe de orquesta|Trompeta|Trombón|Tuba|Trompeta con sordina|Trompa|"
    u8"Conjunto de metal|Metal sintetizado 1|Metal sintetizado 2|Saxo soprano|Saxo alto|"
    u8"Saxo tenor|Saxo barítono|Oboe|Corno inglés|Fagot|Clarinete|Flautín|Flauta|Flauta dulce|"
    u8"Flauta de Pan|Botella soplada|Shakuhachi|Silbido|Ocarina|Solo de onda cuadrada|"
    u8"Solo de diente de sierra|Solo de organillo|Solo rasposo|Solo de charango|Solo de voz|"
    u8"Solo en quintas|Solo de bajo|Fondo new age|Fondo cálido|Fondo polifónico|Fondo de coro|"
    u8"Fondo de arco|Fondo metálico|Fondo de halo|Fondo de barrido|Lluvia|Banda sonora|Cristal|"
    u8"Atmósfera|Brillo|Duendes|Ecos|Ciencia ficción|Sitar|Banjo|Shamisen|Koto|Kalimba|Gaita|"
    u8"Violín folclórico|Shanai|Campanilla|Agogó|Tambores metálicos|Caja china|Taiko|"
    u8"Tam-tam melódico|Tambor sintetizado|Platillo invertido|Trasteo de guitarra|Respiración|"
    u8"Orilla del mar|Canto de pájaro|Teléfono|Helicóptero|Aplausos|Disparo"_w;

// The instruments of General MIDI by program number, Windows-1252.
inline constexpr auto kInstruments = [] {
  std::array<std::string_view, 128> names;
  const char* start = kInstrumentList.begin();
  for (std::string_view& name : names) {
    const char* const end = std::ranges::find(start, kInstrumentList.end(), '|');
    name = {start, end};
    start = end == kInstrumentList.end() ? end : end + 1;
  }
  return names;
}();
static_assert(std::ranges::count(kInstrumentList, '|') + 1 == std::ssize(kInstruments));

}  // namespace tonadex::midi
