#pragma once

#include <exception>
#include <string>
#include <system_error>

// Failures in words for people: Spanish, Windows-1252, no full stop.
namespace tonadex::core {

// "el disco está lleno"; "error 10" for what has no words here: the system's own may be English.
std::string ErrorWords(const std::error_code& error);

// A RunTimeError's sentence; for a file system error the file and why, as in "«/x»: no hay
// permiso". The standard library's own exceptions speak English and get words of ours.
std::string ErrorWords(const std::exception& error);

}  // namespace tonadex::core
