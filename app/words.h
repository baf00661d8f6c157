#pragma once

#include <string_view>

#include "core/windows1252.h"

// Texts of the windows that belong to no single control. Windows-1252; "&" precedes the mnemonic
// character.
namespace tonadex::app::words {

using namespace core::literals;

inline constexpr std::string_view kWindowTitle = "Tonadex";
inline constexpr std::string_view kHelpTitle = "Ayuda de Tonadex";
inline constexpr std::string_view kWaiting =
    u8"Esperando al servidor… Esc para dejar de esperar."_w;
inline constexpr std::string_view kAccept = "Aceptar";
inline constexpr std::string_view kSilent = u8"No hay dispositivo de sonido: no se oye nada."_w;
inline constexpr std::string_view kFold = "Ocultar";
inline constexpr std::string_view kUnfold = "Mostrar";
inline constexpr std::string_view kFoldHelp = "Ocultar o mostrar las instrucciones y los avisos";
inline constexpr std::string_view kCopy = "Copiar";
inline constexpr std::string_view kCopied = "Copiado";
inline constexpr std::string_view kSaveAs = u8"Guardar como…"_w;
inline constexpr std::string_view kNotSaved =
    u8"No se ha podido guardar el fichero. Elige otra carpeta u otro nombre."_w;
inline constexpr std::string_view kTextSize = u8"Tamaño del texto"_w;
inline constexpr std::string_view kOpenHelp =
    u8"Abrir melodías de ficheros de cualquier formato: van a tu repertorio (Ctrl+O)"_w;
inline constexpr std::string_view kGoToSearch = u8"Buscar melodías en el servidor"_w;
inline constexpr std::string_view kChoosePhone = u8"Elegir mi móvil"_w;
inline constexpr std::string_view kBeatsPerMinute = "pulsos/min";
inline constexpr std::string_view kDrawing = u8"Dibujo de la melodía"_w;
inline constexpr std::string_view kNoWebView = u8"No se puede mostrar la página."_w;
inline constexpr std::string_view kNoWebViewHint =
    u8"Lo demás funciona: elige tu móvil en Opciones; escucha y convierte tus melodías en Repertorio."_w;

}  // namespace tonadex::app::words
