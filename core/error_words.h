#pragma once

#include <exception>
#include <string>
#include <system_error>

// Failures as Spanish text for users: Windows-1252, without a full stop.
namespace tonadex::core {

// For example "el disco está lleno". A code that is not in the table returns "error 10", because
// the system's own message may be in English.
std::string ErrorWords(const std::error_code& error);

// The message of a RunTimeError; for a file system error the path and the reason, as in "«/x»: no
// hay permiso". The English what() of other standard exceptions is replaced.
std::string ErrorWords(const std::exception& error);

}  // namespace tonadex::core
