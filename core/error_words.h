#pragma once

#include <exception>
#include <string>
#include <system_error>

// Failures as Spanish text for users: Windows-1252, without a full stop.
namespace tonadex::core {

// "el disco está lleno". A code that the table lacks gives "error 10", because the system's own
// message may be in English.
std::string ErrorWords(const std::error_code& error);

// A RunTimeError's sentence; for a file system error the file and the reason, as in "«/x»: no hay
// permiso". The English what() of the standard library's exceptions is replaced.
std::string ErrorWords(const std::exception& error);

}  // namespace tonadex::core
