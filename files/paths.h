#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Paths and their texts: Windows-1252 inside the program, UTF-8 or UTF-16 outside.
namespace tonadex::files {

// The path that a text names.
std::filesystem::path PathFromText(std::string_view text);
// The text of a path; a character that Windows-1252 lacks becomes "?".
std::string TextFromPath(const std::filesystem::path& path);

}  // namespace tonadex::files
