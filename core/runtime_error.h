#pragma once

#include <stdexcept>
#include <string>

namespace tonadex::core {

// The numbers of the run-time failures that the program can meet.
enum class ErrorNumber {
  kInvalidArgument = 5,  // a negative length, a name that cannot be a file
  kOverflow = 6,         // a number that does not fit its 16 (or 32) bits
  kSubscript = 9,        // an index outside its array
  kDivisionByZero = 11,
  kTypeMismatch = 13,  // a text that is no number
  kFileNotFound = 53,
  kDeviceFailure = 57,  // disk or printer
  kTransfer = 1000,     // a request that brought no reply
};

// The one exception of the system's own rules. It is thrown by the checked helpers of this folder
// and by file steps, and caught only where a routine handles run-time failures.
// what() is a Spanish sentence in Windows-1252 that says what failed, naming the value.
class RunTimeError : public std::runtime_error {
 public:
  RunTimeError(ErrorNumber errorNumber, const std::string& what)
      : std::runtime_error(what), number(errorNumber) {}

  ErrorNumber number;
};

// Runs one step and swallows its run-time failure: "errors are skipped from here on" is a list of
// such calls. Gives false when the step failed.
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
