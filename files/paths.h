#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Paths as text: Windows-1252 inside the program, UTF-8 or UTF-16 outside.
namespace tonadex::files {

std::filesystem::path PathFromText(std::string_view text);
// A character that Windows-1252 lacks becomes "?".
std::string TextFromPath(const std::filesystem::path& path);

}  // namespace tonadex::files
