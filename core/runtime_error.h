#pragma once

#include <stdexcept>
#include <string>

namespace tonadex::core {

// Error numbers of run-time failures.
enum class ErrorNumber {
  kInvalidArgument = 5,  // a negative length, a name that cannot be a file
  kOverflow = 6,         // a number that does not fit its 16 (or 32) bits
  kSubscript = 9,        // an index outside its array
  kDivisionByZero = 11,
  kTypeMismatch = 13,  // a text that is not a number
  kFileNotFound = 53,
  kDeviceFailure = 57,  // disk or printer
  kTransfer = 1000,     // a request that got no reply
};

// A run-time failure, thrown by the checked helpers of this folder and by file operations and
// caught only by routines that handle run-time failures. what() is a Spanish sentence in
// Windows-1252 that says what failed and quotes the value.
class RunTimeError : public std::runtime_error {
 public:
  RunTimeError(ErrorNumber errorNumber, const std::string& what)
      : std::runtime_error(what), number(errorNumber) {}

  ErrorNumber number;
};

// Runs one step and ignores its run-time failure; false when it failed. A routine that ignores all
// errors from some point on is a list of such calls.
template <typename Step>
bool SkipErrors(Step&& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace tonadex::core
