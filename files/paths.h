#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Conversion between paths and Windows-1252 text.
namespace tonadex::files {

std::filesystem::path PathFromText(std::string_view text);
// A character that Windows-1252 lacks becomes "?".
std::string TextFromPath(const std::filesystem::path& path);

}  // namespace tonadex::files
