#pragma once

#include <string>
#include <string_view>

// The melody server's paths.
namespace tonadex::net {

inline constexpr std::string_view kSearchPath = "/listatonos.php";
inline constexpr std::string_view kSearchKey = "cadenadebusqueda";
inline constexpr std::string_view kRandomPath = "/azar.php";
inline constexpr std::string_view kMelodyFolderPath = "/tonos/";  // + "stem.number"
inline constexpr std::string_view kFullListingPath = "/todoslostonos.php";
inline constexpr std::string_view kUploadPath = "/uploadertonos.php";
inline constexpr std::string_view kUploadNameKey = "filename";
inline constexpr std::string_view kUploadContentsKey = "contents";
inline constexpr std::string_view kBannerPath = "/banners.php";
inline constexpr std::string_view kInternetPagePath = "/mini906.php";
inline constexpr std::string_view kStartPagePath = "/mini.php";
inline constexpr std::string_view kVersionKey = "version";

// Paths with their query, without percent-encoding.
std::string SearchAddress(std::string_view words);
std::string StartPageAddress(std::string_view version);
// `fileName` is "stem.number".
std::string MelodyAddress(std::string_view fileName);
// In `contents` every "#" must have been replaced.
std::string UploadAddress(std::string_view fileName, std::string_view contents);

}  // namespace tonadex::net
