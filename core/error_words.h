#pragma once

#include <exception>
#include <string>
#include <system_error>

// Failures in words for people: Spanish, Windows-1252, no full stop.
namespace tonadex::core {

// "el disco está lleno"; the system's own words for what has none here.
std::string ErrorWords(const std::error_code& error);

// A RunTimeError's sentence; for a file system error the file and why, as in "«/x»: no hay
// permiso".
std::string ErrorWords(const std::exception& error);

}  // namespace tonadex::core
